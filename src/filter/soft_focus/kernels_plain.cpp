// SPDX-License-Identifier: MIT
#include <algorithm>

#include "filter/soft_focus/kernels.h"
#include "filter/soft_focus/padding.h"

namespace ovra {
namespace {

// The integer part of a 16.16 state, which alone is used again, rounded. States are formed in 64
// bits: a long blur's gain takes them beyond 32.
uint64_t Rounded(uint64_t state) {
  return (state + 32768) >> 16;
}

void FilterLine(const SoftFocusRecursion& recursion, uint8_t* samples, std::ptrdiff_t stride,
                std::ptrdiff_t length, std::ptrdiff_t padding, uint32_t* line) {
  const uint64_t feedback = recursion.feedback;
  const uint64_t input = recursion.input;
  uint64_t state = samples[0] * recursion.gain;
  line[0] = uint32_t{samples[0]} << 16;
  for (std::ptrdiff_t i = 1; i < length; ++i) {
    state = Rounded(state * feedback + (uint64_t{samples[i * stride]} << 16));
    line[i] = static_cast<uint32_t>(state * input);
  }
  state = static_cast<uint64_t>(WalkSoftFocusPadding(recursion, static_cast<int64_t>(state),
                                                     samples[(length - 1) * stride], padding));
  for (std::ptrdiff_t i = length - 1; i >= 0; --i) {
    state = Rounded(state * feedback + line[i]);
    samples[i * stride] = static_cast<uint8_t>(std::min<uint64_t>(state * input >> 16, 255));
  }
}

void FilterLines(const SoftFocusRecursion& recursion, const SoftFocusLines& lines, uint32_t* work) {
  for (std::ptrdiff_t k = 0; k < lines.count; ++k) {
    FilterLine(recursion, lines.samples + k, lines.stride, lines.length, lines.padding, work);
  }
}

void Gather(const uint8_t* const* rows, uint8_t* lines, std::ptrdiff_t bytes) {
  for (std::ptrdiff_t i = 0; i < bytes; ++i) {
    for (std::ptrdiff_t k = 0; k < kSoftFocusRows; ++k) lines[kSoftFocusRows * i + k] = rows[k][i];
  }
}

void Scatter(const uint8_t* lines, uint8_t* const* rows, std::ptrdiff_t bytes) {
  for (std::ptrdiff_t i = 0; i < bytes; ++i) {
    for (std::ptrdiff_t k = 0; k < kSoftFocusRows; ++k) rows[k][i] = lines[kSoftFocusRows * i + k];
  }
}

void MixRow(const uint8_t* source, const uint8_t* blurred, uint8_t* destination,
            std::ptrdiff_t bytes, uint32_t share) {
  for (std::ptrdiff_t i = 0; i < bytes; ++i) {
    destination[i] = static_cast<uint8_t>((source[i] * (65536 - share) + blurred[i] * share) >> 16);
  }
}

void Mix(const uint8_t* source, const uint8_t* blurred, uint8_t* destination, SoftFocusBlock block,
         uint32_t share) {
  for (std::ptrdiff_t y = 0; y < block.rows; ++y) {
    const std::ptrdiff_t at = y * block.stride;
    MixRow(source + at, blurred + at, destination + at, block.bytes, share);
  }
}

}  // namespace

const SoftFocusKernels kSoftFocusPlain = {FilterLines, Gather, Scatter, Mix};

}  // namespace ovra
