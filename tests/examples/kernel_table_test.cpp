// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>
#include <utility>
#include <vector>

#include "ovra/resample.h"

namespace {

constexpr int kSteps = OVRA_KERNEL_TABLE_STEPS;
constexpr int kEntries = OVRA_KERNEL_TABLE_ENTRIES;

using Table = std::vector<float>;
using Calc = OvraStatus OVRA_CALL(float, float*);

Table Calculated(Calc* calc, float parameter) {
  Table table(kEntries, 77.0F);
  EXPECT_EQ(calc(parameter, table.data()), OVRA_OK);
  return table;
}

// With a parameter of q quarters and t = i / 4096 a kernel is an integer over 4 * 4096^3, which
// floats round once.
constexpr int kQuarterCubeBits = 2 + 3 * 12;

int64_t QuarterCubes(int64_t cubic, int64_t square, int64_t linear, int64_t constant, int64_t i) {
  return cubic * i * i * i + square * i * i * kSteps + linear * i * kSteps * kSteps +
         constant * kSteps * kSteps * kSteps;
}

float CubicReference(int64_t q, int64_t i) {
  const int64_t value = i < kSteps ? QuarterCubes(q + 8, -(q + 12), 0, 4, i)
                                   : QuarterCubes(q, -2 * q, q, 0, i - kSteps);
  return std::ldexp(static_cast<float>(value), -kQuarterCubeBits);
}

// value / 6 to 24 bits. One sixth as a double is less than a sixth, so that a product halfway
// between two floats, computed in extended precision, lies just below the middle.
float SixthHalfDown(int64_t value) {
  const auto magnitude = static_cast<uint64_t>(value < 0 ? -value : value);
  int shift = 0;
  while ((magnitude << shift) / 6 < (uint64_t{1} << 26) && magnitude != 0) ++shift;
  // From here the quotient has more bits than a float.
  uint64_t unit = 6;
  while ((magnitude << shift) / unit >= (uint64_t{1} << 24)) unit *= 2;
  const uint64_t scaled = magnitude << shift;
  uint64_t quotient = scaled / unit;
  if (2 * (scaled % unit) > unit) ++quotient;
  const auto result = static_cast<float>(static_cast<double>(quotient) *
                                         static_cast<double>(unit / 6) * std::ldexp(1.0, -shift));
  return value < 0 ? -result : result;
}

float BSplineReference(int64_t q, int64_t i) {
  const int64_t value = i < kSteps ? QuarterCubes(6 * q + 12, -9 * q - 24, 0, 2 * q + 16, i)
                                   : -QuarterCubes(2 * q + 4, -3 * q - 12, 12, q - 4, i - kSteps);
  return std::ldexp(SixthHalfDown(value), -kQuarterCubeBits);
}

TEST(KernelTable, EveryEntryIsTheExactValueRoundedOnce) {
  const int quarters[] = {-8, -4, -3, -2, 0, 1, 2, 4, 7};
  for (const int q : quarters) {
    const float parameter = 0.25F * static_cast<float>(q);
    const Table cubic = Calculated(OvraCalcCubicSpline, parameter);
    const Table b_spline = Calculated(OvraCalcBSpline, parameter);
    for (int i = 0; i < kEntries; ++i) {
      const bool inside = i < 2 * kSteps;
      ASSERT_EQ(cubic[i], inside ? CubicReference(q, i) : 0.0F) << q << " " << i;
      ASSERT_EQ(b_spline[i], inside ? BSplineReference(q, i) : 0.0F) << q << " " << i;
    }
  }
}

TEST(KernelTable, KnownValues) {
  const Table cubic = Calculated(OvraCalcCubicSpline, -0.5F);
  const std::pair<int, float> values[] = {{0, 1}, {2048, 0.5625F}, {4096, 0}, {6144, -0.0625F}};
  for (const auto& [at, value] : values) EXPECT_EQ(cubic[at], value);
  const Table b_spline = Calculated(OvraCalcBSpline, 0.0F);
  EXPECT_EQ(b_spline[0], 0.6666667F);
  EXPECT_EQ(b_spline[4096], 0.16666667F);
  EXPECT_NEAR(b_spline[8191], 0.0F, 1e-11F);
}

TEST(KernelTable, AnyParameterIsUsedAsGiven) {
  const Table nan = Calculated(OvraCalcCubicSpline, std::nanf(""));
  EXPECT_TRUE(std::isnan(nan[0]) && std::isnan(nan[8191]));
  EXPECT_EQ(nan[8192], 0.0F);
  const Table huge = Calculated(OvraCalcCubicSpline, 3e38F);
  EXPECT_EQ(huge[0], 1.0F);  // no overflow on the way
  EXPECT_EQ(huge[4096], 0.0F);
}

// Of a ratio as a float, against limits in double precision: the float nearest to 0.917 lies below its
// limit, those nearest to the others above theirs.
TEST(KernelSupport, BandsOfRatios) {
  const struct {
    float ratio;
    int32_t taps;
    float stretch;
  } cases[] = {{HUGE_VALF, 4, 1.0F},
               {std::nextafter(0.917F, 1.0F), 4, 1.0F},
               {0.917F, 5, 0x1.2F514Ap0F},
               {0.771F, 5, 0x1.2F514Ap0F},
               {std::nextafter(0.771F, 0.0F), 6, 0x1.68D146p0F},
               {0.648F, 6, 0x1.68D146p0F},
               {std::nextafter(0.648F, 0.0F), 7, 0x1.AD2B90p0F},
               {0.545F, 7, 0x1.AD2B90p0F},
               {std::nextafter(0.545F, 0.0F), 8, 2.0F},
               {-1.0F, 8, 2.0F},
               {std::nanf(""), 8, 2.0F}};
  for (const auto& c : cases) {
    int32_t taps = 0;
    float stretch = 0;
    EXPECT_EQ(OvraSelectKernelSupport(c.ratio, &taps, &stretch), OVRA_OK);
    EXPECT_EQ(taps, c.taps) << c.ratio;
    EXPECT_EQ(stretch, c.stretch) << c.ratio;
  }
}

}  // namespace
