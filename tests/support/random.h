// SPDX-License-Identifier: MIT
// Repeatable random data.
#pragma once

#include <cstdint>
#include <random>

namespace ovra_test {

using Random = std::mt19937;

// An integer in [low, high], the same on every platform.
inline int32_t RandomInt(Random& random, int32_t low, int32_t high) {
  const uint64_t span = static_cast<uint64_t>(int64_t{high} - low) + 1;
  return static_cast<int32_t>(low + static_cast<int64_t>(random() * span >> 32));
}

// Fills [begin, end) with samples up to `max`. A quarter of them are 0 and a quarter `max`, where
// sums overflow and clamps act.
template <class Sample>
void FillSamples(Random& random, Sample* begin, Sample* end, uint32_t max) {
  for (Sample* p = begin; p != end; ++p) {
    const uint32_t bits = random();
    const uint32_t kind = bits & 3;
    *p = static_cast<Sample>(kind == 0 ? 0 : kind == 1 ? max : (bits >> 2) % (max + 1));
  }
}

}  // namespace ovra_test
