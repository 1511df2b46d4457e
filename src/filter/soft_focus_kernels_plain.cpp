// SPDX-License-Identifier: MIT
#include "filter/soft_focus_kernels.h"

namespace ovra {
namespace {

// The integer part of a 16.16 state, rounded. States are held in 64 bits: a long blur's gain takes
// them beyond 32.
uint64_t Rounded(uint64_t state) {
  return (state + 32768) >> 16;
}

void FilterLine(const SoftFocusRecursion& recursion, uint8_t* samples, std::ptrdiff_t stride,
                std::ptrdiff_t length, std::ptrdiff_t padding, uint32_t* line) {
  const uint64_t feedback = recursion.feedback;
  const uint64_t input = recursion.input;
  const std::ptrdiff_t last = length + padding - 1;
  uint64_t state = samples[0] * recursion.gain << 16;
  line[0] = uint32_t{samples[0]} << 16;
  for (std::ptrdiff_t i = 1; i <= last; ++i) {
    const uint64_t sample = samples[(i < length ? i : length - 1) * stride];
    state = Rounded(state) * feedback + (sample << 16);
    line[i] = static_cast<uint32_t>(Rounded(state) * input);
  }
  state = line[last] * recursion.gain;
  for (std::ptrdiff_t i = last; i >= 0; --i) {
    if (i < last) state = Rounded(state) * feedback + line[i];
    const uint64_t value = (Rounded(state) * input) >> 16;
    if (i < length) samples[i * stride] = static_cast<uint8_t>(value > 255 ? 255 : value);
  }
}

}  // namespace

void FilterSoftFocusLinesPlain(const SoftFocusRecursion& recursion, const SoftFocusLines& lines,
                               uint32_t* work) {
  for (std::ptrdiff_t k = 0; k < lines.count; ++k) {
    FilterLine(recursion, lines.samples + k, lines.stride, lines.length, lines.padding, work);
  }
}

void GatherSoftFocusRowsPlain(const uint8_t* const* rows, uint8_t* lines, std::ptrdiff_t bytes) {
  for (std::ptrdiff_t i = 0; i < bytes; ++i) {
    for (std::ptrdiff_t k = 0; k < kSoftFocusRows; ++k) lines[kSoftFocusRows * i + k] = rows[k][i];
  }
}

void ScatterSoftFocusRowsPlain(const uint8_t* lines, uint8_t* const* rows, std::ptrdiff_t bytes) {
  for (std::ptrdiff_t i = 0; i < bytes; ++i) {
    for (std::ptrdiff_t k = 0; k < kSoftFocusRows; ++k) rows[k][i] = lines[kSoftFocusRows * i + k];
  }
}

void MixSoftFocusRowPlain(const uint8_t* source, const uint8_t* blurred, uint8_t* destination,
                          std::ptrdiff_t bytes, uint32_t share) {
  for (std::ptrdiff_t i = 0; i < bytes; ++i) {
    destination[i] = static_cast<uint8_t>((source[i] * (65536 - share) + blurred[i] * share) >> 16);
  }
}

}  // namespace ovra
