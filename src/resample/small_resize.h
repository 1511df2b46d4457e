// SPDX-License-Identifier: MIT
// Strong reduction of a picture, with the tier of kernels as an argument.
#pragma once

#include <cstdint>

#include "core/cpu.h"
#include "core/pixel_format.h"

namespace ovra {

Status SmallResizeImage(const uint8_t* source, int32_t source_width, int32_t source_height,
                        uint8_t* destination, int32_t destination_width, int32_t destination_height,
                        PixelFormatCode format, int32_t x, int32_t y, int32_t width, int32_t height,
                        const float* kernel_table, KernelTier tier);

}  // namespace ovra
