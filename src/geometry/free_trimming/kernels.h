// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

#include "geometry/free_trimming/lanczos_weights.h"

namespace ovra {

// Source positions are in units of 2^-32 pixels, pixel centres at whole numbers, and are rounded to
// one of the phases of the weights.
inline constexpr int kPositionBits = 32;
inline constexpr int kPhaseBits = 8;
inline constexpr int kPhaseShift = kPositionBits - kPhaseBits;

// In pixels and phases.
static constexpr int64_t RoundedPosition(int64_t position) {
  return (position + (int64_t{1} << (kPhaseShift - 1))) >> kPhaseShift;
}

// Where the pixels of one destination row come from. Six rows and columns of source pixels lie under
// the kernel, from two before a position's whole part on; all of them are there, and some bytes more.
struct TrimmingRow {
  const uint8_t* source;  // the pixel at position 0, 0
  std::ptrdiff_t stride;  // bytes, of either sign
  int64_t u;              // of the first destination pixel, across
  int64_t v;              // down
  int64_t u_step;         // from one destination pixel to the next
  int64_t v_step;
};

// Bytes that a kernel may read before the first pixel under its taps, and beyond the last.
inline constexpr std::ptrdiff_t kTrimmingReadBefore = 2;
inline constexpr std::ptrdiff_t kTrimmingReadBeyond = 10;

// The first pass, down the columns, drops eight of the weights' fractional bits, the second the rest.
inline constexpr int kDownShift = 8;
inline constexpr int kAcrossShift = 20;

using TrimRow = void(const TrimmingRow& row, std::ptrdiff_t count, int32_t max_sample,
                     uint8_t* destination);

struct TrimmingKernels {
  TrimRow* of_bytes[4];  // for one to four channels
  TrimRow* of_words[4];

  // Inlined always: a tier may not leave a copy of it to others.
  [[gnu::always_inline]] TrimRow* Of(uint32_t channels, uint32_t depth_bits) const {
    return (depth_bits == 8 ? of_bytes : of_words)[channels - 1];
  }
};

extern const TrimmingKernels kTrimmingPlain;
extern const TrimmingKernels kTrimmingSse;
extern const TrimmingKernels kTrimmingAvx2;

}  // namespace ovra
