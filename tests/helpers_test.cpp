// SPDX-License-Identifier: MIT
// The helpers that hosts and bindings use before they call an operation.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <vector>

#include "conformance/statuses.h"
#include "ovra/ovra.h"

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();

TEST(MakePixelFormatCode, GivesTheWord) {
  const struct {
    uint32_t depth, channels, model, alignment, order;
    OvraPixelFormatCode word;
  } cases[] = {
      {8, 1, OVRA_MODEL_GREY, 1, 0, 0x00000000},
      {12, 3, OVRA_MODEL_BGR, 4, OVRA_ROWS_BOTTOM_UP, 0x01200224},
      {32, 4, OVRA_MODEL_CMYK, 2, 0, 0x00101239},
      {8, 1, OVRA_MODEL_RGBA, 1, 0, 0x00001000},  // whether they fit is not judged
  };
  for (const auto& c : cases) {
    OvraPixelFormatCode word = 77;
    EXPECT_EQ(OvraMakePixelFormatCode(c.depth, c.channels, c.model, c.alignment, c.order, &word),
              OVRA_OK);
    EXPECT_EQ(word, c.word);
  }
}

TEST(RowStride, RoundsUpAndRefusesWhatCannotBeAddressed) {
  constexpr bool kWide = sizeof(size_t) == 8;
  constexpr auto kMost = std::numeric_limits<uint32_t>::max();
  struct Case {
    uint32_t width;
    OvraPixelFormatCode format;
    OvraStatus status;
    uint64_t stride;
  };
  const Case cases[] = {
      {5, 0x00200120, OVRA_OK, 16},
      {3, 0x00000004, OVRA_OK, 6},
      {2, 0x00101039, OVRA_OK, 32},
      {0, 0x00200120, OVRA_OK, 0},
      {0x1FFFFFFF, 0x00201030, OVRA_OK, 0x7FFFFFFC},
      {0x20000000, 0x00201030, kWide ? OVRA_OK : OVRA_ERROR_NO_MEMORY, 0x80000000},
      {kMost, 0x00001038, kWide ? OVRA_OK : OVRA_ERROR_NO_MEMORY, uint64_t{kMost} * 8},
      {5, 0x0020012A, OVRA_ERROR_FORMAT_DEPTH, 0},
      {5, 0x02200120, OVRA_ERROR_FORMAT_ROW_ORDER, 0},
      {5, 0x00200820, OVRA_ERROR_FORMAT_COLOR_MODEL, 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(&c - cases);
    size_t stride = 77;
    EXPECT_EQ(OvraRowStride(c.width, c.format, &stride), c.status);
    EXPECT_EQ(stride, c.status == OVRA_OK ? c.stride : 0);
  }
}

// As many entries as asked for, with one behind them that must stay.
std::vector<int32_t> GaussianWeights(double radius, int32_t max_taps) {
  constexpr int32_t kUntouched = -77;
  std::vector<int32_t> weights(OVRA_YUSM_MAX_TAPS + 1, kUntouched);
  int32_t count = 0;
  EXPECT_EQ(OvraGaussianWeights(radius, max_taps, &count, weights.data()), OVRA_OK);
  EXPECT_LE(count, max_taps);
  EXPECT_EQ(std::count(weights.begin() + count, weights.end(), kUntouched),
            OVRA_YUSM_MAX_TAPS + 1 - count);
  weights.resize(static_cast<size_t>(count));
  return weights;
}

// 128 times the bell at distances 0, 1, 2, ... rounded down, by hand:
//   radius 1    51.06 30.97 6.91 0.57 0.02: of 5 that miss 4 go to two pairs
//   radius 0.5  100.7 13.6 0.03
TEST(GaussianWeights, AreThoseOfTheBell) {
  using Weights = std::vector<int32_t>;
  EXPECT_EQ(GaussianWeights(1, 64), (Weights{7, 31, 52, 31, 7}));
  EXPECT_EQ(GaussianWeights(0.5, 64), (Weights{14, 100, 14}));
  EXPECT_EQ(GaussianWeights(kInfinity, 3), (Weights{42, 44, 42}));
  for (const double radius : {0.0, -1.0, -kInfinity, kNotANumber, 1e-320, 0.1}) {
    EXPECT_EQ(GaussianWeights(radius, 64), Weights{128}) << radius;
  }
  EXPECT_EQ(GaussianWeights(5, 1), Weights{128});
  EXPECT_EQ(GaussianWeights(5, 2), Weights{128});
}

TEST(GaussianWeights, FallTowardBothEndsAndStayNearTheBell) {
  for (const int32_t max_taps : {3, 24, 25, 63, 64}) {
    for (double radius = 0.3; radius <= 40; radius *= 1.07) {
      SCOPED_TRACE(radius);
      const std::vector<int32_t> weights = GaussianWeights(radius, max_taps);
      EXPECT_EQ(std::accumulate(weights.begin(), weights.end(), 0), 128);
      EXPECT_EQ(weights.size() % 2, 1U);
      EXPECT_TRUE(std::equal(weights.begin(), weights.end(), weights.rbegin()));
      const size_t middle = weights.size() / 2;
      EXPECT_TRUE(std::is_sorted(weights.begin(), weights.begin() + static_cast<int>(middle) + 1));
      EXPECT_GT(weights.front(), 0);
      const double reach = (max_taps - 1) / 2;
      double sum = 0;
      for (double k = -reach; k <= reach; ++k) sum += std::exp(-k * k / (2 * radius * radius));
      for (size_t i = 0; i < weights.size(); ++i) {
        const double k = static_cast<double>(i) - static_cast<double>(middle);
        const double exact = 128 / sum * std::exp(-k * k / (2 * radius * radius));
        EXPECT_LT(std::fabs(weights[i] - exact), i == middle ? 2.0 : 1.0 + 1e-9) << k;
      }
    }
  }
}

// They make tables that act on middling differences and tones, and not on noise.
TEST(DefaultCurves, MakeTables) {
  OvraResponsePoint levels[OVRA_DEFAULT_LEVEL_POINTS];
  OvraResponsePoint differences[OVRA_DEFAULT_DIFFERENCE_POINTS];
  ASSERT_EQ(OvraDefaultCurves(levels, differences), OVRA_OK);
  int16_t level_table[OVRA_LEVEL_TABLE_SIZE];
  int16_t difference_table[OVRA_DIFFERENCE_TABLE_SIZE];
  ASSERT_EQ(
      OvraYUsmMakeTable(0x120, OVRA_DEFAULT_LEVEL_POINTS, levels, OVRA_DEFAULT_DIFFERENCE_POINTS,
                        differences, level_table, difference_table),
      OVRA_OK);
  EXPECT_EQ(level_table[0], 38);  // 0.3 of 128
  EXPECT_EQ(level_table[512], 128);
  const std::pair<int, int16_t> entries[] = {{0, 0}, {40, 128}, {-40, 128}, {256, 77}};
  for (const auto& [at, value] : entries) EXPECT_EQ(difference_table[1024 + at], value) << at;
}

TEST(Statuses, Helpers) {
  using namespace ovra_test;
  enum : size_t { kDepth, kChannels, kModel, kAlignment, kOrder, kWord };
  OvraPixelFormatCode word = 77;
  ExpectStatuses(OvraMakePixelFormatCode,
                 std::tuple(8U, 3U, uint32_t{OVRA_MODEL_RGB}, 1U, 0U, &word),
                 std::span(reinterpret_cast<uint8_t*>(&word), sizeof word),
                 Nulls(OVRA_ERROR_NULL_DECODER_OUTPUT, {kWord}) +
                     Each(OVRA_ERROR_FORMAT_COLOR_MODEL,
                          {{kModel, 0x0800}, {kModel, 0x0001}, {kModel, 0x10000}}) +
                     Each(OVRA_ERROR_FORMAT_ROW_ORDER, {{kOrder, 1}}) +
                     Each(OVRA_ERROR_FORMAT_CHANNELS, {{kChannels, 0}, {kChannels, 5}}) +
                     Each(OVRA_ERROR_FORMAT_DEPTH, {{kDepth, 7}, {kDepth, 17}}) +
                     Each(OVRA_ERROR_FORMAT_ROW_ALIGNMENT, {{kAlignment, 3}}));
  int32_t counts[] = {77, 77, 77, 77};
  float stretch = 77;
  const std::span written(reinterpret_cast<uint8_t*>(counts), sizeof counts);
  ExpectStatuses(
      OvraGaussianWeights, std::tuple(1.0, 3, counts + 0, counts + 1), written,
      Nulls(OVRA_ERROR_YUSM_NULL, {2, 3}) + Each(OVRA_ERROR_YUSM_TAPS, {{1, -1}, {1, 0}, {1, 65}}));
  ExpectStatuses(OvraSelectKernelSupport, std::tuple(1.0F, counts + 0, &stretch), written,
                 Nulls(OVRA_ERROR_NULL_DECODER_OUTPUT, {1, 2}));
  size_t stride = 77;
  ExpectStatuses(OvraRowStride, std::tuple(1U, 0U, &stride), {},
                 Nulls(OVRA_ERROR_NULL_DECODER_OUTPUT, {2}));
  OvraResponsePoint points[OVRA_DEFAULT_DIFFERENCE_POINTS + OVRA_DEFAULT_LEVEL_POINTS];
  ExpectStatuses(OvraDefaultCurves, std::tuple(points + OVRA_DEFAULT_DIFFERENCE_POINTS, points + 0),
                 {}, Nulls(OVRA_ERROR_YUSM_NULL, {0, 1}));
}

}  // namespace
