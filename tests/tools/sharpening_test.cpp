// SPDX-License-Identifier: MIT
#include "sharpening.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

#include "error.h"

namespace {

using ovra_host::Weights;

TEST(Sharpening, BellWeightsFallTowardBothEnds) {
  for (double radius = 0.3; radius <= 10; radius += 0.07) {
    const Weights weights = ovra_host::BellWeights(radius);
    EXPECT_EQ(std::accumulate(weights.begin(), weights.end(), 0), ovra_host::kWeightSum) << radius;
    EXPECT_LE(weights.size(), size_t{OVRA_YUSM_MAX_TAPS});
    EXPECT_EQ(weights.size() % 2, 1U);
    EXPECT_EQ(weights, Weights(weights.rbegin(), weights.rend()));
    EXPECT_TRUE(std::is_sorted(weights.begin(), weights.begin() + weights.size() / 2)) << radius;
    EXPECT_GT(weights.front(), 0);
  }
}

TEST(Sharpening, RadiusGrowsWithThePicture) {
  EXPECT_LT(ovra_host::RadiusForSize(1200, 800), ovra_host::RadiusForSize(6000, 4000));
  EXPECT_GE(ovra_host::RadiusForSize(1, 1), 0.3);
  EXPECT_LE(ovra_host::RadiusForSize(100000, 100000), 10);
}

// The neutral part of a curve keeps the band as it is: amount times curve is 1.
TEST(Sharpening, BandsKeepSmallDifferences) {
  for (const double amount : {0.5, 1.0, 1.8, 5.0}) {
    const ovra_host::Curve curve = ovra_host::DefaultBandDifferences(amount);
    const double expected = amount <= 1 ? 1.0 : 1 / amount;
    EXPECT_NEAR(curve[curve.size() / 2].y, expected, 1e-12) << amount;
  }
}

TEST(Sharpening, StrengthBeyondTheLibrarysNumbersIsRefused) {
  const auto tables = ovra_host::MakeResponseTables(ovra_host::FileFormat(8, 3), {{0, 1}, {1, 1}},
                                                    {{-1, 1}, {1, 1}});
  EXPECT_NO_THROW(ovra_host::CheckMaskStrength(tables, 20, 8));
  EXPECT_NO_THROW(ovra_host::CheckMaskStrength(tables, 2.9, 14));
  EXPECT_THROW(ovra_host::CheckMaskStrength(tables, 3.1, 14), ovra_host::Error);
  EXPECT_NO_THROW(ovra_host::CheckBandStrength(tables, 20));
  EXPECT_THROW(ovra_host::CheckBandStrength(tables, 40), ovra_host::Error);
}

}  // namespace
