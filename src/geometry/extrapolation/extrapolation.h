// SPDX-License-Identifier: MIT
// Placement of an image on a larger canvas of one colour, with the tier of kernels as an argument.
#pragma once

#include <cstdint>

#include "core/cpu.h"
#include "core/pixel_format.h"
#include "core/status.h"

namespace ovra {

// Decodes a format word and answers whether extrapolation takes images of it.
Status ValidateExtrapolationFormat(PixelFormatCode code, PixelFormat* format);

Status ExtrapolateImage(const uint8_t* source, uint32_t source_width, uint32_t source_height,
                        uint8_t* destination, uint32_t destination_width,
                        uint32_t destination_height, PixelFormatCode code, int32_t offset_x,
                        int32_t offset_y, const uint16_t* fill, KernelTier tier);

}  // namespace ovra
