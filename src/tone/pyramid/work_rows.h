// SPDX-License-Identifier: MIT
// Rows of working samples, a ring of them where there are more rows than room.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/work_memory.h"

namespace ovra {

// `width` samples a row, with room before and behind: kernels work in whole vectors from the first
// sample on and overshoot the last one. What lies there is anything but what HoldEnds put there.
class WorkRows {
 public:
  static constexpr std::ptrdiff_t kBefore = 16;
  static constexpr std::ptrdiff_t kBehind = 64;

  [[nodiscard]] bool Allocate(int32_t rows, std::ptrdiff_t width) {
    rows_ = rows;
    const uint64_t stride = static_cast<uint64_t>(width) / kBefore * kBefore + kBefore + kBehind;
    stride_ = static_cast<std::ptrdiff_t>(stride);
    return samples_.Allocate(stride * static_cast<uint64_t>(rows));
  }

  int16_t* operator[](std::ptrdiff_t row) {
    return samples_.data() + row % rows_ * stride_ + kBefore;
  }
  const int16_t* operator[](std::ptrdiff_t row) const {
    return samples_.data() + row % rows_ * stride_ + kBefore;
  }

 private:
  WorkMemory<int16_t> samples_;
  std::ptrdiff_t rows_ = 1;
  std::ptrdiff_t stride_ = 0;
};

// Repeats the ends of a row, two samples far: as far as any kernel looks.
inline void HoldEnds(int16_t* row, std::ptrdiff_t width) {
  row[-2] = row[-1] = row[0];
  row[width] = row[width + 1] = row[width - 1];
}

}  // namespace ovra
