// SPDX-License-Identifier: MIT
// Expansion and enlargement of single samples.
#pragma once

#include <cstddef>
#include <cstdint>

namespace ovra {

inline int32_t ExpandedEven(int32_t before, int32_t at, int32_t behind) {
  return (before + 6 * at + behind + 4) >> 3;
}

inline int32_t ExpandedOdd(int32_t at, int32_t behind) {
  return (at + behind + 1) >> 1;
}

// Sample x of what a row of words expands to.
template <class Word>
int32_t ExpandedAt(const int16_t* row, std::ptrdiff_t x) {
  const auto sample = [&](std::ptrdiff_t i) { return static_cast<Word>(row[i]); };
  const std::ptrdiff_t i = x / 2;
  return x % 2 != 0 ? ExpandedOdd(sample(i), sample(i + 1))
                    : ExpandedEven(sample(i - 1), sample(i), sample(i + 1));
}

inline int32_t Between(int32_t from, int32_t to, int32_t eighths) {
  return from + (((to - from) * eighths + 4) >> 3);
}

// Sample x of what a row enlarges to, four times as wide.
inline int32_t EnlargedAt(const int16_t* row, std::ptrdiff_t x) {
  const int16_t* const p = row + (x + 2) / 4;
  return Between(p[-1], p[0], static_cast<int32_t>(2 * ((x + 2) % 4) + 1));
}

}  // namespace ovra
