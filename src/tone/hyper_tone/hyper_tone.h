// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "core/cpu.h"
#include "core/pixel_format.h"
#include "core/status.h"
#include "tone/hyper_tone/context.h"

namespace ovra {

// The _Init of every form; depth_bits is 10 or 12.
Status InitHyperTone(ToneForm form, uint32_t depth_bits, PixelFormatCode code,
                     const OvraHyperToneParams* params, const uint16_t* curve, void** context);

// The run of every form, with the tier as an argument.
Status RunHyperTone(ToneForm form, const uint8_t* source, uint8_t* destination, uint32_t width,
                    uint32_t height, PixelFormatCode code, const void* context, KernelTier tier);

}  // namespace ovra
