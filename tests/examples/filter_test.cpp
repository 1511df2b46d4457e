// SPDX-License-Identifier: MIT
// Worked examples and properties of the unsharp masks, the edge filter and soft focus.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>
#include <vector>

#include "ovra/filter.h"
#include "support/random.h"

namespace {

using Bytes = std::vector<uint8_t>;

constexpr uint32_t kSide = 20;
constexpr OvraPixelFormatCode kRgb = 0x120;
constexpr OvraPixelFormatCode kYcc = 0x320;
const std::vector<int16_t> kNeutral(OVRA_DIFFERENCE_TABLE_SIZE, 128);

Bytes Noise(size_t size = 3 * kSide * kSide) {
  ovra_test::Random random(42);
  Bytes noise(size);
  ovra_test::FillSamples(random, noise.data(), noise.data() + size, 255U);
  return noise;
}

Bytes Masked(const Bytes& in, const std::vector<int32_t>& weights, float amount,
             OvraPixelFormatCode format = kRgb) {
  Bytes out(in.size());
  EXPECT_EQ(OvraYUsmSingleStep(in.data(), out.data(), kSide, kSide, format,
                               static_cast<int32_t>(weights.size()), weights.data(), amount,
                               kNeutral.data(), kNeutral.data()),
            OVRA_OK);
  return out;
}

// A bright dot of 100 on 50 in the luminance of an 8-bit YCC picture, blurred by 32, 64, 32. Of 10
// bits they are 400 and 200; the dot is blurred to 300 along its row and to 250 after both, the
// pixels beside it to 225, those at its corners to 212. An amount of 2 adds the differences of 150,
// -25 and -12, which are 37.5, -6.25 and -3 of 8 bits, rounded down.
TEST(YUsm, AddsTheDifferenceFromTheBlur) {
  Bytes picture(3 * kSide * kSide, 50);
  const size_t dot = 3 * (10 * kSide + 10);
  picture[dot] = 100;
  Bytes expected = picture;
  const int added[3][3] = {{-3, -7, -3}, {-7, 37, -7}, {-3, -7, -3}};
  for (size_t y = 0; y < 3; ++y) {
    for (size_t x = 0; x < 3; ++x) {
      uint8_t& sample = expected[3 * ((9 + y) * kSide + 9 + x)];
      sample = static_cast<uint8_t>(sample + added[y][x]);
    }
  }
  EXPECT_EQ(Masked(picture, {32, 64, 32}, 2.0F, kYcc), expected);
}

TEST(YUsm, AmountOneAndFlatImagesChangeNothing) {
  const std::vector<int32_t> weights = {-20, 50, 68, 50, -20};
  EXPECT_EQ(Masked(Noise(), weights, 1.0F), Noise());
  EXPECT_NE(Masked(Noise(), weights, 2.0F), Noise());
  const Bytes flat(3 * kSide * kSide, 77);
  EXPECT_EQ(Masked(flat, weights, 7.5F), flat);
}

TEST(YUsm, ContextServesManyRuns) {
  std::vector<int32_t> weights = {32, 64, 32};
  std::vector<int16_t> tables = kNeutral;
  OvraYUsmContext* context = nullptr;
  ASSERT_EQ(OvraYUsm_Init(kRgb, 3, weights.data(), 2.0F, tables.data(), tables.data(), &context),
            OVRA_OK);
  const Bytes expected = Masked(Noise(), weights, 2.0F);
  weights.assign(3, 0);  // the context keeps copies
  tables.assign(tables.size(), 0);
  for (int run = 0; run < 2; ++run) {
    Bytes image = Noise();
    EXPECT_EQ(OvraYUsm(image.data(), image.data(), kSide, kSide, kRgb, context), OVRA_OK);
    EXPECT_EQ(image, expected);
  }
  EXPECT_EQ(OvraYUsm_Free(&context), OVRA_OK);
  EXPECT_EQ(context, nullptr);
}

TEST(YUsmMakeTable, LinesBetweenPoints) {
  std::vector<int16_t> level(OVRA_LEVEL_TABLE_SIZE);
  std::vector<int16_t> difference(OVRA_DIFFERENCE_TABLE_SIZE);
  const OvraResponsePoint level_curve[] = {{0.25, 0.5}, {0.5, 1.5}, {0.75, 1.25}};
  const OvraResponsePoint difference_curve[] = {{-1.0, 0.0}, {0.0, 1.0}, {1.0, -0.5}};
  ASSERT_EQ(
      OvraYUsmMakeTable(kRgb, 3, level_curve, 3, difference_curve, level.data(), difference.data()),
      OVRA_OK);
  // Slope 1/2 an entry up to 512, then -1/8 anchored at its right end; both go on to the ends.
  const std::pair<size_t, int16_t> levels[] = {
      {0, -63},   {1, -63},   {2, -62},   {256, 64},  {257, 65},  {258, 65},  {511, 192},
      {512, 192}, {516, 192}, {517, 191}, {767, 160}, {768, 160}, {773, 159}, {1023, 128}};
  for (const auto& [at, value] : levels) EXPECT_EQ(level[at], value) << at;
  // Slope 1/8, then -3/16 toward -64 at 2048.
  const std::pair<size_t, int16_t> differences[] = {
      {0, 0}, {3, 0}, {4, 1}, {1023, 128}, {1024, 128}, {1025, 128}, {1027, 127}, {2047, -63}};
  for (const auto& [at, value] : differences) EXPECT_EQ(difference[at], value) << at;
}

// Values that no entry can hold, and points far beyond the tables.
TEST(YUsmMakeTable, TakesExtremeCurves) {
  std::vector<int16_t> table(OVRA_DIFFERENCE_TABLE_SIZE);
  for (const double far : {2.0, 1e300, HUGE_VAL}) {
    for (const double y : {1.0, 1e9, -HUGE_VAL, std::nan("")}) {
      const OvraResponsePoint points[] = {{0.0, 1.0}, {0.9999, y}, {1.0, y}, {far, 2.0}};
      EXPECT_EQ(OvraYUsmMakeTable(kRgb, 4, points, 4, points, table.data(), table.data()), OVRA_OK);
    }
  }
}

Bytes DoubleMasked(const Bytes& in, float amount, OvraPixelFormatCode format) {
  const int32_t coarse[] = {1, 3, 8, 15, 23, 28, 23, 15, 8, 3, 1};
  const int32_t fine[] = {32, 64, 32};
  Bytes out(in.size());
  EXPECT_EQ(OvraYUsmDoubleSingleStep(in.data(), out.data(), kSide, kSide, format, 11, coarse, 3,
                                     fine, amount, kNeutral.data(), kNeutral.data(), amount,
                                     kNeutral.data(), kNeutral.data()),
            OVRA_OK);
  return out;
}

TEST(YUsmDouble, FlatImagesAndNeutralParametersChangeNothing) {
  const Bytes flat(3 * kSide * kSide, 77);
  EXPECT_EQ(DoubleMasked(flat, 3.0F, kRgb), flat);
  EXPECT_EQ(DoubleMasked(flat, 3.0F, kYcc), flat);
  const Bytes noise = Noise();
  const Bytes out = DoubleMasked(noise, 1.0F, kYcc);
  for (size_t i = 0; i < noise.size(); ++i) {
    ASSERT_NEAR(out[i], noise[i], 1) << i;  // the bands' shifts round down
    ASSERT_TRUE(i % 3 == 0 || out[i] == noise[i]) << "a copied channel";
  }
}

Bytes Smoothed(const Bytes& in, uint32_t width, uint32_t height) {
  Bytes out(in.size());
  EXPECT_EQ(OvraEFilterImage(in.data(), out.data(), width, height, kRgb), OVRA_OK);
  return out;
}

TEST(EdgeFilter, FlatPicturesAndSharpEdgesStay) {
  Bytes picture(3 * kSide * kSide);
  for (size_t i = 0; i < picture.size(); ++i) picture[i] = static_cast<uint8_t>(i % 3 * 100 + 55);
  EXPECT_EQ(Smoothed(picture, kSide, kSide), picture);
  for (size_t i = 1; i < picture.size(); i += 3) {
    if (i / 3 % kSide >= 11) picture[i] = 86;  // 69 away
  }
  EXPECT_EQ(Smoothed(picture, kSide, kSide), picture);
}

// One pixel differs from its surroundings by less than 20 in all: it goes to the mean of 49
// neighbours with itself among them.
TEST(EdgeFilter, SmallDifferencesAreAveraged) {
  Bytes picture(3 * kSide * kSide, 100);
  const size_t dot = 3 * (10 * kSide + 10);
  picture[dot] = 119;
  const Bytes smoothed = Smoothed(picture, kSide, kSide);
  EXPECT_EQ(smoothed[dot], 101);      // 119 - 48 * 19 / 49, truncated
  EXPECT_EQ(smoothed[dot + 6], 100);  // 100 + 19 / 49
  picture[dot] = 141;                 // 41 away: nothing pulls
  EXPECT_EQ(Smoothed(picture, kSide, kSide)[dot], 141);
}

// Upright stripes of a middling step in one channel cover some columns at the left of a picture.
// Where they cover more than a fifth of it, the filter reaches farther: it also pulls a dot that is
// 45 away from its surroundings.
TEST(EdgeFilter, MoreThanAFifthOfMiddlingDetailChoosesTheWideTable) {
  constexpr uint32_t kRows = 14;
  const auto pulls_the_dot = [](uint32_t width, size_t channel, int step) {
    Bytes picture(3 * width * kRows, 100);
    for (size_t i = channel; i < picture.size(); i += 3) {
      const size_t x = i / 3 % width;
      if (x < 60 && x % 12 >= 6) picture[i] = static_cast<uint8_t>(100 + step);
    }
    const size_t dot = 3 * (7 * width + 68) + 1;
    picture[dot] = 145;
    return Smoothed(picture, width, kRows)[dot] != 145;
  };
  for (const auto& [channel, step] : {std::pair(0U, 25), {2U, 20}}) {
    EXPECT_TRUE(pulls_the_dot(80, channel, step)) << channel;
    EXPECT_FALSE(pulls_the_dot(900, channel, step)) << channel;
  }
}

OvraSoftFocusParams Soft(int32_t radius, double base, int32_t exponent, double mix) {
  return {radius, exponent, base, {}, mix};
}

Bytes Softened(const Bytes& in, const OvraSoftFocusParams& params) {
  Bytes out(in.size());
  EXPECT_EQ(OvraSoftFocus(in.data(), out.data(), kSide, kSide, &params), OVRA_OK);
  return out;
}

// For kSide pixels a radius of 1000 is 7.99 pixels, hence 8.
TEST(SoftFocus, CopiesWhenNothingIsToBeBlurred) {
  constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
  const Bytes picture = Noise();
  ASSERT_NE(Softened(picture, Soft(1000, 0.1, 1, 1.0)), picture);
  std::vector<OvraSoftFocusParams> cases = {Soft(1000, 0.1, 0, 1.0)};
  for (const int32_t radius : {62, 0, -1000, std::numeric_limits<int32_t>::min()}) {
    cases.push_back(Soft(radius, 0.1, 1, 1.0));  // the first scales to 0.4954
  }
  for (const double decay : {1.0, 0.0, 1.5, -0.5, kNan}) cases.push_back(Soft(1000, decay, 1, 1.0));
  for (const double share : {0.0, -1.0, kNan}) cases.push_back(Soft(1000, 0.1, 1, share));
  for (const OvraSoftFocusParams& params : cases) {
    EXPECT_EQ(Softened(picture, params), picture) << &params - cases.data();
  }
  EXPECT_NE(Softened(picture, Soft(64, 0.1, 1, 1.0)), picture);  // 0.5114
  EXPECT_EQ(Softened(picture, Soft(1000, 0.1, 1, 7.0)), Softened(picture, Soft(1000, 0.1, 1, 1.0)));
}

// A flat picture stays so within a level or two, and goes black when nothing decays.
TEST(SoftFocus, FlatPicturesStayFlat) {
  const Bytes flat(3 * kSide * kSide, 200);
  const Bytes soft = Softened(flat, Soft(5000, 0.1, 1, 1.0));  // a blur of 40 pixels
  const auto [darkest, brightest] = std::minmax_element(soft.begin(), soft.end());
  EXPECT_GE(*darkest, 197);
  EXPECT_LE(*brightest, 203);
  EXPECT_EQ(Softened(flat, Soft(150, 0.999999, 1, 1.0)), Bytes(flat.size(), 0));
}

}  // namespace
