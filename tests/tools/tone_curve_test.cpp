// SPDX-License-Identifier: MIT
#include "tone_curve.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using ovra_host::ToneCurve;

TEST(ToneCurve, RunsThroughItsPointsAndStaysBetweenThem) {
  const std::vector<ToneCurve::Point> points = {{0.1, 0.2},  {0.3, 0.2}, {0.35, 0.9},
                                                {0.5, 0.95}, {0.8, 0.1}, {0.9, 0.5}};
  for (const auto between : {ToneCurve::Between::kCubic, ToneCurve::Between::kLinear}) {
    const ToneCurve curve(points, between);
    EXPECT_EQ(curve(0), 0.2);
    EXPECT_EQ(curve(1), 0.5);
    for (size_t i = 0; i + 1 < points.size(); ++i) {
      const auto [a, b] = std::pair{points[i], points[i + 1]};
      EXPECT_NEAR(curve(a.x), a.y, 1e-12);
      double before = a.y;
      for (int step = 1; step <= 100; ++step) {
        const double y = curve(a.x + (b.x - a.x) * step / 100);
        EXPECT_GE((y - before) * (b.y < a.y ? -1 : 1), -1e-12) << i << " " << step;
        before = y;
      }
      EXPECT_NEAR(before, b.y, 1e-12);
    }
  }
}

TEST(ToneCurve, IsExactForLinesAndSmoothElsewhere) {
  const ToneCurve line({{0, 0}, {0.2, 0.2}, {1, 1}});
  for (int i = 0; i <= 100; ++i) EXPECT_NEAR(line(i / 100.0), i / 100.0, 1e-12);
  const std::vector<ToneCurve::Point> bent = {{0, 0}, {0.5, 0.8}, {1, 1}};
  EXPECT_DOUBLE_EQ(ToneCurve(bent, ToneCurve::Between::kLinear)(0.25), 0.4);
  const ToneCurve smooth(bent);
  const double step = 1e-6;
  const double slope_before = (smooth(0.5) - smooth(0.5 - step)) / step;
  const double slope_after = (smooth(0.5 + step) - smooth(0.5)) / step;
  EXPECT_NEAR(slope_before, slope_after, 1e-4);
  EXPECT_NEAR(slope_before, 0.64, 1e-4);  // harmonic mean of 1.6 and 0.4
}

}  // namespace
