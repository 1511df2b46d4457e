// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "core/cpu.h"
#include "core/pixel_format.h"
#include "core/status.h"
#include "ovra/filter.h"

namespace ovra {

// OvraMultiFrequency with the tier as an argument.
Status MultiFrequency(const uint8_t* source, uint8_t* destination, uint32_t width, uint32_t height,
                      PixelFormatCode code, const OvraMultiFrequencyParams* params,
                      KernelTier tier);

}  // namespace ovra
