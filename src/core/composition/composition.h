// SPDX-License-Identifier: MIT
// Image composition, with the tier of kernels as an argument. The arguments and results are those
// of the exports in ovra/basic.h.
#pragma once

#include <cstdint>

#include "core/cpu.h"
#include "core/pixel_format.h"
#include "core/status.h"

namespace ovra {

// Decodes a format word and answers whether composition takes it: the decoder's own status first,
// then channel count, depth, colour model and arrangement.
Status CheckCompositeFormat(PixelFormatCode code, PixelFormat* format);

Status CompositeImage(uint8_t* destination, int32_t destination_width, int32_t destination_height,
                      PixelFormatCode destination_code, const uint8_t* source, int32_t source_width,
                      int32_t source_height, PixelFormatCode source_code, int32_t x, int32_t y,
                      uint8_t blend_mode, KernelTier tier);

Status CompositeImageWithMaskBlending(uint8_t* destination, int32_t destination_width,
                                      int32_t destination_height, const uint8_t* source,
                                      const uint8_t* mask, int32_t source_width,
                                      int32_t source_height, PixelFormatCode code, int32_t x,
                                      int32_t y, uint8_t blend_mode, KernelTier tier);

}  // namespace ovra
