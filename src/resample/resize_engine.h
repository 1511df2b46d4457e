// SPDX-License-Identifier: MIT
// The resize engine: a region of the source becomes the whole destination, in two passes, with the
// caller's kernel and with the tier of kernels as an argument.
#pragma once

#include <cstdint>

#include "core/cpu.h"
#include "core/pixel_format.h"
#include "core/status.h"
#include "resample/resize_geometry.h"

namespace ovra {

// The images and the region of one resize. Both images have the one format.
struct ResizeImages {
  const uint8_t* source;
  ImageSize source_size;
  uint8_t* destination;
  ImageSize destination_size;
  PixelFormatCode format;
  ResizeRegion region;
};

// How wide the kernel is on one axis.
struct KernelSupport {
  float stretch;
  int32_t taps;
};

// Explicit factors of the two axes: destination by source.
struct ResizeFactors {
  double horizontal;
  double vertical;
};

// One scale for both axes, which follows from the sizes.
Status ResizeImageCore(const ResizeImages& images, const float* table, KernelSupport support,
                       KernelTier tier);

Status ResizeImageCoreVar(const ResizeImages& images, ResizeFactors factors, const float* table,
                          KernelSupport horizontal, KernelSupport vertical, KernelTier tier);

}  // namespace ovra
