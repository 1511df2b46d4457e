// SPDX-License-Identifier: MIT
// Conversions from floating point that are defined for every value.
#pragma once

#include <cstdint>
#include <limits>

namespace ovra {

// The value truncated toward zero. Values beyond the range give its nearest end, NaN gives 0.
template <class Float>
constexpr int32_t TruncateToInt32(Float value) {
  constexpr Float kBeyond = Float{2147483648.0};
  if (value >= kBeyond) return std::numeric_limits<int32_t>::max();
  if (value <= -kBeyond) return std::numeric_limits<int32_t>::min();
  return value == value ? static_cast<int32_t>(value) : 0;
}

}  // namespace ovra
