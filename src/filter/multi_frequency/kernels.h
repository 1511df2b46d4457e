// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

#include "filter/luminance/layout.h"
#include "tone/pyramid/kernels.h"

namespace ovra {

// The response of a band to its coefficients, in integers: 8192 stands for a factor of 1, 32768 for
// the whole range.
struct BandResponse {
  int16_t gain;     // less 1
  int16_t damping;  // of the part that counts as noise
  int16_t noise;    // amplitude
  int16_t limit;    // amplitude
};

// Writes the 15-bit brightness of `pixels` pixels. Samples above the depth count as its maximum.
using BrightnessRow = void(const uint8_t* source, int16_t* brightness, std::ptrdiff_t pixels,
                           int32_t depth_bits);

// A row of a level, and two rows of the coarser level's width that expand to it: those of the coarser
// level and of its changes. Changes are kept 2^15 higher, as words without sign from 1 on.
struct BandRow {
  const int16_t* level;
  const int16_t* coarse;
  const int16_t* coarse_changes;
};

// changes = expanded changes + response(level - expanded), limited to -32767..32767. May work beyond
// the end of its rows.
using RespondRow = void(const BandRow& row, const BandResponse& band, int16_t* changes,
                        std::ptrdiff_t count);

// How rows of pixels are read and written.
struct PixelRows {
  int32_t depth_bits;
  bool streaming;        // whether writing goes round the cache
  std::ptrdiff_t ahead;  // how many bytes behind a pixel those lie that will be read next
};

// Adds each pixel's change of brightness, in 15 bits, to its corrected samples and copies the others.
// The rows are whole ones. destination may be source.
using ChangePixelsRow = void(const uint8_t* source, const BandRow& row, const BandResponse& band,
                             uint8_t* destination, const RowSpan& pixels, const PixelRows& rows);

struct MultiFrequencyKernels {
  struct OfLayout {
    BrightnessRow* brightness;
    ChangePixelsRow* change;
  };
  RespondRow* respond;
  // In the order of kLuminanceLayouts.
  OfLayout of_bytes[kLuminanceLayoutCount];  // samples of 8 bits
  OfLayout of_words[kLuminanceLayoutCount];  // of 9 to 16

  // For one of the colour models of the layouts.
  // Inlined always: a tier may not leave a copy of it to others.
  [[gnu::always_inline]] const OfLayout& Of(uint32_t color_model, int32_t depth_bits) const {
    const int at = LuminanceLayoutAt(color_model);
    return depth_bits == 8 ? of_bytes[at] : of_words[at];
  }
};

extern const MultiFrequencyKernels kMultiFrequencyPlain;
extern const MultiFrequencyKernels kMultiFrequencySse;
extern const MultiFrequencyKernels kMultiFrequencyAvx2;

// The brightness has 15 bits, and a weighted sum is 6 bits wider than the samples: what it is shifted
// down by.
static constexpr int32_t BrightnessShift(int32_t depth_bits) {
  return depth_bits + 6 - 15;
}

}  // namespace ovra
