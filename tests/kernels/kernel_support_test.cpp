// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>

#include "resample/kernel_table.h"

namespace {

uint32_t Bits(float value) {
  uint32_t bits = 0;
  std::memcpy(&bits, &value, sizeof bits);
  return bits;
}

// The float nearest to 0.917 lies below the double constant, those nearest to the other limits
// above.
TEST(SelectKernelSupport, ComparesTheFloatRatioWithDoubleLimits) {
  struct Case {
    float ratio;
    uint32_t taps;
    uint32_t stretch_bits;
  };
  constexpr float kInfinity = std::numeric_limits<float>::infinity();
  const Case cases[] = {
      {kInfinity, 4, 0x3F800000},
      {1.0F, 4, 0x3F800000},
      {std::nextafter(0.917F, 1.0F), 4, 0x3F800000},
      {0.917F, 5, 0x3F97A8A5},
      {0.771F, 5, 0x3F97A8A5},
      {std::nextafter(0.771F, 0.0F), 6, 0x3FB468A3},
      {0.648F, 6, 0x3FB468A3},
      {std::nextafter(0.648F, 0.0F), 7, 0x3FD695C8},
      {0.545F, 7, 0x3FD695C8},
      {std::nextafter(0.545F, 0.0F), 8, 0x40000000},
      {0.33F, 8, 0x40000000},
      {0.1F, 8, 0x40000000},
      {-1.0F, 8, 0x40000000},
      {std::nanf(""), 8, 0x40000000},
  };
  for (const Case& c : cases) {
    uint32_t taps = 0;
    float stretch = 0;
    ovra::SelectKernelSupport(c.ratio, &taps, &stretch);
    EXPECT_EQ(taps, c.taps) << c.ratio;
    EXPECT_EQ(Bits(stretch), c.stretch_bits) << c.ratio;
  }
}

}  // namespace
