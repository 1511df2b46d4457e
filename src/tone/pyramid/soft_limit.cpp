// SPDX-License-Identifier: MIT
#include "tone/pyramid/soft_limit.h"

#include <cmath>

namespace ovra {

SoftLimit MakeSoftLimit(double threshold) {
  const int32_t height = std::max(1, static_cast<int32_t>(std::floor(32768 * threshold + 0.5)));
  int32_t shift = 0;
  while (height << shift < 8192) ++shift;
  const int32_t scaled = height << shift;
  const int32_t factor = std::min(32767, ((1 << 29) + scaled) / (2 * scaled));
  return {static_cast<int16_t>(2 * height), static_cast<int16_t>(shift),
          static_cast<int16_t>(factor)};
}

}  // namespace ovra
