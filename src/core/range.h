// SPDX-License-Identifier: MIT
#pragma once

namespace ovra {

// Whether low <= value <= high; false for what is not a number.
constexpr bool IsWithin(float value, float low, float high) {
  return value >= low && value <= high;
}

}  // namespace ovra
