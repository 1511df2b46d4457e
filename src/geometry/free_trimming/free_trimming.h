// SPDX-License-Identifier: MIT
// Trimming at any angle, with the tier of kernels as an argument.
#pragma once

#include <cstdint>

#include "core/cpu.h"
#include "core/pixel_format.h"
#include "core/status.h"

namespace ovra {

struct TrimmingImages {
  const uint8_t* source;
  int32_t source_width;
  int32_t source_height;
  uint8_t* destination;
  int32_t destination_width;
  int32_t destination_height;
  PixelFormatCode format;
};

// `x` and `y` are the upper left pixel of the rectangle, `angle` is in tenths of a degree; `fill` may
// be null.
Status FreeTrimming(const TrimmingImages& images, int32_t x, int32_t y, int32_t angle,
                    const uint16_t* fill, KernelTier tier);

}  // namespace ovra
