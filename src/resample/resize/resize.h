// SPDX-License-Identifier: MIT
// Resizing whole pictures, with the tier of kernels as an argument.
#pragma once

#include <cstdint>

#include "core/cpu.h"
#include "resample/resize_plan.h"

namespace ovra {

// The images of one resize. Both have the one format.
struct ResizeImages {
  const uint8_t* source;
  uint8_t* destination;
  PixelFormatCode format;
  ResizeShape shape;
};

// With the library's own kernel.
Status ResizeImage(const ResizeImages& images, KernelTier tier);
Status ResizeImageVar(const ResizeImages& images, ResizeFactors factors, KernelTier tier);

// With the caller's kernel.
Status ResizeImageCore(const ResizeImages& images, const float* table, KernelSupport support,
                       KernelTier tier);
Status ResizeImageCoreVar(const ResizeImages& images, ResizeFactors factors,
                          const ResizeKernel& kernel, KernelTier tier);

// What the resizes of whole pictures and others share.

// The checks of the engine with the caller's kernel, from the table on.
Status CheckResizeCore(PixelFormatCode code, const ResizeKernel& kernel, PixelFormat* format);

// All of a plan, once the images have been checked.
Status ResizeWhole(const ResizeImages& images, const ResizePlan& plan, KernelTier tier);

}  // namespace ovra
