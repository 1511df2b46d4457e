// SPDX-License-Identifier: MIT
// Resizing with the library's own kernel, with the tier of kernels as an argument.
#pragma once

#include "resample/resize_engine.h"

namespace ovra {

// Factors below this are refused where they are explicit.
inline constexpr double kMinEngineRatio = 0.33;

Status ResizeImageVar(const ResizeImages& images, ResizeFactors factors, KernelTier tier);

}  // namespace ovra
