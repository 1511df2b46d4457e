// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <vector>

#include "ovra/resample.h"
#include "support/guarded_buffer.h"
#include "support/random.h"
#include "support/resize_reference.h"

namespace {

using ovra_test::GuardedBuffer;
using ovra_test::ResizeCase;
using ovra_test::ResizeReference;
using Bytes = std::vector<uint8_t>;
using Table = std::vector<float>;

constexpr OvraPixelFormatCode kGrey8 = 0;
constexpr OvraPixelFormatCode kRgb8 = 0x120;
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

Table CubicTable() {
  Table table(OVRA_KERNEL_TABLE_ENTRIES);
  OvraCalcCubicSpline(-0.75F, table.data());
  return table;
}

// Arguments of the four functions; each test changes what it is about.
struct Arguments {
  const uint8_t* source;
  int32_t source_width;
  int32_t source_height;
  uint8_t* destination;
  int32_t destination_width;
  int32_t destination_height;
  OvraPixelFormatCode format = kGrey8;
  int32_t x = 0;
  int32_t y = 0;
  int32_t width = 0;
  int32_t height = 0;
  const float* table = nullptr;
  double horizontal_factor = 1.5;
  double vertical_factor = 1.5;
  float horizontal_stretch = 1.0F;
  float vertical_stretch = 1.0F;
  int32_t horizontal_taps = 4;
  int32_t vertical_taps = 4;

  OvraStatus Core() const {
    return OvraResizeImageCore(source, source_width, source_height, destination, destination_width,
                               destination_height, format, x, y, width, height, table,
                               horizontal_stretch, horizontal_taps);
  }
  OvraStatus CoreVar() const {
    return OvraResizeImageCoreVAR(
        source, source_width, source_height, destination, destination_width, destination_height,
        format, x, y, width, height, horizontal_factor, vertical_factor, table, horizontal_stretch,
        vertical_stretch, horizontal_taps, vertical_taps);
  }
  OvraStatus Roi() const {
    return OvraResizeImageROI(source, source_width, source_height, destination, destination_width,
                              destination_height, format, x, y, width, height);
  }
  OvraStatus RoiVar() const {
    return OvraResizeImageROIVAR(source, source_width, source_height, destination,
                                 destination_width, destination_height, format, x, y, width, height,
                                 horizontal_factor, vertical_factor);
  }
};

class Resize : public testing::Test {
 protected:
  static constexpr int32_t kSide = 20;

  // A square of kSide pixels to one of 30, of room for every format.
  Arguments Valid() {
    return {.source = source_.data(),
            .source_width = kSide,
            .source_height = kSide,
            .destination = destination_.data(),
            .destination_width = 30,
            .destination_height = 30,
            .width = kSide,
            .height = kSide,
            .table = table_.data()};
  }

  Table table_ = CubicTable();
  Bytes source_ = Bytes(20 * 20 * 8, 100);
  Bytes destination_ = Bytes(30 * 30 * 8, 77);
};

TEST_F(Resize, ChecksInOrder) {
  struct Case {
    OvraStatus status;
    void (*spoil)(Arguments*);
  };
  // Walked from the last to the first: each case keeps the faults of those below it, which the
  // checks look at later.
  const Case cases[] = {
      {OVRA_ERROR_RESIZE_NULL_IMAGE, [](Arguments* a) { a->source = nullptr; }},
      {OVRA_ERROR_RESIZE_NULL_IMAGE, [](Arguments* a) { a->destination = nullptr; }},
      {OVRA_ERROR_RESIZE_NULL_TABLE, [](Arguments* a) { a->table = nullptr; }},
      {OVRA_ERROR_RESIZE_STRETCH, [](Arguments* a) { a->horizontal_stretch = 0.0F; }},
      {OVRA_ERROR_RESIZE_STRETCH, [](Arguments* a) { a->horizontal_stretch = std::nanf(""); }},
      {OVRA_ERROR_RESIZE_TAP_COUNT, [](Arguments* a) { a->horizontal_taps = 3; }},
      {OVRA_ERROR_FORMAT_CHANNELS, [](Arguments* a) { a->format = 0x4F; }},
      {OVRA_ERROR_FORMAT_DEPTH, [](Arguments* a) { a->format = 0x0A; }},
      {OVRA_ERROR_FORMAT_ROW_ORDER, [](Arguments* a) { a->format = 0x02000009; }},
      {OVRA_ERROR_RESIZE_DEPTH, [](Arguments* a) { a->format = 0x10129; }},
      {OVRA_ERROR_RESIZE_COLOR_MODEL, [](Arguments* a) { a->format = 0x10020; }},
      {OVRA_ERROR_RESIZE_COLOR_MODEL, [](Arguments* a) { a->format = 0x00010; }},
      {OVRA_ERROR_RESIZE_ARRANGEMENT, [](Arguments* a) { a->format = 0x10120; }},
      {OVRA_ERROR_RESIZE_SOURCE_SMALL, [](Arguments* a) { a->source_width = 3; }},
      {OVRA_ERROR_RESIZE_SOURCE_SMALL, [](Arguments* a) { a->source_height = -9; }},
      {OVRA_ERROR_RESIZE_DESTINATION_SMALL, [](Arguments* a) { a->destination_width = 2; }},
      {OVRA_ERROR_RESIZE_DESTINATION_SMALL, [](Arguments* a) { a->destination_height = 0; }},
      {OVRA_ERROR_RESIZE_REGION_SIZE, [](Arguments* a) { a->width = 3; }},
      {OVRA_ERROR_RESIZE_REGION_SIZE, [](Arguments* a) { a->height = kSide + 1; }},
  };
  Arguments arguments = Valid();
  arguments.x = std::numeric_limits<int32_t>::max();  // refused last of all
  arguments.horizontal_factor = 0.0;
  for (size_t i = std::size(cases); i-- > 0;) {
    cases[i].spoil(&arguments);
    EXPECT_EQ(arguments.Core(), cases[i].status) << i;
    EXPECT_EQ(arguments.CoreVar(), cases[i].status) << i;
  }
  EXPECT_EQ(std::count(destination_.begin(), destination_.end(), 77),
            static_cast<std::ptrdiff_t>(destination_.size()));
}

TEST_F(Resize, ChecksOfOneAxisOnly) {
  const auto status = [this](void (*spoil)(Arguments*)) {
    Arguments arguments = Valid();
    spoil(&arguments);
    return arguments.CoreVar();
  };
  EXPECT_EQ(status([](Arguments* a) { a->vertical_stretch = -1.0F; }), OVRA_ERROR_RESIZE_STRETCH);
  EXPECT_EQ(status([](Arguments* a) { a->vertical_taps = -5; }), OVRA_ERROR_RESIZE_TAP_COUNT);
  EXPECT_EQ(status([](Arguments* a) { a->vertical_taps = 21; }), OVRA_ERROR_RESIZE_SOURCE_SMALL);
  EXPECT_EQ(status([](Arguments* a) { a->horizontal_taps = kSide; }), OVRA_OK);
  EXPECT_EQ(status([](Arguments* a) { a->x = 1; }), OVRA_ERROR_RESIZE_REGION_OUTSIDE);
  EXPECT_EQ(status([](Arguments* a) { a->y = 1; }), OVRA_ERROR_RESIZE_REGION_OUTSIDE);
  EXPECT_EQ(status([](Arguments* a) { a->y = 0x7FFFFFFF; }), OVRA_ERROR_RESIZE_REGION_OUTSIDE);
  EXPECT_EQ(status([](Arguments* a) { a->x = -1; }), OVRA_OK);
  EXPECT_EQ(status([](Arguments* a) { a->x = a->y = -0x7FFFFFFF - 1; }), OVRA_OK);
  EXPECT_EQ(status([](Arguments* a) { a->format = 0x1030; }), OVRA_OK);
  for (const double factor : {0.0, -0.0, kNan}) {
    Arguments arguments = Valid();
    arguments.horizontal_factor = factor;
    EXPECT_EQ(arguments.CoreVar(), OVRA_ERROR_RESIZE_FACTOR);
    arguments = Valid();
    arguments.vertical_factor = factor;
    EXPECT_EQ(arguments.CoreVar(), OVRA_ERROR_RESIZE_FACTOR);
  }
}

TEST_F(Resize, ExplicitFactorsAreCheckedBeforeAllButTheFormat) {
  for (const double factor : {0.3299999999, 0.0, -1.0, kNan}) {
    Arguments arguments = Valid();
    arguments.vertical_factor = factor;
    EXPECT_EQ(arguments.RoiVar(), OVRA_ERROR_RESIZE_FACTOR) << factor;
    EXPECT_EQ(OvraResizeImageVAR(source_.data(), kSide, kSide, destination_.data(), 30, 30, kGrey8,
                                 factor, 1.0),
              OVRA_ERROR_RESIZE_FACTOR);
  }
  EXPECT_EQ(OvraResizeImageVAR(nullptr, 3, 3, nullptr, 3, 3, kGrey8, 0.3, 1.0),
            OVRA_ERROR_RESIZE_FACTOR);
  EXPECT_EQ(OvraResizeImageVAR(nullptr, 3, 3, nullptr, 3, 3, 0xF0, 0.3, 1.0),
            OVRA_ERROR_FORMAT_CHANNELS);
  Arguments arguments = Valid();
  arguments.horizontal_factor = arguments.vertical_factor = 0.33;
  EXPECT_EQ(arguments.RoiVar(), OVRA_OK);
  // A reduction takes more taps than a small source has.
  arguments.source_width = arguments.width = 7;
  EXPECT_EQ(arguments.RoiVar(), OVRA_ERROR_RESIZE_SOURCE_SMALL);
}

TEST_F(Resize, SizesAreCheckedFirstWhereTheyGiveTheRatio) {
  Arguments arguments = Valid();
  arguments.source = nullptr;
  arguments.width = 0;
  EXPECT_EQ(arguments.Roi(), OVRA_ERROR_RESIZE_ZERO_SIZE);
  arguments.width = kSide;
  arguments.height = 0;
  EXPECT_EQ(arguments.Roi(), OVRA_ERROR_RESIZE_ZERO_SIZE);
  arguments.format = 0x40;
  EXPECT_EQ(arguments.Roi(), OVRA_ERROR_FORMAT_CHANNELS);
  EXPECT_EQ(OvraResizeImage(nullptr, 0, 5, nullptr, 5, 5, kGrey8), OVRA_ERROR_RESIZE_ZERO_SIZE);
  EXPECT_EQ(OvraResizeImage(nullptr, 5, 5, nullptr, 5, 5, kGrey8), OVRA_ERROR_RESIZE_NULL_IMAGE);
  EXPECT_EQ(OvraResizeImage(source_.data(), 3, 3, destination_.data(), 5, 5, kGrey8),
            OVRA_ERROR_RESIZE_SOURCE_SMALL);
  EXPECT_EQ(OvraResizeImage(source_.data(), 20, 20, destination_.data(), 7, 7, kGrey8),
            OVRA_ERROR_RESIZE_DESTINATION_SMALL);
}

// Below a ratio of 0.33 on both axes, and only there, the small-image resize does the work.
TEST_F(Resize, StrongReductionsGoToTheSmallImageResize) {
  ovra_test::Random random(4);
  Bytes source(1000 * 100);
  ovra_test::FillSamples(random, source.data(), source.data() + source.size(), 255U);
  struct Case {
    int32_t width;
    int32_t height;
    bool small;
  };
  // The last but one: the larger ratio is that of the heights.
  const Case cases[] = {{300, 30, true}, {329, 32, true}, {329, 33, false}, {330, 120, false}};
  for (const Case& c : cases) {
    const auto size = static_cast<size_t>(c.width * c.height);
    Bytes actual(size);
    Bytes small(size);
    Bytes engine(size);
    ASSERT_EQ(OvraResizeImage(source.data(), 1000, 100, actual.data(), c.width, c.height, kGrey8),
              OVRA_OK);
    ASSERT_EQ(OvraSmallResizeImage(source.data(), 1000, 100, small.data(), c.width, c.height,
                                   kGrey8, 0, 0, 1000, 100, table_.data()),
              OVRA_OK);
    const bool reduces = c.height < 100;
    ASSERT_EQ(
        OvraResizeImageCore(source.data(), 1000, 100, engine.data(), c.width, c.height, kGrey8, 0,
                            0, 1000, 100, table_.data(), reduces ? 2.0F : 1.0F, reduces ? 8 : 4),
        OVRA_OK);
    EXPECT_NE(small, engine);
    EXPECT_EQ(actual, c.small ? small : engine) << c.width << " x " << c.height;
  }
}

// Odd sizes, a region that begins above the source and a 12-bit bottom-up format: every argument
// shows in the result.
TEST_F(Resize, ExportsPassEveryArgument) {
  ResizeCase c = {.source_width = 41,
                  .source_height = 37,
                  .destination_width = 45,
                  .destination_height = 25,
                  .x = 3,
                  .y = -2,
                  .width = 30,
                  .height = 33,
                  .depth_bits = 12,
                  .channels = 3,
                  .alignment = 4,
                  .bottom_up = true,
                  .horizontal_factor = 1.25,
                  .vertical_factor = 0.7,
                  .horizontal_stretch = 1.0F,
                  .vertical_stretch = 1.4094433F,
                  .horizontal_taps = 4,
                  .vertical_taps = 6};
  const size_t source_bytes = c.ImageBytes(c.source_width, c.source_height);
  GuardedBuffer source(source_bytes);
  ovra_test::Random random(3);
  ovra_test::FillSamples(random, source.as<uint16_t>(), source.as<uint16_t>() + source_bytes / 2,
                         4095U);
  const size_t bytes = c.ImageBytes(c.destination_width, c.destination_height);
  Bytes expected(bytes, GuardedBuffer::kFill);
  GuardedBuffer actual(bytes);
  Arguments arguments = {
      .source = source.data(),
      .source_width = c.source_width,
      .source_height = c.source_height,
      .destination = actual.data(),
      .destination_width = c.destination_width,
      .destination_height = c.destination_height,
      .format = OvraMakePixelFormat(12, 3, OVRA_MODEL_BGR, 4, OVRA_ROWS_BOTTOM_UP),
      .x = c.x,
      .y = c.y,
      .width = c.width,
      .height = c.height,
      .table = table_.data(),
      .horizontal_factor = c.horizontal_factor,
      .vertical_factor = c.vertical_factor,
      .horizontal_stretch = c.horizontal_stretch,
      .vertical_stretch = c.vertical_stretch,
      .horizontal_taps = c.horizontal_taps,
      .vertical_taps = c.vertical_taps};
  const auto expect_equal = [&](const char* what) {
    ResizeReference(c, table_.data(), source.data()).Write(expected.data());
    EXPECT_TRUE(std::equal(expected.begin(), expected.end(), actual.begin())) << what;
  };
  ASSERT_EQ(arguments.CoreVar(), OVRA_OK);
  expect_equal("CoreVAR");
  ASSERT_EQ(arguments.RoiVar(), OVRA_OK);
  expect_equal("ROIVAR");
  c.horizontal_factor = c.vertical_factor = 1.5;  // 45 / 30, which is more than 25 / 33
  c.vertical_taps = c.horizontal_taps;
  c.vertical_stretch = c.horizontal_stretch;
  ASSERT_EQ(arguments.Core(), OVRA_OK);
  expect_equal("Core");
  ASSERT_EQ(arguments.Roi(), OVRA_OK);
  expect_equal("ROI");
  c.x = c.y = 0;
  c.width = c.source_width;
  c.height = c.source_height;
  ASSERT_EQ(
      OvraResizeImageVAR(source.data(), c.source_width, c.source_height, actual.data(),
                         c.destination_width, c.destination_height, arguments.format, 1.5, 1.5),
      OVRA_OK);
  expect_equal("VAR");
}

// Scale 1 without the copy: 50 of 100 columns, from the middle, exactly.
TEST_F(Resize, OneScaleCutsTheRegionSymmetrically) {
  Bytes source(100 * 50);
  for (size_t i = 0; i < source.size(); ++i) source[i] = static_cast<uint8_t>(i % 100 + i / 100);
  Bytes destination(50 * 50);
  Arguments arguments = Valid();
  arguments.source = source.data();
  arguments.source_width = arguments.width = 100;
  arguments.source_height = arguments.height = 50;
  arguments.destination = destination.data();
  arguments.destination_width = arguments.destination_height = 50;
  ASSERT_EQ(arguments.Core(), OVRA_OK);
  for (size_t i = 0; i < destination.size(); ++i) {
    ASSERT_EQ(destination[i], 25 + i % 50 + i / 50) << i;
  }
}

TEST_F(Resize, FactorsOfOneCopyRowsFromTheStart) {
  constexpr int32_t kWidth = 21;  // three bytes of padding a row
  constexpr size_t kStride = 24;
  Bytes source(kStride * kSide);
  for (size_t i = 0; i < source.size(); ++i) source[i] = static_cast<uint8_t>(i);
  for (const bool explicit_factors : {false, true}) {
    Bytes destination(source.size(), 77);
    Arguments arguments = Valid();
    arguments.source = source.data();
    arguments.destination = destination.data();
    arguments.format = 0x00200000;
    arguments.source_width = arguments.destination_width = kWidth;
    arguments.destination_height = kSide;
    // The size-implied form has a ratio of 1 when one axis is whole and the other no smaller.
    arguments.width = explicit_factors ? 10 : kWidth;
    arguments.x = explicit_factors ? 5 : 0;
    arguments.height = explicit_factors ? 12 : kSide;
    arguments.y = explicit_factors ? 8 : 0;
    arguments.horizontal_factor = arguments.vertical_factor = 1.0;
    ASSERT_EQ(explicit_factors ? arguments.CoreVar() : arguments.Core(), OVRA_OK);
    const size_t copied = kStride * static_cast<size_t>(arguments.height);
    EXPECT_TRUE(std::equal(source.begin(), source.begin() + static_cast<std::ptrdiff_t>(copied),
                           destination.begin()));
    EXPECT_EQ(std::count(destination.begin() + static_cast<std::ptrdiff_t>(copied),
                         destination.end(), 77),
              static_cast<std::ptrdiff_t>(source.size() - copied));
  }
}

// A dark line on white, three pixels wide: inside it the kernel undershoots below black, whatever the
// phase. Where the line lies the result must be dark, never wrapped round to white.
TEST_F(Resize, ADarkLineOnWhiteStaysDark) {
  constexpr int32_t kTarget = 401;
  for (const bool vertical : {false, true}) {
    Bytes source(20 * 20, 255);
    for (size_t n = 9; n <= 11; ++n) {
      for (size_t i = 0; i < 20; ++i) source[vertical ? 20 * i + n : 20 * n + i] = 0;
    }
    const int32_t width = vertical ? kTarget : 20;
    const int32_t height = vertical ? 20 : kTarget;
    Bytes destination(static_cast<size_t>(width * height));
    const double factor = 20.05;
    ASSERT_EQ(OvraResizeImageVAR(source.data(), 20, 20, destination.data(), width, height, kGrey8,
                                 vertical ? factor : 1.0, vertical ? 1.0 : factor),
              OVRA_OK);
    const int32_t across = vertical ? 1 : width;
    for (int32_t i = 0; i < kTarget; ++i) {
      // Position in the source of destination sample i.
      const double at = (i - kTarget / 2) / factor + 9.5;
      const int value = destination[static_cast<size_t>(i * across)];
      ASSERT_LE(value, std::abs(at - 10) < 1.25 ? 64 : 255) << at;
      ASSERT_GE(value, std::abs(at - 10) > 1.75 ? 160 : 0) << at;
    }
  }
}

// Undershoot of the horizontal pass, brought back by the vertical one.
TEST_F(Resize, ADarkBlockKeepsItsSigns) {
  Bytes source(20 * 20, 255);
  for (size_t y = 9; y <= 11; ++y) {
    for (size_t x = 9; x <= 11; ++x) source[20 * y + x] = 0;
  }
  Bytes destination(100 * 100);
  const ResizeCase c = {20, 20, 100, 100, 0, 0, 20, 20, 8, 1, 1, false, 5.0, 5.0, 1.0F, 1.0F, 4, 4};
  ASSERT_EQ(
      OvraResizeImageVAR(source.data(), 20, 20, destination.data(), 100, 100, kGrey8, 5.0, 5.0),
      OVRA_OK);
  Bytes expected(destination.size());
  ResizeReference(c, table_.data(), source.data()).Write(expected.data());
  EXPECT_EQ(destination, expected);
  EXPECT_LT(destination[100 * 52 + 52], 20);
}

// Exact constants where the weights sum to 1024 on both axes: at a factor of 2 the phases are
// quarters, whose kernel values are multiples of 1/256.
TEST_F(Resize, ConstantsStayExactUnderWholeWeights) {
  for (const int value : {0, 1, 127, 254, 255}) {
    const Bytes source(20 * 20 * 3, static_cast<uint8_t>(value));
    Bytes destination(40 * 40 * 3, 1);
    ASSERT_EQ(
        OvraResizeImageVAR(source.data(), 20, 20, destination.data(), 40, 40, kRgb8, 2.0, 2.0),
        OVRA_OK);
    EXPECT_EQ(std::count(destination.begin(), destination.end(), value), 40 * 40 * 3) << value;
  }
}

// Centres beyond 16 bits: a ramp of 60000 columns or rows, reduced and enlarged.
TEST_F(Resize, LongImagesKeepTheirPositions) {
  constexpr int32_t kLong = 60000;
  struct Case {
    int32_t source;
    int32_t destination;
  };
  for (const Case& c : {Case{kLong, 40000}, Case{40000, kLong}, Case{kLong, kLong / 2}}) {
    const double factor = static_cast<double>(c.destination) / c.source;
    for (const bool wide : {true, false}) {
      std::vector<uint16_t> source(static_cast<size_t>(c.source) * 8);
      for (size_t i = 0; i < source.size(); ++i) {
        source[i] = static_cast<uint16_t>(wide ? i % static_cast<size_t>(c.source) : i / 8);
      }
      std::vector<uint16_t> destination(static_cast<size_t>(c.destination) * 8);
      ASSERT_EQ(
          OvraResizeImageVAR(reinterpret_cast<const uint8_t*>(source.data()), wide ? c.source : 8,
                             wide ? 8 : c.source, reinterpret_cast<uint8_t*>(destination.data()),
                             wide ? c.destination : 8, wide ? 8 : c.destination, 8,
                             wide ? factor : 1.0, wide ? 1.0 : factor),
          OVRA_OK);
      for (int32_t i = 10; i < c.destination - 10; ++i) {
        const double position = (i + 0.5) / factor - 0.5;
        const double value = destination[static_cast<size_t>(wide ? i : i * 8)];
        ASSERT_NEAR(value, position, 1 + position * 8 / 1024) << i;  // truncated weights
      }
    }
  }
}

// Everything here must end quickly, inside the buffers, without undefined behaviour.
TEST_F(Resize, ExtremeArgumentsAreSafe) {
  Table nan_table(OVRA_KERNEL_TABLE_ENTRIES, std::nanf(""));
  Table huge_table(OVRA_KERNEL_TABLE_ENTRIES, 3e38F);
  Table zero_table(OVRA_KERNEL_TABLE_ENTRIES, 0.0F);
  const double factors[] = {1e-300, -1e-300, 5e-324, 1e300, -1e300, kInfinity, -kInfinity, -1.0};
  for (const Table* table : {&table_, &nan_table, &huge_table, &zero_table}) {
    for (const double factor : factors) {
      for (const OvraPixelFormatCode format : {kGrey8, OvraPixelFormatCode{0x128}}) {
        Arguments arguments = Valid();
        arguments.format = format;
        arguments.table = table->data();
        arguments.horizontal_factor = factor;
        EXPECT_EQ(arguments.CoreVar(), OVRA_OK);
        arguments.horizontal_factor = 1.5;
        arguments.vertical_factor = factor;
        EXPECT_EQ(arguments.CoreVar(), OVRA_OK);
      }
    }
  }
  for (const float stretch : {1e-45F, 1e-30F, 1e30F, std::numeric_limits<float>::infinity()}) {
    Arguments arguments = Valid();
    arguments.horizontal_stretch = arguments.vertical_stretch = stretch;
    EXPECT_EQ(arguments.CoreVar(), OVRA_OK);
  }
}

TEST_F(Resize, TapCountsUpToThousands) {
  for (const bool wide : {true, false}) {
    const int32_t taps = 4096;
    const Bytes source(static_cast<size_t>(taps) * 4, 200);
    Bytes destination(source.size(), 77);
    Arguments arguments = Valid();
    arguments.source = source.data();
    arguments.destination = destination.data();
    arguments.source_width = arguments.width = arguments.destination_width = wide ? taps : 4;
    arguments.source_height = arguments.height = arguments.destination_height = wide ? 4 : taps;
    arguments.horizontal_factor = arguments.vertical_factor = 1.5;
    (wide ? arguments.horizontal_taps : arguments.vertical_taps) = taps;
    EXPECT_EQ(arguments.CoreVar(), OVRA_OK);
    EXPECT_NEAR(destination[destination.size() / 2], 200, 2);
  }
}

}  // namespace
