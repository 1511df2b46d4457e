// SPDX-License-Identifier: MIT
// Rows between pixels of three 16-bit samples, working samples and gains.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/cpu.h"

namespace ovra {

struct TonePixels {
  int32_t depth_bits;  // 10 or 12
  int16_t weights[3];  // of the channels in the luminance, of 64

  // Inlined always: a tier may not leave a copy of it to others.
  [[gnu::always_inline]] int32_t MaxSample() const { return (1 << depth_bits) - 1; }
};

// The brightness that steers the tone, in 15 bits: half way between the luminance and the strongest
// channel.
using ToneBrightnessRow = void(const uint16_t* source, int16_t* brightness, std::ptrdiff_t pixels,
                               const TonePixels& format);

// The same of the means of 4 x 4 pixels, from four rows. Where the width is no multiple of four, the
// last pixel counts for the missing ones.
using ToneBlocksRow = void(const uint16_t* const* rows, int16_t* brightness, std::ptrdiff_t pixels,
                           const TonePixels& format);

// Gains from the brightness, and from the detail in it. `table` is that of the context.
using GainRow = void(const int16_t* brightness, const int16_t* detail, const int32_t* table,
                     int16_t* gains, std::ptrdiff_t pixels);

// Pixels times their gains. `keep` is used by some forms of it. destination may be source.
using ApplyGainsRow = void(const uint16_t* source, const int16_t* gains, uint16_t* destination,
                           std::ptrdiff_t pixels, const TonePixels& format, int16_t keep);

struct HyperToneKernels {
  ToneBrightnessRow* brightness;
  ToneBlocksRow* blocks;
  GainRow* find_gains;
  ApplyGainsRow* apply;            // each channel limited by itself
  ApplyGainsRow* apply_unclipped;  // no gain drives a channel above the depth
  ApplyGainsRow* apply_colour;     // the same, and colour grows less than brightness: `keep` > 0
};

extern const HyperToneKernels kHyperTonePlain;
extern const HyperToneKernels kHyperToneSse;
extern const HyperToneKernels kHyperToneAvx2;

}  // namespace ovra
