// SPDX-License-Identifier: MIT
// Rows of working samples, a ring of them where there are more rows than room.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/row_ring.h"

namespace ovra {

// `width` samples a row, with room before and behind: kernels work in whole vectors from the first
// sample on and overshoot the last one. What lies there is anything but what HoldEnds put there.
class WorkRows {
 public:
  static constexpr std::ptrdiff_t kBefore = 32;  // rows start at a cache line
  static constexpr std::ptrdiff_t kBehind = 64;

  [[nodiscard]] bool Allocate(uint64_t rows, std::ptrdiff_t width) {
    return ring_.Allocate(static_cast<uint64_t>(width) + kBefore + kBehind, rows);
  }

  int16_t* operator[](std::ptrdiff_t row) { return ring_.Row(row) + kBefore; }
  const int16_t* operator[](std::ptrdiff_t row) const { return ring_.Row(row) + kBefore; }

 private:
  RowRing<int16_t> ring_;
};

// Repeats the ends of a row, two samples far: as far as any kernel looks.
inline void HoldEnds(int16_t* row, std::ptrdiff_t width) {
  row[-2] = row[-1] = row[0];
  row[width] = row[width + 1] = row[width - 1];
}

}  // namespace ovra
