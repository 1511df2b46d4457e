// SPDX-License-Identifier: MIT
// The kinds of pixels that the geometric operations are timed with: one for each size of a pixel.
#pragma once

#include <cstddef>
#include <cstdint>

#include "ovra/pixel_format.h"

namespace ovra_bench {

struct PixelKind {
  const char* name;
  uint32_t depth_bits;
  uint32_t channels;
  OvraColorModel model;

  size_t Bytes() const { return (depth_bits == 8 ? 1 : 2) * channels; }
  OvraPixelFormatCode Format() const {
    return OvraMakePixelFormat(depth_bits, channels, model, 1, OVRA_ROWS_TOP_DOWN);
  }
};

inline constexpr PixelKind kPixelKinds[] = {
    {"8bit_grey", 8, 1, OVRA_MODEL_GREY}, {"8bit_rgb", 8, 3, OVRA_MODEL_RGB},
    {"8bit_rgba", 8, 4, OVRA_MODEL_RGBA}, {"16bit_grey", 16, 1, OVRA_MODEL_GREY},
    {"16bit_rgb", 16, 3, OVRA_MODEL_RGB}, {"16bit_rgba", 16, 4, OVRA_MODEL_RGBA},
};

}  // namespace ovra_bench
