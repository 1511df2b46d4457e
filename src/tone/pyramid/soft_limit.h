// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdlib>

#include "tone/pyramid/kernels.h"

namespace ovra {

// For a threshold above 0 and below 0.25, a share of the range.
SoftLimit MakeSoftLimit(double threshold);

// The limited difference.
inline int32_t Limited(int32_t difference, const SoftLimit& limit) {
  const int32_t a = std::min<int32_t>(std::abs(difference), limit.reach);
  const int32_t share = ((a << limit.shift) * limit.factor + 16384) >> 15;
  const int32_t magnitude = a - ((a * share + 16384) >> 15);
  return difference < 0 ? -magnitude : magnitude;
}

}  // namespace ovra
