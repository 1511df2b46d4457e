// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

namespace ovra {

// The recursion along a line, in 16.16 fixed point.
struct SoftFocusRecursion {
  uint64_t gain;      // the state of a constant line, in units of its sample
  uint32_t feedback;  // what a step keeps of the state, in units of 1/65536
  uint32_t input;     // 65536 - feedback: scales a state to a sample
};

// Recursions with a gain up to this, and with a feedback above 0, run in 16 bits: the upper halves
// of their states never exceed 65534.
inline constexpr uint64_t kSoftFocusMaxNarrowGain = 256;

constexpr bool IsNarrow(const SoftFocusRecursion& recursion) {
  return recursion.gain <= kSoftFocusMaxNarrowGain && recursion.feedback != 0;
}

// Lines of bytes that lie side by side: sample i of line k is samples[i * stride + k]. Behind its
// end each line goes on with `padding` repetitions of its last sample, at least one unless `input`
// is 0.
struct SoftFocusLines {
  uint8_t* samples;
  std::ptrdiff_t stride;
  std::ptrdiff_t length;
  std::ptrdiff_t padding;
  std::ptrdiff_t count;
};

// Filters lines in place, forward and back. `work` holds a word for each sample of a line, and for
// a narrow recursion kSoftFocusWorkWords for each one and each of its padding.
using FilterSoftFocusLines = void(const SoftFocusRecursion& recursion, const SoftFocusLines& lines,
                                  uint32_t* work);

// As many 16-bit lines as are filtered side by side.
inline constexpr std::ptrdiff_t kSoftFocusWorkWords = 24;

// So many rows are laid side by side to be filtered as lines: lines[kSoftFocusRows * i + k] is
// rows[k][i], for i below `bytes`.
inline constexpr std::ptrdiff_t kSoftFocusRows = 16;

using GatherSoftFocusRows = void(const uint8_t* const* rows, uint8_t* lines, std::ptrdiff_t bytes);
using ScatterSoftFocusRows = void(const uint8_t* lines, uint8_t* const* rows, std::ptrdiff_t bytes);

// A part of a picture.
struct SoftFocusBlock {
  std::ptrdiff_t stride;
  std::ptrdiff_t rows;
  std::ptrdiff_t bytes;  // of each row
};

// destination = (source * (65536 - share) + blurred * share) >> 16, for a share of 1..65536. The
// destination may be either of the others.
using MixSoftFocusBlock = void(const uint8_t* source, const uint8_t* blurred, uint8_t* destination,
                               SoftFocusBlock block, uint32_t share);

struct SoftFocusKernels {
  FilterSoftFocusLines* filter_lines;  // of narrow recursions; the plain form takes any
  GatherSoftFocusRows* gather;
  ScatterSoftFocusRows* scatter;
  MixSoftFocusBlock* mix;
};

extern const SoftFocusKernels kSoftFocusPlain;
extern const SoftFocusKernels kSoftFocusSse;
extern const SoftFocusKernels kSoftFocusAvx2;

}  // namespace ovra
