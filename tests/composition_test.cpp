// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "ovra/basic.h"
#include "support/guarded_buffer.h"
#include "support/random.h"

namespace {

using ovra_test::Guard;
using ovra_test::GuardedBuffer;
using ovra_test::Random;
using ovra_test::RandomInt;
using Bytes = std::vector<uint8_t>;

constexpr int32_t kIntMin = std::numeric_limits<int32_t>::min();
constexpr int32_t kIntMax = std::numeric_limits<int32_t>::max();

struct Shape {
  int width;
  int height;
  int channels;
  int alignment;
  OvraColorModel model;
  OvraRowOrder row_order;

  OvraPixelFormatCode Code() const {
    return OvraMakePixelFormat(8, static_cast<uint32_t>(channels), model,
                               static_cast<uint32_t>(alignment), row_order);
  }
  int Stride() const { return (width * channels + alignment - 1) / alignment * alignment; }
  // Without the padding of the last row, which need not exist.
  size_t Size() const { return static_cast<size_t>(Stride() * (height - 1) + width * channels); }
  // The first sample of the pixel at a place in the picture, counted from its top left corner.
  size_t At(int x, int y) const {
    const int row = row_order == OVRA_ROWS_BOTTOM_UP ? height - 1 - y : y;
    return static_cast<size_t>(row * Stride() + x * channels);
  }
};

struct Image : Shape {
  Image(const Shape& shape, Random& random, Guard guard)
      : Shape(shape), pixels(std::make_unique<GuardedBuffer>(shape.Size(), guard)) {
    ovra_test::FillSamples(random, pixels->begin(), pixels->end(), 255U);
  }
  const uint8_t* data() const { return pixels->data(); }
  uint8_t* data() { return pixels->data(); }
  Bytes Copy() const { return Bytes(pixels->begin(), pixels->end()); }

  std::unique_ptr<GuardedBuffer> pixels;
};

uint8_t Blend(int weight, int source, int destination, int mode) {
  return static_cast<uint8_t>(mode == 1
                                  ? ((weight + 1) * source + (256 - weight) * destination) >> 8
                                  : ((weight + 1) * destination + (256 - weight) * source) >> 8);
}

// Calls `place` with the offsets of each pair of pixels that lie on each other.
void ForEachPlacedPixel(const Shape& destination, const Shape& source, int x, int y,
                        const std::function<void(size_t destination, size_t source)>& place) {
  for (int row = 0; row < source.height; ++row) {
    for (int column = 0; column < source.width; ++column) {
      const int to_x = x + column;
      const int to_y = y + row;
      if (to_x < 0 || to_x >= destination.width || to_y < 0 || to_y >= destination.height) continue;
      place(destination.At(to_x, to_y), source.At(column, row));
    }
  }
}

bool ReachesBelowBottomUp(const Shape& destination, const Shape& source, int y) {
  return destination.row_order == OVRA_ROWS_BOTTOM_UP && y + source.height > destination.height;
}

Shape RandomShape(Random& random) {
  constexpr int kAlignments[] = {1, 2, 4};
  constexpr OvraRowOrder kRowOrders[] = {OVRA_ROWS_TOP_DOWN, OVRA_ROWS_BOTTOM_UP};
  constexpr OvraColorModel kModels[] = {OVRA_MODEL_GREY, OVRA_MODEL_RGB,  OVRA_MODEL_BGR,
                                        OVRA_MODEL_YCC,  OVRA_MODEL_RGBA, OVRA_MODEL_BGRA};
  return {RandomInt(random, 1, 90),         RandomInt(random, 1, 9),
          RandomInt(random, 1, 4),          kAlignments[RandomInt(random, 0, 2)],
          kModels[RandomInt(random, 0, 5)], kRowOrders[RandomInt(random, 0, 1)]};
}

// A pair of shapes whose formats fit, a place where they mostly overlap, and a mode.
struct Placement {
  explicit Placement(Random& random)
      : destination(RandomShape(random)),
        source(RandomShape(random)),
        x(RandomInt(random, -source.width, destination.width)),
        y(RandomInt(random, -source.height, destination.height)),
        mode(static_cast<uint8_t>(RandomInt(random, 0, 3))),
        guard(RandomInt(random, 0, 1) == 0 ? Guard::kBefore : Guard::kAfter) {
    source.alignment = destination.alignment;
    source.row_order = destination.row_order;
  }

  Shape destination;
  Shape source;
  int x;
  int y;
  uint8_t mode;
  Guard guard;
};

std::string Describe(const Placement& p) {
  const auto shape = [](const Shape& s) {
    return std::to_string(s.width) + "x" + std::to_string(s.height) + "x" +
           std::to_string(s.channels);
  };
  return shape(p.source) + " on " + shape(p.destination) + " at " + std::to_string(p.x) + "," +
         std::to_string(p.y) + " alignment " + std::to_string(p.source.alignment) + " order " +
         std::to_string(p.source.row_order) + " mode " + std::to_string(p.mode);
}

enum class Kind { kCopy, kAlpha, kMask };

TEST(Composition, ChangesExactlyThePixelsUnderTheSource) {
  Random random(11);
  for (int i = 0; i < 5000; ++i) {
    Placement p(random);
    const Kind kind = p.destination.channels == 4 && i % 3 == 1 ? Kind::kMask : Kind{i % 3};
    const auto channels = static_cast<size_t>(p.destination.channels);
    p.source.channels = p.destination.channels + (kind == Kind::kAlpha ? 1 : 0);
    Image destination(p.destination, random, p.guard);
    const Image source(p.source, random, p.guard);
    const Image mask(p.source, random, p.guard);
    Bytes expected = destination.Copy();
    const auto place = [&](size_t to, size_t from) {
      const uint8_t* const pixel = source.data() + from;
      for (size_t c = 0; c < channels; ++c) {
        uint8_t& out = expected[to + c];
        out = kind == Kind::kCopy    ? pixel[c]
              : kind == Kind::kAlpha ? Blend(pixel[channels], pixel[c], out, p.mode)
                                     : Blend(mask.data()[from + c], pixel[c], out, p.mode);
      }
    };
    const bool refused = ReachesBelowBottomUp(destination, source, p.y);
    if (!refused) ForEachPlacedPixel(destination, source, p.x, p.y, place);
    const OvraStatus status =
        kind == Kind::kMask
            ? OvraCompositeImageWithMaskBlending(
                  destination.data(), destination.width, destination.height, source.data(),
                  mask.data(), source.width, source.height, destination.Code(), p.x, p.y, p.mode)
            : OvraCompositeImage(destination.data(), destination.width, destination.height,
                                 destination.Code(), source.data(), source.width, source.height,
                                 source.Code(), p.x, p.y, p.mode);
    SCOPED_TRACE(Describe(p));
    ASSERT_EQ(status, refused ? OVRA_ERROR_COMPOSITE_SIZE : OVRA_OK);
    ASSERT_TRUE(destination.Copy() == expected);
  }
}

// Worked out by hand.
TEST(Composition, KnownBlends) {
  struct Case {
    uint8_t weight, source, destination, mode, result;
  };
  const Case cases[] =
      {
          {128, 200, 10, 1, 105},  // (129 * 200 + 128 * 10) / 256 = 105.78
          {128, 200, 10, 0, 105},  // (129 * 10 + 128 * 200) / 256 = 105.04
          {0, 200, 10, 1, 10},    {255, 200, 10, 1, 200}, {0, 200, 10, 255, 200},
          {255, 200, 10, 2, 10},  {77, 255, 255, 1, 255}, {1, 255, 0, 1, 1},
          {254, 255, 0, 1, 254},  // 255 * 255 / 256 = 254.004
      };
  for (const Case& c : cases) {
    const uint8_t source[] = {c.source, c.weight};
    uint8_t by_alpha = c.destination;
    ASSERT_EQ(OvraCompositeImage(&by_alpha, 1, 1, 0x00, source, 1, 1, 0x10, 0, 0, c.mode), OVRA_OK);
    EXPECT_EQ(by_alpha, c.result);
    uint8_t by_mask = c.destination;
    ASSERT_EQ(OvraCompositeImageWithMaskBlending(&by_mask, 1, 1, &c.source, &c.weight, 1, 1, 0x00,
                                                 0, 0, c.mode),
              OVRA_OK);
    EXPECT_EQ(by_mask, c.result);
  }
}

TEST(Composition, BottomUpRowsCountFromThePicturesTop) {
  constexpr OvraPixelFormatCode kBottomUpGrey = 0x01000000;
  const Bytes source = {1, 2, 3, 4};
  Bytes destination(10);
  ASSERT_EQ(OvraCompositeImage(destination.data(), 1, 10, kBottomUpGrey, source.data(), 1, 4,
                               kBottomUpGrey, 0, 0, 0),
            OVRA_OK);
  EXPECT_EQ(destination, (Bytes{0, 0, 0, 0, 0, 0, 1, 2, 3, 4}));
}

// Sums of these positions and sizes pass the largest integer. The source is as long as its part
// that is read.
TEST(Composition, ExtremePositionsAndSizes) {
  struct Case {
    int32_t width, height, source_width, source_height, x, y;
    OvraPixelFormatCode code;
    OvraStatus status;
    Bytes destination;
  };
  constexpr OvraPixelFormatCode kTopDown = 0;
  constexpr OvraPixelFormatCode kBottomUp = 0x01000000;
  const Bytes untouched = {9, 9, 9};
  const Case cases[] = {
      {3, 1, kIntMax, kIntMax, 1, 0, kTopDown, OVRA_OK, {9, 1, 2}},
      {3, 1, kIntMax, 2, 0, 0, kTopDown, OVRA_OK, {1, 2, 3}},
      {3, 1, kIntMax, 1, kIntMax, 0, kTopDown, OVRA_OK, untouched},
      {3, 1, 1, kIntMax, 0, kIntMax, kTopDown, OVRA_OK, untouched},
      {3, 1, 3, 1, kIntMin, kIntMin, kTopDown, OVRA_OK, untouched},
      {3, 1, 3, 1, 3, 0, kTopDown, OVRA_OK, untouched},
      {3, 1, 3, 1, 2, 0, kTopDown, OVRA_OK, {9, 9, 1}},
      {3, 1, 3, 1, -2, 0, kTopDown, OVRA_OK, {3, 9, 9}},
      {-3, 1, 3, 1, 0, 0, kTopDown, OVRA_OK, untouched},
      {3, -1, 3, 1, 0, 0, kTopDown, OVRA_OK, untouched},
      {3, 1, -3, 1, 0, 0, kTopDown, OVRA_OK, untouched},
      {3, 1, 3, kIntMin, 0, kIntMax, kTopDown, OVRA_OK, untouched},
      {3, 1, 3, 1, 0, kIntMin, kBottomUp, OVRA_OK, untouched},
      {3, 1, 3, kIntMin, 0, kIntMin, kBottomUp, OVRA_OK, untouched},
      {3, 1, 3, 1, 0, kIntMax, kBottomUp, OVRA_ERROR_COMPOSITE_SIZE, untouched},
      {3, kIntMin, 3, kIntMax, 0, kIntMax, kBottomUp, OVRA_ERROR_COMPOSITE_SIZE, untouched},
  };
  const Bytes source = {1, 2, 3};
  const Bytes mask(3, 255);
  for (const Case& c : cases) {
    SCOPED_TRACE(&c - cases);
    Bytes copied = untouched;
    EXPECT_EQ(OvraCompositeImage(copied.data(), c.width, c.height, c.code, source.data(),
                                 c.source_width, c.source_height, c.code, c.x, c.y, 1),
              c.status);
    EXPECT_EQ(copied, c.destination);
    Bytes blended = untouched;
    EXPECT_EQ(OvraCompositeImageWithMaskBlending(blended.data(), c.width, c.height, source.data(),
                                                 mask.data(), c.source_width, c.source_height,
                                                 c.code, c.x, c.y, 1),
              c.status);
    EXPECT_EQ(blended, c.destination);
  }
}

constexpr OvraPixelFormatCode kRgb = 0x00000120;

struct Arguments {
  uint8_t* destination;
  int32_t width = 2;
  int32_t height = 2;
  OvraPixelFormatCode code = kRgb;
  const uint8_t* source;
  const uint8_t* mask;
  int32_t source_width = 2;
  int32_t source_height = 2;
  OvraPixelFormatCode source_code = kRgb;
  int32_t y = 0;
};

OvraStatus Composite(const Arguments& a) {
  return OvraCompositeImage(a.destination, a.width, a.height, a.code, a.source, a.source_width,
                            a.source_height, a.source_code, 0, a.y, 1);
}

OvraStatus CompositeWithMask(const Arguments& a) {
  return OvraCompositeImageWithMaskBlending(a.destination, a.width, a.height, a.source, a.mask,
                                            a.source_width, a.source_height, a.code, 0, a.y, 1);
}

using Fault = std::function<void(Arguments&)>;

struct Check {
  OvraStatus status;
  Fault fault;
};

// The faults that one format word can have, in the order of the checks.
std::vector<Check> FormatChecks(OvraPixelFormatCode Arguments::*code) {
  const auto set = [code](uint32_t mask, uint32_t field) -> Fault {
    return [code, mask, field](Arguments& a) { a.*code = (a.*code & ~mask) | field; };
  };
  return {
      {OVRA_ERROR_FORMAT_CHANNELS, set(0xF0, 0x40)},
      {OVRA_ERROR_FORMAT_DEPTH, set(0xF, 0xA)},
      {OVRA_ERROR_FORMAT_COLOR_MODEL, set(0xFF00, 0x0800)},
      {OVRA_ERROR_FORMAT_ARRANGEMENT, set(0xF0000, 0x30000)},
      {OVRA_ERROR_FORMAT_ROW_ALIGNMENT, set(0xF00000, 0x300000)},
      {OVRA_ERROR_FORMAT_ROW_ORDER, set(0xF000000, 0x2000000)},
      {OVRA_ERROR_COMPOSITE_DEPTH, set(0xF, 0x1)},
      {OVRA_ERROR_COMPOSITE_DEPTH, set(0xF, 0x9)},
      {OVRA_ERROR_COMPOSITE_COLOR_MODEL, set(0xFF00, OVRA_MODEL_TRIPLE_4)},
      {OVRA_ERROR_COMPOSITE_COLOR_MODEL, set(0xFF00, OVRA_MODEL_TRIPLE_7)},
      {OVRA_ERROR_COMPOSITE_COLOR_MODEL, set(0xFF00, OVRA_MODEL_CMYK)},
      {OVRA_ERROR_COMPOSITE_ARRANGEMENT, set(0xF0000, 0x10000)},
      {OVRA_ERROR_COMPOSITE_ARRANGEMENT, set(0xF0000, 0x20000)},
  };
}

std::vector<Check> BufferChecks() {
  return {
      {OVRA_ERROR_COMPOSITE_NULL, [](Arguments& a) { a.destination = nullptr; }},
      {OVRA_ERROR_COMPOSITE_NULL, [](Arguments& a) { a.source = nullptr; }},
      {OVRA_ERROR_COMPOSITE_IN_PLACE, [](Arguments& a) { a.source = a.destination; }},
      {OVRA_ERROR_COMPOSITE_SIZE, [](Arguments& a) { a.width = 0; }},
      {OVRA_ERROR_COMPOSITE_SIZE, [](Arguments& a) { a.height = 0; }},
      {OVRA_ERROR_COMPOSITE_SIZE, [](Arguments& a) { a.source_width = 0; }},
      {OVRA_ERROR_COMPOSITE_SIZE, [](Arguments& a) { a.source_height = 0; }},
  };
}

void ReachBelowBottomUp(Arguments& a) {
  a.code |= OVRA_ROWS_BOTTOM_UP;
  a.source_code |= OVRA_ROWS_BOTTOM_UP;
  a.y = 1;
}

void SetChannels(Arguments& a, uint32_t destination_channels, uint32_t source_channels) {
  a.code = (a.code & ~0xF0U) | (destination_channels - 1) << 4;
  a.source_code = (a.source_code & ~0xF0U) | (source_channels - 1) << 4;
}

void Append(std::vector<Check>& checks, const std::vector<Check>& more) {
  checks.insert(checks.end(), more.begin(), more.end());
}

// Each fault alone gives its status; and so does it together with all the faults of later checks.
void ExpectChecksInOrder(OvraStatus (*composite)(const Arguments&),
                         const std::vector<Check>& checks) {
  Bytes destination(12, 7);
  const Bytes source(12, 8);
  const Bytes mask(12, 255);
  Arguments valid;
  valid.destination = destination.data();
  valid.source = source.data();
  valid.mask = mask.data();
  Arguments all_later = valid;
  for (size_t i = checks.size(); i-- > 0;) {
    Arguments alone = valid;
    checks[i].fault(alone);
    EXPECT_EQ(composite(alone), checks[i].status) << i;
    checks[i].fault(all_later);
    EXPECT_EQ(composite(all_later), checks[i].status) << i;
  }
  EXPECT_EQ(destination, Bytes(12, 7));
  EXPECT_EQ(composite(valid), OVRA_OK);
  EXPECT_EQ(destination, source);
}

TEST(Composition, ChecksInOrder) {
  std::vector<Check> checks = BufferChecks();
  Append(checks, FormatChecks(&Arguments::code));
  Append(checks, FormatChecks(&Arguments::source_code));
  Append(
      checks,
      {
          {OVRA_ERROR_COMPOSITE_FORMATS_DIFFER, [](Arguments& a) { a.source_code ^= 0x00100000; }},
          {OVRA_ERROR_COMPOSITE_FORMATS_DIFFER,
           [](Arguments& a) { a.source_code ^= OVRA_ROWS_BOTTOM_UP; }},
          {OVRA_ERROR_COMPOSITE_CHANNEL_RELATION, [](Arguments& a) { SetChannels(a, 3, 2); }},
          {OVRA_ERROR_COMPOSITE_CHANNEL_RELATION, [](Arguments& a) { SetChannels(a, 1, 3); }},
          {OVRA_ERROR_COMPOSITE_SIZE, ReachBelowBottomUp},
      });
  ExpectChecksInOrder(Composite, checks);
}

TEST(Composition, ChecksInOrderWithMask) {
  std::vector<Check> checks = BufferChecks();
  Append(checks, FormatChecks(&Arguments::code));
  Append(checks, {
                     {OVRA_ERROR_COMPOSITE_SIZE, ReachBelowBottomUp},
                     {OVRA_ERROR_COMPOSITE_NULL, [](Arguments& a) { a.mask = nullptr; }},
                 });
  ExpectChecksInOrder(CompositeWithMask, checks);
}

TEST(Composition, MaskMayBeNullWhereNothingIsWritten) {
  Bytes destination(12, 7);
  const Bytes source(12, 8);
  Arguments outside;
  outside.destination = destination.data();
  outside.source = source.data();
  outside.mask = nullptr;
  outside.y = outside.height;
  EXPECT_EQ(CompositeWithMask(outside), OVRA_OK);
  EXPECT_EQ(destination, Bytes(12, 7));
}

}  // namespace
