// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "ovra/filter.h"
#include "support/random.h"

namespace {

constexpr OvraPixelFormatCode kRgb8 = 0x120;
constexpr OvraPixelFormatCode kYcc8 = 0x320;

// The arguments of a mask, any of which a test may change.
struct Arguments {
  OvraPixelFormatCode format = kRgb8;
  uint32_t tap_count1 = 5;
  uint32_t tap_count2 = 3;
  const int32_t* weights1;
  const int32_t* weights2;
  float amount1 = 2.0F;
  float amount2 = 3.0F;
  const int16_t* level1;
  const int16_t* difference1;
  const int16_t* level2;
  const int16_t* difference2;

  OvraStatus Init(OvraYUsmDoubleContext** context) const {
    return OvraYUsmDouble_Init(format, tap_count1, weights1, tap_count2, weights2, amount1, level1,
                               difference1, amount2, level2, difference2, context);
  }
  OvraStatus SingleStep(const uint8_t* source, uint8_t* destination, uint32_t width,
                        uint32_t height) const {
    return OvraYUsmDoubleSingleStep(source, destination, width, height, format, tap_count1,
                                    weights1, tap_count2, weights2, amount1, level1, difference1,
                                    amount2, level2, difference2);
  }
};

class YUsmDouble : public testing::Test {
 protected:
  YUsmDouble() {
    good_.weights1 = good_.weights2 = weights_.data();
    good_.level1 = good_.level2 = level_.data();
    good_.difference1 = good_.difference2 = difference_.data();
  }

  const std::vector<int32_t> weights_ = std::vector<int32_t>(60, 7);
  const std::vector<int16_t> level_ = std::vector<int16_t>(OVRA_LEVEL_TABLE_SIZE, 128);
  const std::vector<int16_t> difference_ = std::vector<int16_t>(OVRA_DIFFERENCE_TABLE_SIZE, 128);
  Arguments good_;
};

TEST_F(YUsmDouble, InitChecksInOrder) {
  auto* const garbage = reinterpret_cast<OvraYUsmDoubleContext*>(16);
  const auto init = [garbage](const Arguments& arguments, OvraYUsmDoubleContext** context) {
    *context = garbage;
    return arguments.Init(context);
  };
  OvraYUsmDoubleContext* context = nullptr;
  Arguments bad = good_;
  bad.format = 0x100120;
  bad.level1 = nullptr;
  for (uint32_t Arguments::*const taps : {&Arguments::tap_count1, &Arguments::tap_count2}) {
    Arguments long_kernel = bad;
    long_kernel.*taps = 26;
    EXPECT_EQ(init(long_kernel, &context), OVRA_ERROR_YUSM_DOUBLE_TAPS);
    EXPECT_EQ(context, garbage);
  }
  EXPECT_EQ(init(bad, &context), OVRA_ERROR_YUSM_DOUBLE_FORMAT);
  EXPECT_EQ(context, nullptr);
  EXPECT_EQ(bad.Init(nullptr), OVRA_ERROR_YUSM_DOUBLE_FORMAT);
  for (const OvraPixelFormatCode format : {0x121U, 0x220U, 0x1000120U, 0x80000120U, 0x20U}) {
    bad.format = format;
    EXPECT_EQ(init(bad, &context), OVRA_ERROR_YUSM_DOUBLE_FORMAT) << std::hex << format;
  }
  bad.format = kYcc8;
  EXPECT_EQ(init(bad, &context), OVRA_ERROR_YUSM_DOUBLE_ARGUMENT);
  EXPECT_EQ(context, nullptr);
  bad = good_;
  bad.weights2 = nullptr;
  EXPECT_EQ(init(bad, &context), OVRA_ERROR_YUSM_DOUBLE_ARGUMENT);
  EXPECT_EQ(good_.Init(nullptr), OVRA_ERROR_YUSM_DOUBLE_ARGUMENT);
}

TEST_F(YUsmDouble, RunChecksInOrder) {
  OvraYUsmDoubleContext* context = nullptr;
  ASSERT_EQ(good_.Init(&context), OVRA_OK);
  std::vector<uint8_t> image(3 * 10 * 10, 9);
  uint8_t* const p = image.data();
  EXPECT_EQ(OvraYUsmDouble(nullptr, nullptr, 0, 0, 0x121, nullptr), OVRA_ERROR_YUSM_DOUBLE_FORMAT);
  EXPECT_EQ(OvraYUsmDouble(nullptr, p, 10, 10, kRgb8, context), OVRA_ERROR_YUSM_DOUBLE_ARGUMENT);
  EXPECT_EQ(OvraYUsmDouble(p, nullptr, 10, 10, kRgb8, context), OVRA_ERROR_YUSM_DOUBLE_ARGUMENT);
  EXPECT_EQ(OvraYUsmDouble(p, p, 10, 10, kRgb8, nullptr), OVRA_ERROR_YUSM_DOUBLE_ARGUMENT);
  EXPECT_EQ(OvraYUsmDouble(p, p, 0, 10, kRgb8, context), OVRA_ERROR_YUSM_DOUBLE_ARGUMENT);
  EXPECT_EQ(OvraYUsmDouble(p, p, 10, 0, kRgb8, context), OVRA_ERROR_YUSM_DOUBLE_ARGUMENT);
  EXPECT_EQ(OvraYUsmDouble(p, p, 4, 10, kRgb8, context), OVRA_ERROR_YUSM_DOUBLE_ARGUMENT);
  EXPECT_EQ(OvraYUsmDouble(p, p, 10, 4, kRgb8, context), OVRA_ERROR_YUSM_DOUBLE_ARGUMENT);
  EXPECT_EQ(OvraYUsmDouble(p, p, 10, 0x80000000U, kRgb8, context), OVRA_ERROR_NO_MEMORY);
  EXPECT_EQ(image, std::vector<uint8_t>(image.size(), 9));
  EXPECT_EQ(OvraYUsmDouble(p, p, 5, 5, kYcc8, context), OVRA_OK);
  EXPECT_EQ(OvraYUsmDouble_Free(&context), OVRA_OK);
  EXPECT_EQ(context, nullptr);
  EXPECT_EQ(OvraYUsmDouble_Free(&context), OVRA_OK);
  EXPECT_EQ(OvraYUsmDouble_Free(nullptr), OVRA_OK);
}

TEST_F(YUsmDouble, SingleStepChecksInOrder) {
  std::vector<uint8_t> image(3 * 60 * 60, 9);
  uint8_t* const p = image.data();
  Arguments bad = good_;
  bad.format = 0x121;
  bad.level2 = nullptr;
  EXPECT_EQ(bad.SingleStep(p, p, 4, 5), OVRA_ERROR_YUSM_DOUBLE_ARGUMENT);
  EXPECT_EQ(bad.SingleStep(p, p, 5, 4), OVRA_ERROR_YUSM_DOUBLE_ARGUMENT);
  EXPECT_EQ(bad.SingleStep(nullptr, p, 5, 5), OVRA_ERROR_YUSM_DOUBLE_FORMAT);
  bad.format = kRgb8;
  EXPECT_EQ(bad.SingleStep(p, p, 5, 5), OVRA_ERROR_YUSM_DOUBLE_ARGUMENT);
  EXPECT_EQ(good_.SingleStep(nullptr, p, 5, 5), OVRA_ERROR_YUSM_DOUBLE_ARGUMENT);
  EXPECT_EQ(good_.SingleStep(p, nullptr, 5, 5), OVRA_ERROR_YUSM_DOUBLE_ARGUMENT);
  EXPECT_EQ(image, std::vector<uint8_t>(image.size(), 9));
  // More taps than a context holds, and none at all.
  Arguments many = good_;
  many.tap_count1 = 60;
  EXPECT_EQ(many.SingleStep(p, p, 60, 60), OVRA_OK);
  EXPECT_EQ(many.SingleStep(p, p, 59, 60), OVRA_ERROR_YUSM_DOUBLE_ARGUMENT);
  Arguments none = good_;
  none.tap_count1 = none.tap_count2 = 0;
  none.weights1 = none.weights2 = nullptr;
  EXPECT_EQ(none.SingleStep(p, p, 60, 60), OVRA_OK);
  EXPECT_EQ(none.SingleStep(p, p, 0, 60), OVRA_OK);
}

TEST_F(YUsmDouble, FlatImagesAndNeutralParametersChangeNothing) {
  constexpr uint32_t kSide = 40;
  const std::vector<int32_t> coarse = {1, 3, 8, 15, 23, 28, 23, 15, 8, 3, 1};
  Arguments mask = good_;
  mask.tap_count1 = 11;
  mask.weights1 = coarse.data();
  std::vector<uint8_t> flat(3 * kSide * kSide, 77);
  std::vector<uint8_t> out(flat.size());
  for (const OvraPixelFormatCode format : {kRgb8, kYcc8}) {
    mask.format = format;
    ASSERT_EQ(mask.SingleStep(flat.data(), out.data(), kSide, kSide), OVRA_OK);
    EXPECT_EQ(out, flat);
  }

  mask.amount1 = mask.amount2 = 1.0F;
  ovra_test::Random random(71);
  std::vector<uint8_t> noise(flat.size());
  ovra_test::FillSamples(random, noise.data(), noise.data() + noise.size(), 255U);
  ASSERT_EQ(mask.SingleStep(noise.data(), out.data(), kSide, kSide), OVRA_OK);
  for (size_t i = 0; i < noise.size(); ++i) {
    ASSERT_NEAR(out[i], noise[i], 1) << i;  // the bands' shifts round down
    ASSERT_TRUE(i % 3 == 0 || out[i] == noise[i]) << "a copied channel";
  }
}

// Two pictures on both sides of the limit between the forms, the larger with one column more: away
// from that column they are the same.
TEST_F(YUsmDouble, BothSidesOfTheSizeLimitAgree) {
  constexpr size_t kHeight = 20;
  constexpr size_t kSmall = 2139;
  constexpr size_t kLarge = kSmall + 1;
  ovra_test::Random random(72);
  std::vector<uint8_t> large(3 * kLarge * kHeight);
  ovra_test::FillSamples(random, large.data(), large.data() + large.size(), 255U);
  std::vector<uint8_t> small;
  for (size_t row = 0; row < kHeight; ++row) {
    const auto begin = large.begin() + static_cast<std::ptrdiff_t>(3 * kLarge * row);
    small.insert(small.end(), begin, begin + 3 * kSmall);
  }
  ASSERT_EQ(good_.SingleStep(large.data(), large.data(), kLarge, kHeight), OVRA_OK);
  ASSERT_EQ(good_.SingleStep(small.data(), small.data(), kSmall, kHeight), OVRA_OK);
  for (size_t row = 0; row < kHeight; ++row) {
    const auto small_row = small.begin() + static_cast<std::ptrdiff_t>(3 * kSmall * row);
    const auto large_row = large.begin() + static_cast<std::ptrdiff_t>(3 * kLarge * row);
    const size_t reached = good_.tap_count1 / 2;
    ASSERT_TRUE(std::equal(small_row, small_row + 3 * (kSmall - reached), large_row)) << row;
  }
}

}  // namespace
