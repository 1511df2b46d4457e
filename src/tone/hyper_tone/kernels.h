// SPDX-License-Identifier: MIT
// Rows between pixels of three 16-bit samples, working samples and gains.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/cpu.h"
#include "tone/pyramid/kernels.h"

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

// The detail in a row's brightness.
struct DetailRow {
  const int16_t* brightness;
  const int16_t* detail;
};

struct ToneGains {
  const int32_t* table;  // of a context
  int16_t keep;          // the context's, which some forms use
  bool streaming;        // whether writing goes round the cache
  std::ptrdiff_t ahead;  // how many bytes behind a pixel those lie that will be read next
};

// Pixels times the gains of their brightness and detail. destination may be source.
using ApplyGainsRow = void(const uint16_t* source, const DetailRow& row, const ToneGains& gains,
                           uint16_t* destination, std::ptrdiff_t pixels, const TonePixels& format);

// Work rows about the detail of pixels: their brightness, its limited difference from what `blocks`
// enlarges to, and the rest, if that is wanted.
struct FineRows {
  int16_t* brightness;
  int16_t* detail;
  int16_t* rest;  // or null
};
using FineDetailRow = void(const uint16_t* source, const int16_t* blocks, const SoftLimit& limit,
                           const FineRows& rows, const RowSpan& pixels, const TonePixels& format);

struct HyperToneKernels {
  ToneBrightnessRow* brightness;
  ToneBlocksRow* blocks;
  FineDetailRow* fine_detail;
  ApplyGainsRow* apply;            // each channel limited by itself
  ApplyGainsRow* apply_unclipped;  // no gain drives a channel above the depth
  ApplyGainsRow* apply_colour;     // the same, and colour grows less than brightness: `keep` > 0
};

extern const HyperToneKernels kHyperTonePlain;
extern const HyperToneKernels kHyperToneSse;
extern const HyperToneKernels kHyperToneAvx2;

}  // namespace ovra
