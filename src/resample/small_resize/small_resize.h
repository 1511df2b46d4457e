// SPDX-License-Identifier: MIT
// Strong reduction of a picture, with the tier of kernels as an argument.
#pragma once

#include "core/cpu.h"
#include "resample/resize/resize.h"

namespace ovra {

Status SmallResizeImage(const ResizeImages& images, const float* kernel_table, KernelTier tier);

}  // namespace ovra
