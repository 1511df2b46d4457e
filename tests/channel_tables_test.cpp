// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <limits>
#include <vector>

#include "ovra/color.h"
#include "support/color_images.h"
#include "support/guarded_buffer.h"
#include "support/random.h"

namespace {

using ovra_test::ColorFormat;
using ovra_test::GuardedBuffer;
using ovra_test::RowLayout;
using Bytes = std::vector<uint8_t>;
using Polynomials = std::array<OvraChannelPolynomial, 3>;

// Three tables of random entries, some beyond every output depth below 16 bits.
struct Tables {
  Tables(ovra_test::Random& random, uint32_t depth_bits) {
    for (int k = 0; k < 3; ++k) {
      entries[k].resize(size_t{1} << depth_bits);
      ovra_test::FillSamples(random, entries[k].data(), entries[k].data() + entries[k].size(),
                             65535U);
      set.table[k] = entries[k].data();
    }
  }

  std::vector<uint16_t> entries[3];
  OvraChannelTableSet set;
};

TEST(ChannelTables, MapsEverySampleThroughItsTable) {
  ovra_test::Random random(1);
  for (int round = 0; round < 300; ++round) {
    ovra_test::RandomColorImages images(random, round);
    const Tables tables(random, images.in.depth_bits);
    ASSERT_EQ(OvraConvColor1DTblSingleStep(images.source.data(), images.destination.data(),
                                           images.width, images.height, images.in_format,
                                           images.out_format, &tables.set),
              OVRA_OK);
    const uint32_t last = (1U << images.in.depth_bits) - 1;
    const uint32_t max = (1U << images.out.depth_bits) - 1;
    Bytes expected(images.destination.size(), GuardedBuffer::kFill);
    for (size_t y = 0; y < images.in.height; ++y) {
      for (size_t i = 0; i < images.in.samples; ++i) {
        const size_t k = images.model == OVRA_MODEL_BGR ? 2 - i % 3 : i % 3;
        const uint32_t entry = tables.entries[k][std::min(images.SourceSample(y, i), last)];
        images.out.Set(expected.data(), y, i, std::min(entry, max));
      }
    }
    ASSERT_TRUE(std::equal(expected.begin(), expected.end(), images.destination.begin()))
        << "round " << round << ", " << images.in.depth_bits << " to " << images.out.depth_bits
        << " bits";
  }
}

// One row of all values of the input depth, each in all three channels.
std::vector<uint32_t> Curve(const Polynomials& coefficients, uint32_t input_depth,
                            uint32_t output_depth) {
  const size_t width = size_t{1} << input_depth;
  const RowLayout in = {3 * width, 1, input_depth, 1};
  const RowLayout out = {3 * width, 1, output_depth, 1};
  Bytes source(in.Size());
  Bytes destination(out.Size());
  for (size_t i = 0; i < 3 * width; ++i) {
    in.Set(source.data(), 0, i, static_cast<uint32_t>(i / 3));
  }
  EXPECT_EQ(OvraConvColorCoefSingleStep(source.data(), destination.data(),
                                        static_cast<int32_t>(width), 1, ColorFormat(input_depth),
                                        ColorFormat(output_depth), coefficients.data()),
            OVRA_OK);
  std::vector<uint32_t> values;
  for (size_t i = 0; i < 3 * width; ++i) values.push_back(out.At(destination.data(), 0, i));
  return values;
}

TEST(ChannelPolynomials, RoundHalfUpAndLimit) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double huge = std::numeric_limits<double>::infinity();
  const double two53 = 9007199254740992.0;
  struct Case {
    OvraChannelPolynomial polynomial;
    uint32_t input_depth;
    uint32_t output_depth;
    std::function<int64_t(int64_t)> expected;  // before the limits
  };
  const Case cases[] = {
      {{0, 1, 0, nan}, 8, 8, [](int64_t v) { return v; }},
      {{0, 0.5, 0, nan}, 8, 8, [](int64_t v) { return (v + 1) / 2; }},
      {{100, -1, 0, nan}, 8, 8, [](int64_t v) { return 100 - v; }},
      {{-0.5, 1, 0, nan}, 8, 12, [](int64_t v) { return v; }},
      {{0, 255.0 / 65535, 0, nan}, 16, 8, [](int64_t v) { return (2 * v + 257) / 514; }},
      {{0, 0, 1.0 / 65535, nan}, 16, 16, [](int64_t v) { return (2 * v * v + 65535) / 131070; }},
      {{0, 0, 1, nan}, 16, 13, [](int64_t v) { return v * v; }},
      {{nan, 1, 0, nan}, 8, 8, [](int64_t) { return 0; }},
      {{huge, 1, 0, nan}, 8, 8, [](int64_t) { return 255; }},
      {{-huge, 1, 0, nan}, 8, 8, [](int64_t) { return 0; }},
      // The constant joins before the quadratic term, and swallows the linear one.
      {{two53, 1, -two53, nan}, 8, 8, [](int64_t v) { return v == 0 ? 255 : 0; }},
  };
  for (const Case& c : cases) {
    const std::vector<uint32_t> values =
        Curve({c.polynomial, c.polynomial, c.polynomial}, c.input_depth, c.output_depth);
    const int64_t max = (int64_t{1} << c.output_depth) - 1;
    for (size_t i = 0; i < values.size(); ++i) {
      const int64_t v = static_cast<int64_t>(i / 3);
      ASSERT_EQ(values[i], std::clamp<int64_t>(c.expected(v), 0, max))
          << "case " << &c - cases << ", value " << v;
    }
  }
}

TEST(ChannelPolynomials, ServeTheirChannels) {
  const Polynomials coefficients = {{{1, 0, 0, 0}, {2, 0, 0, 0}, {3, 0, 0, 0}}};
  const Bytes source(3);
  Bytes destination(3);
  for (const auto& [model, expected] : {std::pair{OVRA_MODEL_RGB, Bytes{1, 2, 3}},
                                        {OVRA_MODEL_BGR, Bytes{3, 2, 1}},
                                        {OVRA_MODEL_YCC, Bytes{1, 2, 3}}}) {
    EXPECT_EQ(
        OvraConvColorCoefSingleStep(source.data(), destination.data(), 1, 1, ColorFormat(8, model),
                                    ColorFormat(8), coefficients.data()),
        OVRA_OK);
    EXPECT_EQ(destination, expected);
  }
}

// What a call answers to one pair of formats, for all functions that judge formats.
class ChannelTableStatus : public testing::Test {
 protected:
  ChannelTableStatus() {
    EXPECT_EQ(OvraConvColor1DTbl_Init(ColorFormat(8), ColorFormat(8), &tables_.set, &handle_),
              OVRA_OK);
  }
  ~ChannelTableStatus() override { EXPECT_EQ(OvraConvColorCoef_Free(&handle_), OVRA_OK); }

  ovra_test::Random random_{2};
  Tables tables_{random_, 8};
  const Polynomials coefficients_ = {};
  const Bytes source_ = Bytes(6);
  Bytes destination_ = Bytes(6, 77);
  uintptr_t handle_ = 0;
};

TEST_F(ChannelTableStatus, FormatsInOrder) {
  struct Case {
    OvraPixelFormatCode input;
    OvraPixelFormatCode output;
    OvraStatus status;
  };
  // A word of 3 channels is 0x....012., in RGB and 8 bits 0x120.
  const Case cases[] = {
      {0x0F00F1FF, 0x120, OVRA_ERROR_FORMAT_CHANNELS},  // first of all bad fields
      {0x120, 0x12F, OVRA_ERROR_FORMAT_DEPTH},          // decoding comes before judging ...
      {0x110, 0x12F, OVRA_ERROR_FORMAT_DEPTH},          // ... for both formats
      {0x10239, 0x120, OVRA_ERROR_TABLE_CHANNELS},      // channels, depth, model, arrangement
      {0x10429, 0x120, OVRA_ERROR_TABLE_DEPTH},
      {0x10420, 0x120, OVRA_ERROR_TABLE_COLOR_MODEL},
      {0x00020, 0x120, OVRA_ERROR_TABLE_COLOR_MODEL},
      {0x10120, 0x120, OVRA_ERROR_TABLE_ARRANGEMENT},
      {0x120, 0x10239, OVRA_ERROR_TABLE_CHANNELS},
      {0x120, 0x10429, OVRA_ERROR_TABLE_DEPTH},
      {0x120, 0x10420, OVRA_ERROR_TABLE_COLOR_MODEL},
      {0x120, 0x20120, OVRA_ERROR_TABLE_ARRANGEMENT},
      {0x10120, 0x110, OVRA_ERROR_TABLE_ARRANGEMENT},  // the input is judged first
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << std::hex << c.input << " to " << c.output);
    uintptr_t word = 1;
    EXPECT_EQ(OvraConvColor1DTbl_Init(c.input, c.output, &tables_.set, &word), c.status);
    EXPECT_EQ(word, 0U);
    word = 1;
    EXPECT_EQ(OvraConvColorCoef_Init(c.input, c.output, coefficients_.data(), &word), c.status);
    EXPECT_EQ(word, 0U);
    EXPECT_EQ(
        OvraConvColor1DTbl(source_.data(), destination_.data(), 2, 1, c.input, c.output, handle_),
        c.status);
    EXPECT_EQ(
        OvraConvColorCoef(source_.data(), destination_.data(), 2, 1, c.input, c.output, handle_),
        c.status);
    EXPECT_EQ(OvraConvColor1DTblSingleStep(source_.data(), destination_.data(), 2, 1, c.input,
                                           c.output, &tables_.set),
              c.status);
    EXPECT_EQ(OvraConvColorCoefSingleStep(source_.data(), destination_.data(), 2, 1, c.input,
                                          c.output, coefficients_.data()),
              c.status);
  }
  EXPECT_EQ(destination_, Bytes(6, 77));
}

TEST_F(ChannelTableStatus, InitAndFree) {
  constexpr OvraPixelFormatCode kBad = 0x110;
  uintptr_t word = 1;
  EXPECT_EQ(OvraConvColor1DTbl_Init(kBad, kBad, nullptr, &word), OVRA_ERROR_TABLE_NULL);
  EXPECT_EQ(OvraConvColorCoef_Init(kBad, kBad, nullptr, &word), OVRA_ERROR_TABLE_NULL);
  EXPECT_EQ(word, 1U);  // set only after the pointers have been judged
  EXPECT_EQ(OvraConvColor1DTbl_Init(kBad, kBad, &tables_.set, nullptr), OVRA_ERROR_TABLE_NULL);
  EXPECT_EQ(OvraConvColorCoef_Init(kBad, kBad, coefficients_.data(), nullptr),
            OVRA_ERROR_TABLE_NULL);
  for (int k = 0; k < 3; ++k) {
    OvraChannelTableSet set = tables_.set;
    set.table[k] = nullptr;
    word = 1;
    EXPECT_EQ(OvraConvColor1DTbl_Init(kBad, kBad, &set, &word), OVRA_ERROR_TABLE_NULL_TABLE);
    EXPECT_EQ(word, 0U);
  }
  EXPECT_EQ(OvraConvColor1DTbl_Free(nullptr), OVRA_ERROR_TABLE_NULL);
  EXPECT_EQ(OvraConvColorCoef_Free(nullptr), OVRA_ERROR_TABLE_NULL);
  EXPECT_EQ(OvraConvColor1DTbl_Free(&word), OVRA_OK);
  EXPECT_EQ(OvraConvColorCoef_Init(ColorFormat(9), ColorFormat(16), coefficients_.data(), &word),
            OVRA_OK);
  EXPECT_NE(word, 0U);
  EXPECT_EQ(OvraConvColor1DTbl_Free(&word), OVRA_OK);
  EXPECT_EQ(word, 0U);
}

TEST_F(ChannelTableStatus, Conversion) {
  const uint8_t* const src = source_.data();
  uint8_t* const dst = destination_.data();
  constexpr OvraPixelFormatCode kBad = 0x110;
  const struct {
    decltype(&OvraConvColor1DTbl) convert;
    OvraStatus null;
    OvraStatus zero_size;
    OvraStatus changed;
  } families[] = {
      {OvraConvColor1DTbl, OVRA_ERROR_TABLE_NULL, OVRA_ERROR_TABLE_ZERO_SIZE,
       OVRA_ERROR_TABLE_FORMAT_CHANGED},
      {OvraConvColorCoef, OVRA_ERROR_COEFFICIENT_NULL, OVRA_ERROR_COEFFICIENT_ZERO_SIZE,
       OVRA_ERROR_FORMAT_CHANGED},
  };
  for (const auto& f : families) {
    EXPECT_EQ(f.convert(nullptr, dst, 0, 0, kBad, kBad, handle_), f.null);
    EXPECT_EQ(f.convert(src, nullptr, 0, 0, kBad, kBad, handle_), f.null);
    EXPECT_EQ(f.convert(src, dst, 0, 0, kBad, kBad, 0), f.null);
    EXPECT_EQ(f.convert(src, dst, 0, 1, kBad, kBad, handle_), f.zero_size);
    EXPECT_EQ(f.convert(src, dst, 1, 0, kBad, kBad, handle_), f.zero_size);
    EXPECT_EQ(f.convert(src, dst, -2, 1, ColorFormat(8), kBad, handle_), OVRA_ERROR_TABLE_CHANNELS);
    // Bits 28..31 mean nothing, and are compared.
    EXPECT_EQ(f.convert(src, dst, 2, 1, ColorFormat(8) | 1U << 31, ColorFormat(8), handle_),
              f.changed);
    EXPECT_EQ(f.convert(src, dst, 2, 1, ColorFormat(8), ColorFormat(8) | 1U << 28, handle_),
              f.changed);
    EXPECT_EQ(f.convert(src, dst, 2, 1, ColorFormat(8), ColorFormat(9), handle_), f.changed);
    EXPECT_EQ(f.convert(src, dst, 2, -1, ColorFormat(8), ColorFormat(8), handle_), OVRA_OK);
    EXPECT_EQ(f.convert(src, dst, -2, 1, ColorFormat(8), ColorFormat(8), handle_), OVRA_OK);
    EXPECT_EQ(f.convert(src, dst, INT32_MIN, INT32_MIN, ColorFormat(8), ColorFormat(8), handle_),
              OVRA_OK);
    EXPECT_EQ(destination_, Bytes(6, 77));
    EXPECT_EQ(f.convert(src, dst, 2, 1, ColorFormat(8), ColorFormat(8), handle_), OVRA_OK);
    EXPECT_NE(destination_, Bytes(6, 77));
    destination_.assign(6, 77);
  }
}

TEST_F(ChannelTableStatus, SingleStep) {
  const uint8_t* const src = source_.data();
  uint8_t* const dst = destination_.data();
  constexpr OvraPixelFormatCode kBad = 0x110;
  const auto check = [&](auto convert, auto* given, OvraStatus null, OvraStatus zero_size) {
    EXPECT_EQ(convert(nullptr, dst, 0, 0, kBad, kBad, given), null);
    EXPECT_EQ(convert(src, nullptr, 0, 0, kBad, kBad, given), null);
    EXPECT_EQ(convert(src, dst, 0, 0, kBad, kBad, nullptr), null);
    EXPECT_EQ(convert(src, dst, 0, 1, kBad, kBad, given), zero_size);
    EXPECT_EQ(convert(src, dst, 1, 0, kBad, kBad, given), zero_size);
    EXPECT_EQ(convert(src, dst, -2, 1, ColorFormat(8), ColorFormat(8), given), OVRA_OK);
    EXPECT_EQ(convert(src, dst, 2, -1, ColorFormat(8), ColorFormat(8), given), OVRA_OK);
  };
  check(OvraConvColor1DTblSingleStep, &tables_.set, OVRA_ERROR_TABLE_NULL,
        OVRA_ERROR_TABLE_ZERO_SIZE);
  check(OvraConvColorCoefSingleStep, coefficients_.data(), OVRA_ERROR_COEFFICIENT_NULL,
        OVRA_ERROR_COEFFICIENT_ZERO_SIZE);
  const OvraChannelTableSet empty = {};
  EXPECT_EQ(OvraConvColor1DTblSingleStep(src, dst, 0, 1, kBad, kBad, &empty),
            OVRA_ERROR_TABLE_ZERO_SIZE);
  EXPECT_EQ(OvraConvColor1DTblSingleStep(src, dst, 2, 1, kBad, kBad, &empty),
            OVRA_ERROR_TABLE_NULL_TABLE);
  EXPECT_EQ(destination_, Bytes(6, 77));
}

}  // namespace
