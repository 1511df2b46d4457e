// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "ovra/filter.h"
#include "support/guarded_buffer.h"
#include "support/random.h"
#include "support/yusm_reference.h"

namespace {

using ovra_test::Guard;
using ovra_test::GuardedBuffer;
using ovra_test::Random;
using ovra_test::RandomInt;
using ovra_test::YUsmCase;

constexpr OvraPixelFormatCode kRgb8 = 0x00000120;
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

struct Tables {
  std::array<int16_t, OVRA_LEVEL_TABLE_SIZE> level;
  std::array<int16_t, OVRA_DIFFERENCE_TABLE_SIZE> difference;
  Tables() {
    level.fill(128);
    difference.fill(128);
  }
};

// Every depth, model, alignment and kind of weights, against whole planes computed pixel by pixel;
// images down to exactly the tap count; into another buffer and in place.
TEST(YUsm, EqualsTheDefinition) {
  Random random(41);
  for (int i = 0; i < 500; ++i) {
    const YUsmCase test = ovra_test::RandomYUsmCase(random);
    const auto source = ovra_test::RandomYUsmImage(test, random);
    const std::vector<uint8_t> expected =
        ovra_test::ReferenceYUsm(test, {source.begin(), source.end()});
    const Guard guard = i % 2 == 0 ? Guard::kAfter : Guard::kBefore;
    GuardedBuffer in(source.size(), guard);
    std::copy(source.begin(), source.end(), in.begin());
    GuardedBuffer out(source.size(), guard);
    for (size_t at = 0; at < source.size(); ++at) {
      if (!ovra_test::IsPixelByte(test, at)) out[at] = source[at];
    }
    const auto run = [&test](const uint8_t* from, uint8_t* to) {
      return OvraYUsmSingleStep(from, to, test.width, test.height, test.Format(), test.TapCount(),
                                test.weights.data(), test.amount, test.level.data(),
                                test.difference.data());
    };
    ASSERT_EQ(run(in.data(), out.data()), OVRA_OK) << test.Describe();
    ASSERT_TRUE(std::equal(expected.begin(), expected.end(), out.begin())) << test.Describe();
    ASSERT_EQ(run(in.data(), in.data()), OVRA_OK) << test.Describe();
    ASSERT_TRUE(std::equal(expected.begin(), expected.end(), in.begin()))
        << "in place, " << test.Describe();
  }
}

TEST(YUsm, AmountOneAndFlatImagesChangeNothing) {
  Random random(42);
  const Tables tables;
  constexpr uint32_t kSide = 20;
  const int32_t weights[] = {-20, 50, 68, 50, -20};
  for (const uint32_t depth_code : {0U, 2U, 6U}) {
    const OvraPixelFormatCode format = kRgb8 | depth_code;
    std::vector<uint16_t> noise(kSide * kSide * 3);
    ovra_test::FillSamples(random, noise.data(), noise.data() + noise.size(),
                           depth_code == 0 ? 0xFFFF : (256U << depth_code) - 1);
    const std::vector<uint16_t> flat(noise.size(), 0x0101);
    const auto run = [&](const std::vector<uint16_t>& image, float amount) {
      std::vector<uint16_t> out(image.size());
      EXPECT_EQ(OvraYUsmSingleStep(reinterpret_cast<const uint8_t*>(image.data()),
                                   reinterpret_cast<uint8_t*>(out.data()), kSide, kSide, format, 5,
                                   weights, amount, tables.level.data(), tables.difference.data()),
                OVRA_OK);
      return std::vector<uint8_t>(
          reinterpret_cast<uint8_t*>(out.data()),
          reinterpret_cast<uint8_t*>(out.data()) + kSide * kSide * 3 * (depth_code == 0 ? 1 : 2));
    };
    const auto bytes = [](const std::vector<uint16_t>& image, size_t size) {
      const auto* begin = reinterpret_cast<const uint8_t*>(image.data());
      return std::vector<uint8_t>(begin, begin + size);
    };
    const std::vector<uint8_t> unchanged = run(noise, 1.0F);
    EXPECT_EQ(unchanged, bytes(noise, unchanged.size()));
    const std::vector<uint8_t> still_flat = run(flat, 7.5F);
    EXPECT_EQ(still_flat, bytes(flat, still_flat.size()));
    EXPECT_NE(run(noise, 2.0F), unchanged);
  }
}

TEST(YUsm, ContextServesManyRuns) {
  Random random(43);
  YUsmCase test = ovra_test::RandomYUsmCase(random);
  OvraYUsmContext* context = nullptr;
  ASSERT_EQ(OvraYUsm_Init(test.Format(), test.TapCount(), test.weights.data(), test.amount,
                          test.level.data(), test.difference.data(), &context),
            OVRA_OK);
  ASSERT_NE(context, nullptr);
  for (int i = 0; i < 3; ++i) {
    test.width += 5;
    test.height += 3;
    const auto source = ovra_test::RandomYUsmImage(test, random);
    std::vector<uint8_t> out = source;
    EXPECT_EQ(OvraYUsm(source.data(), out.data(), test.width, test.height, test.Format(), context),
              OVRA_OK);
    EXPECT_EQ(out, ovra_test::ReferenceYUsm(test, source));
  }
  EXPECT_EQ(OvraYUsm_Free(&context), OVRA_OK);
  EXPECT_EQ(context, nullptr);
  EXPECT_EQ(OvraYUsm_Free(&context), OVRA_OK);
  EXPECT_EQ(OvraYUsm_Free(nullptr), OVRA_ERROR_YUSM_NULL);
}

struct FormatCase {
  OvraPixelFormatCode format;
  OvraStatus status;
};

// A format with several faults is answered with the first one's status.
const FormatCase kFormats[] = {
    {0x00000000, OVRA_OK},
    {0x00000006, OVRA_OK},
    {0x01200120, OVRA_OK},
    {0x00000223, OVRA_OK},
    {0x00000320, OVRA_OK},
    {0x00001030, OVRA_OK},
    {0xF0001136, OVRA_OK},
    {0x0F3308FF & ~0xF0, OVRA_ERROR_FORMAT_DEPTH},
    {0x0F33084A, OVRA_ERROR_FORMAT_CHANNELS},
    {0x0F330810, OVRA_ERROR_FORMAT_COLOR_MODEL},
    {0x0F330717, OVRA_ERROR_FORMAT_ARRANGEMENT},
    {0x0F320717, OVRA_ERROR_FORMAT_ROW_ALIGNMENT},
    {0x0F220717, OVRA_ERROR_FORMAT_ROW_ORDER},
    {0x01220717, OVRA_ERROR_YUSM_CHANNELS},
    {0x01220727, OVRA_ERROR_YUSM_DEPTH},
    {0x01220729, OVRA_ERROR_YUSM_DEPTH},
    {0x01220726, OVRA_ERROR_YUSM_COLOR_MODEL},
    {0x00000100, OVRA_ERROR_YUSM_COLOR_MODEL},
    {0x00000020, OVRA_ERROR_YUSM_COLOR_MODEL},
    {0x00000420, OVRA_ERROR_YUSM_COLOR_MODEL},
    {0x00001020, OVRA_ERROR_YUSM_COLOR_MODEL},
    {0x00000130, OVRA_ERROR_YUSM_COLOR_MODEL},
    {0x00001230, OVRA_ERROR_YUSM_COLOR_MODEL},
    {0x00010120, OVRA_ERROR_YUSM_ARRANGEMENT},
};

TEST(YUsm, FormatsAreChecked) {
  Tables tables;
  const OvraResponsePoint points[] = {{0.0, 1.0}, {1.0, 1.0}};
  const int32_t weights[] = {128};
  std::vector<uint8_t> image(64);
  for (const auto& [format, status] : kFormats) {
    OvraYUsmContext* context = nullptr;
    EXPECT_EQ(OvraYUsm_Init(format, 1, weights, 2.0F, tables.level.data(), tables.difference.data(),
                            &context),
              status)
        << std::hex << format;
    EXPECT_EQ(context == nullptr, status != OVRA_OK);
    OvraYUsm_Free(&context);
    EXPECT_EQ(OvraYUsmSingleStep(image.data(), image.data(), 2, 2, format, 1, weights, 2.0F,
                                 tables.level.data(), tables.difference.data()),
              status);
    EXPECT_EQ(OvraYUsmMakeTable(format, 2, points, 2, points, tables.level.data(),
                                tables.difference.data()),
              status);
    ASSERT_EQ(OvraYUsm_Init(kRgb8, 1, weights, 2.0F, tables.level.data(), tables.difference.data(),
                            &context),
              OVRA_OK);
    EXPECT_EQ(OvraYUsm(image.data(), image.data(), 2, 2, format, context), status);
    OvraYUsm_Free(&context);
  }
}

// Each call has the fault of its line and those of the lines below.
TEST(YUsm, ChecksComeInOrder) {
  constexpr OvraPixelFormatCode kBad = 0x00000110;
  Tables tables;
  const int16_t* const level = tables.level.data();
  const int16_t* const difference = tables.difference.data();
  const std::vector<int32_t> weights(70, 1);
  const int32_t* const w = weights.data();
  std::vector<uint8_t> image(3 * 70 * 70, 7);
  uint8_t* const p = image.data();

  const auto single = [](const uint8_t* source, uint8_t* destination, uint32_t width,
                         uint32_t height, int32_t taps, const int32_t* weights_or_null,
                         const int16_t* level_or_null, const int16_t* difference_or_null) {
    return OvraYUsmSingleStep(source, destination, width, height, kBad, taps, weights_or_null, 2.0F,
                              level_or_null, difference_or_null);
  };
  EXPECT_EQ(single(nullptr, p, 2, 2, 3, nullptr, nullptr, nullptr), OVRA_ERROR_YUSM_NULL);
  EXPECT_EQ(single(p, nullptr, 2, 2, 3, nullptr, nullptr, nullptr), OVRA_ERROR_YUSM_NULL);
  EXPECT_EQ(single(p, p, 2, 3, 3, nullptr, nullptr, nullptr), OVRA_ERROR_YUSM_SIZE);
  EXPECT_EQ(single(p, p, 3, 2, 3, nullptr, nullptr, nullptr), OVRA_ERROR_YUSM_SIZE);
  EXPECT_EQ(single(p, p, 70, 70, -1, w, nullptr, nullptr), OVRA_ERROR_YUSM_SIZE);
  EXPECT_EQ(single(p, p, 3, 3, 3, nullptr, nullptr, nullptr), OVRA_ERROR_YUSM_TAPS);
  EXPECT_EQ(single(p, p, 0, 0, 0, w, nullptr, nullptr), OVRA_ERROR_YUSM_TAPS);
  EXPECT_EQ(single(p, p, 70, 70, 65, w, nullptr, nullptr), OVRA_ERROR_YUSM_TAPS);
  EXPECT_EQ(single(p, p, 3, 3, 3, w, nullptr, difference), OVRA_ERROR_YUSM_NULL_TABLE);
  EXPECT_EQ(single(p, p, 3, 3, 3, w, level, nullptr), OVRA_ERROR_YUSM_NULL_TABLE);
  EXPECT_EQ(single(p, p, 3, 3, 3, w, level, difference), OVRA_ERROR_YUSM_CHANNELS);

  OvraYUsmContext* context = nullptr;
  const auto init = [&context](OvraPixelFormatCode format, int32_t taps, const int32_t* weights_in,
                               const int16_t* level_in, const int16_t* difference_in) {
    context = reinterpret_cast<OvraYUsmContext*>(16);
    const OvraStatus status =
        OvraYUsm_Init(format, taps, weights_in, 2.0F, level_in, difference_in, &context);
    if (status != OVRA_OK) {
      EXPECT_EQ(context, nullptr);
    }
    return status;
  };
  EXPECT_EQ(OvraYUsm_Init(kBad, 0, nullptr, 2.0F, nullptr, nullptr, nullptr), OVRA_ERROR_YUSM_NULL);
  EXPECT_EQ(init(kBad, 0, nullptr, nullptr, nullptr), OVRA_ERROR_YUSM_CHANNELS);
  for (const int32_t taps : {0, -1, 65, std::numeric_limits<int32_t>::min()}) {
    EXPECT_EQ(init(kRgb8, taps, w, nullptr, nullptr), OVRA_ERROR_YUSM_TAPS);
  }
  EXPECT_EQ(init(kRgb8, 3, nullptr, nullptr, nullptr), OVRA_ERROR_YUSM_TAPS);
  EXPECT_EQ(init(kRgb8, 64, w, nullptr, difference), OVRA_ERROR_YUSM_NULL_TABLE);
  EXPECT_EQ(init(kRgb8, 64, w, level, nullptr), OVRA_ERROR_YUSM_NULL_TABLE);

  ASSERT_EQ(init(kRgb8, 64, w, level, difference), OVRA_OK);
  EXPECT_EQ(OvraYUsm(nullptr, p, 2, 2, kBad, context), OVRA_ERROR_YUSM_NULL);
  EXPECT_EQ(OvraYUsm(p, nullptr, 2, 2, kBad, context), OVRA_ERROR_YUSM_NULL);
  EXPECT_EQ(OvraYUsm(p, p, 2, 2, kBad, nullptr), OVRA_ERROR_YUSM_NULL);
  EXPECT_EQ(OvraYUsm(p, p, 63, 64, kBad, context), OVRA_ERROR_YUSM_SIZE);
  EXPECT_EQ(OvraYUsm(p, p, 64, 63, kBad, context), OVRA_ERROR_YUSM_SIZE);
  EXPECT_EQ(OvraYUsm(p, p, 64, 64, kBad, context), OVRA_ERROR_YUSM_CHANNELS);
  EXPECT_EQ(OvraYUsm(p, p, 64, 0x80000000U, kRgb8, context), OVRA_ERROR_NO_MEMORY);
  OvraYUsm_Free(&context);
  EXPECT_EQ(image, std::vector<uint8_t>(image.size(), 7));
}

TEST(YUsmMakeTable, ChecksComeInOrder) {
  constexpr OvraPixelFormatCode kBad = 0x00000110;
  using Points = std::vector<OvraResponsePoint>;
  Tables tables;
  const Points good = {{0.0, 1.0}, {1.0, 2.0}};
  int16_t* const level = tables.level.data();
  int16_t* const difference = tables.difference.data();
  EXPECT_EQ(OvraYUsmMakeTable(kBad, 0, nullptr, 0, nullptr, nullptr, difference),
            OVRA_ERROR_YUSM_NULL);
  EXPECT_EQ(OvraYUsmMakeTable(kBad, 0, nullptr, 0, nullptr, level, nullptr), OVRA_ERROR_YUSM_NULL);
  for (const int32_t count : {0, -1}) {
    EXPECT_EQ(OvraYUsmMakeTable(kBad, count, nullptr, 2, nullptr, level, difference),
              OVRA_ERROR_YUSM_POINT_COUNT);
    EXPECT_EQ(OvraYUsmMakeTable(kBad, 2, nullptr, count, nullptr, level, difference),
              OVRA_ERROR_YUSM_POINT_COUNT);
  }
  EXPECT_EQ(OvraYUsmMakeTable(kBad, 2, nullptr, 2, good.data(), level, difference),
            OVRA_ERROR_YUSM_NULL);
  EXPECT_EQ(OvraYUsmMakeTable(kBad, 2, good.data(), 2, nullptr, level, difference),
            OVRA_ERROR_YUSM_NULL);

  const auto make = [&](OvraPixelFormatCode format, const Points& levels,
                        const Points& differences) {
    return OvraYUsmMakeTable(format, static_cast<int32_t>(levels.size()), levels.data(),
                             static_cast<int32_t>(differences.size()), differences.data(), level,
                             difference);
  };
  // The x of the last point alone may lie outside the range.
  const Points bad_level[] = {
      {{-0.001, 1.0}, {0.5, 1.0}}, {{0.0, 1.0}, {1.001, 1.0}, {2.0, 1.0}},
      {{0.5, 1.0}, {0.5, 1.0}},    {{0.6, 1.0}, {0.5, 1.0}},
      {{kNan, 1.0}, {0.5, 1.0}},   {{0.5, 1.0}, {kNan, 1.0}},
  };
  for (const Points& points : bad_level) {
    EXPECT_EQ(make(kBad, points, bad_level[2]), OVRA_ERROR_YUSM_LEVEL_CURVE);
  }
  const Points bad_difference[] = {
      {{-1.001, 1.0}, {0.5, 1.0}}, {{0.0, 1.0}, {1.001, 1.0}, {2.0, 1.0}}, bad_level[2]};
  for (const Points& points : bad_difference) {
    EXPECT_EQ(make(kBad, good, points), OVRA_ERROR_YUSM_DIFFERENCE_CURVE);
  }
  EXPECT_EQ(make(kBad, good, good), OVRA_ERROR_YUSM_CHANNELS);
  const Tables untouched;
  EXPECT_EQ(tables.level, untouched.level);
  EXPECT_EQ(tables.difference, untouched.difference);
  EXPECT_EQ(make(kRgb8, {{0.5, 1.0}}, {{9.0, 5.0}}), OVRA_OK);
  EXPECT_EQ(tables.level, untouched.level);
  EXPECT_EQ(tables.difference, untouched.difference);
}

struct Entry {
  size_t at;
  int16_t value;
};

TEST(YUsmMakeTable, LinesBetweenPoints) {
  Tables tables;
  const OvraResponsePoint level[] = {{0.25, 0.5}, {0.5, 1.5}, {0.75, 1.25}};
  const OvraResponsePoint difference[] = {{-1.0, 0.0}, {0.0, 1.0}, {1.0, -0.5}};
  ASSERT_EQ(OvraYUsmMakeTable(kRgb8, 3, level, 3, difference, tables.level.data(),
                              tables.difference.data()),
            OVRA_OK);
  // Slope 1/2 an entry up to 512, then -1/8 anchored at its right end; both go on to the ends.
  const Entry expected_level[] = {{0, -63},   {1, -63},   {2, -62},   {256, 64},  {257, 65},
                                  {258, 65},  {511, 192}, {512, 192}, {513, 192}, {516, 192},
                                  {517, 191}, {767, 160}, {768, 160}, {773, 159}, {1023, 128}};
  for (const auto& [at, value] : expected_level) EXPECT_EQ(tables.level[at], value) << at;
  // Slope 1/8, then -3/16 toward -64 at 2048.
  const Entry expected_difference[] = {{0, 0},      {3, 0},      {4, 1},      {1023, 128},
                                       {1024, 128}, {1025, 128}, {1027, 127}, {2047, -63}};
  for (const auto& [at, value] : expected_difference) {
    EXPECT_EQ(tables.difference[at], value) << at;
  }
}

// Control points at the very ends, and values that no entry can hold.
TEST(YUsmMakeTable, StaysInsideTheTables) {
  GuardedBuffer level(OVRA_LEVEL_TABLE_SIZE * sizeof(int16_t));
  GuardedBuffer difference(OVRA_DIFFERENCE_TABLE_SIZE * sizeof(int16_t));
  for (const double far : {2.0, 1e300, kInfinity}) {
    for (const double y : {1.0, 1e9, -kInfinity, kNan}) {
      const OvraResponsePoint points[] = {{0.0, 1.0}, {0.9999, y}, {1.0, y}, {far, 2.0}};
      EXPECT_EQ(OvraYUsmMakeTable(kRgb8, 4, points, 4, points, level.as<int16_t>(),
                                  difference.as<int16_t>()),
                OVRA_OK);
    }
  }
}

}  // namespace
