// SPDX-License-Identifier: MIT
// Resizing with a turn, with the tier of kernels as an argument.
#pragma once

#include <cstdint>

#include "core/cpu.h"
#include "resample/resize/resize.h"

namespace ovra {

// The destination size of the images is that of the destination as it lies in memory, after the turn;
// `mode` is an OvraRotation.

// With the library's own kernel.
Status ResizeRotateImage(const ResizeImages& images, int32_t mode, KernelTier tier);

// With the caller's kernel.
Status ResizeRotateImageCore(const ResizeImages& images, const float* table, KernelSupport support,
                             int32_t mode, KernelTier tier);
Status SmallResizeRotateImage(const ResizeImages& images, const float* table, int32_t mode,
                              KernelTier tier);

}  // namespace ovra
