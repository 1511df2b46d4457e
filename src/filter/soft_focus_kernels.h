// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/cpu.h"

namespace ovra {

// The recursion along a line, in 16.16 fixed point.
struct SoftFocusRecursion {
  uint64_t gain;      // the state of a constant line, in units of its sample
  uint32_t feedback;  // what a step keeps of the state, in units of 1/65536
  uint32_t input;     // 65536 - feedback: scales a state to a sample
};

// Lines of bytes that lie side by side: sample i of line k is samples[i * stride + k]. Behind its
// end each line goes on with `padding` repetitions of its last sample.
struct SoftFocusLines {
  uint8_t* samples;
  std::ptrdiff_t stride;
  std::ptrdiff_t length;
  std::ptrdiff_t padding;
  std::ptrdiff_t count;
};

// Recursions with a gain up to this, and with a feedback above 0, run in 16 bits: the upper halves
// of their states never exceed 65534.
inline constexpr uint64_t kSoftFocusMaxNarrowGain = 256;

// Lines that are filtered side by side, and hence words of work memory for each step.
inline constexpr std::ptrdiff_t kSoftFocusWorkWords = 24;

// Filters lines in place, forward and back. `work` holds kSoftFocusWorkWords for each sample of a
// line with its padding.
using FilterSoftFocusLines = void(const SoftFocusRecursion& recursion, const SoftFocusLines& lines,
                                  uint32_t* work);

FilterSoftFocusLines FilterSoftFocusLinesPlain;
FilterSoftFocusLines FilterSoftFocusLinesSse;  // narrow recursions only
FilterSoftFocusLines FilterSoftFocusLinesAvx2;

inline FilterSoftFocusLines* SelectFilterSoftFocusLines(const SoftFocusRecursion& recursion,
                                                        KernelTier tier) {
  const bool narrow = recursion.gain <= kSoftFocusMaxNarrowGain && recursion.feedback != 0;
  if (!narrow || tier == KernelTier::kPlain) return FilterSoftFocusLinesPlain;
  return tier == KernelTier::kAvx2 ? FilterSoftFocusLinesAvx2 : FilterSoftFocusLinesSse;
}

// So many rows are laid side by side to be filtered as lines: lines[kSoftFocusRows * i + k] is
// rows[k][i], for i below `bytes`.
inline constexpr std::ptrdiff_t kSoftFocusRows = 16;

using GatherSoftFocusRows = void(const uint8_t* const* rows, uint8_t* lines, std::ptrdiff_t bytes);
using ScatterSoftFocusRows = void(const uint8_t* lines, uint8_t* const* rows, std::ptrdiff_t bytes);

GatherSoftFocusRows GatherSoftFocusRowsPlain;
GatherSoftFocusRows GatherSoftFocusRowsSse;
ScatterSoftFocusRows ScatterSoftFocusRowsPlain;
ScatterSoftFocusRows ScatterSoftFocusRowsSse;

// The transposition of 16 x 16 bytes gains nothing from wider registers.
inline GatherSoftFocusRows* SelectGatherSoftFocusRows(KernelTier tier) {
  return tier == KernelTier::kPlain ? GatherSoftFocusRowsPlain : GatherSoftFocusRowsSse;
}

inline ScatterSoftFocusRows* SelectScatterSoftFocusRows(KernelTier tier) {
  return tier == KernelTier::kPlain ? ScatterSoftFocusRowsPlain : ScatterSoftFocusRowsSse;
}

// destination = (source * (65536 - share) + blurred * share) >> 16, for a share of 1..65536. The
// destination may be either of the others.
using MixSoftFocusRow = void(const uint8_t* source, const uint8_t* blurred, uint8_t* destination,
                             std::ptrdiff_t bytes, uint32_t share);

MixSoftFocusRow MixSoftFocusRowPlain;
MixSoftFocusRow MixSoftFocusRowSse;
MixSoftFocusRow MixSoftFocusRowAvx2;

inline MixSoftFocusRow* SelectMixSoftFocusRow(KernelTier tier) {
  if (tier == KernelTier::kAvx2) return MixSoftFocusRowAvx2;
  if (tier == KernelTier::kSse) return MixSoftFocusRowSse;
  return MixSoftFocusRowPlain;
}

}  // namespace ovra
