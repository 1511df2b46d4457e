// SPDX-License-Identifier: MIT
// Rows between pixels and the 10-bit luminance plane of the unsharp masks.
#pragma once

#include <cstddef>
#include <cstdint>

#include "filter/luminance/layout.h"

namespace ovra {

inline constexpr int32_t kLuminanceDepthBits = 10;

// From a weighted sum, which is 6 bits wider than the samples, to the luminance.
static constexpr int32_t LuminanceShift(int32_t depth_bits) {
  return depth_bits + 6 - kLuminanceDepthBits;
}

// Writes the luminance of `pixels` pixels, 0..1023. Samples above the depth count as its maximum.
using ExtractLuminanceRow = void(const uint8_t* source, int16_t* luminance, std::ptrdiff_t pixels,
                                 int32_t depth_bits);

// Adds each pixel's delta to its corrected samples, limits them to 0 .. 2^depth_bits - 1 and copies
// the others. destination may be source.
using AddDeltasRow = void(const uint8_t* source, uint8_t* destination, const int16_t* deltas,
                          std::ptrdiff_t pixels, int32_t depth_bits);

struct LuminanceKernels {
  struct OfLayout {
    ExtractLuminanceRow* extract;
    AddDeltasRow* add_deltas;
  };
  // In the order of kLuminanceLayouts.
  OfLayout of_bytes[kLuminanceLayoutCount];  // samples of 8 bits
  OfLayout of_words[kLuminanceLayoutCount];  // of 9 to 14

  // For one of the colour models above.
  // Inlined always: a tier may not leave a copy of it to others.
  [[gnu::always_inline]] const OfLayout& Of(uint32_t color_model, int32_t depth_bits) const {
    const int at = LuminanceLayoutAt(color_model);
    return depth_bits == 8 ? of_bytes[at] : of_words[at];
  }
};

extern const LuminanceKernels kLuminancePlain;
extern const LuminanceKernels kLuminanceSse;
extern const LuminanceKernels kLuminanceAvx2;

}  // namespace ovra
