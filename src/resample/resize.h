// SPDX-License-Identifier: MIT
// Resizing with the library's own kernel, with the tier of kernels as an argument.
#pragma once

#include "resample/resize_engine.h"

namespace ovra {

// The engine's taps cover reductions down to this ratio. Beyond it, factors that follow from the
// sizes lead to the small-image resize, and explicit ones are refused.
inline constexpr double kMinEngineRatio = 0.33;

Status ResizeImage(const ResizeImages& images, KernelTier tier);

Status ResizeImageVar(const ResizeImages& images, ResizeFactors factors, KernelTier tier);

}  // namespace ovra
