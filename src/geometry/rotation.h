// SPDX-License-Identifier: MIT
// Rotation by quarter turns and mirroring, with the tier of kernels as an argument.
#pragma once

#include <cstdint>

#include "core/cpu.h"
#include "core/pixel_format.h"
#include "core/status.h"

namespace ovra {

// Whether rotation takes images of this format.
Status ValidateRotationFormat(PixelFormatCode format);

Status RotateImage(const uint8_t* source, uint8_t* destination, int32_t width, int32_t height,
                   PixelFormatCode format, int32_t mode, KernelTier tier);

}  // namespace ovra
