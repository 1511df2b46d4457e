// SPDX-License-Identifier: MIT
#include "sharpening.h"

#include <gtest/gtest.h>

#include "error.h"

namespace {

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
