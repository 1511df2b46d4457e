// SPDX-License-Identifier: MIT
// Resizes with a turn give the bytes of two calls.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

#include "ovra/ovra.h"
#include "support/random.h"

namespace {

using ovra_test::Random;
using Bytes = std::vector<uint8_t>;

constexpr uint8_t kUntouched = 0x5A;

struct Resize {
  enum Kind { kRoi, kCore, kSmall };
  Kind kind;
  int32_t source_width, source_height, width, height;  // of the source, and of the upright result
  int32_t x, y, region_width, region_height;
  OvraPixelFormatCode format;
  float stretch;
  int32_t taps;

  size_t Stride(int32_t pixels) const {
    const size_t alignment = size_t{1} << (format >> 20 & 15);
    const size_t sample_bytes = (format & 15) == 0 ? 1 : 2;
    const size_t bytes = static_cast<size_t>(pixels) * ((format >> 4 & 15) + 1) * sample_bytes;
    return (bytes + alignment - 1) / alignment * alignment;
  }
  Bytes Image(int32_t pixels, int32_t rows) const {
    return Bytes(Stride(pixels) * static_cast<size_t>(rows), kUntouched);
  }
};

const float* Table() {
  static const std::vector<float> table = [] {
    std::vector<float> cubic(OVRA_KERNEL_TABLE_ENTRIES);
    OvraCalcCubicSpline(-0.75F, cubic.data());
    return cubic;
  }();
  return table.data();
}

// Each kind, enlarging and reducing, with regions that reach beyond the source, padded rows, both row
// orders, more taps than there are unrolled forms for, and one that is a copy.
constexpr Resize kResizes[] = {
    {Resize::kRoi, 41, 37, 60, 55, 3, 2, 30, 33, 0x1200120, 0, 0},
    {Resize::kRoi, 150, 120, 70, 90, 0, 0, 150, 120, 0x0000128, 0, 0},
    {Resize::kRoi, 150, 120, 20, 9, 1, 0, 149, 119, 0x1001030, 0, 0},
    {Resize::kRoi, 33, 29, 33, 29, 0, 0, 33, 29, 0x0200120, 0, 0},
    {Resize::kCore, 50, 60, 45, 25, -20, -30, 40, 50, 0x1100124, 1.5F, 6},
    {Resize::kCore, 50, 60, 77, 91, 10, 20, 40, 40, 0x0000000, 1.0F, 19},
    {Resize::kSmall, 140, 150, 13, 11, 5, 7, 130, 140, 0x0200004, 0, 0},
    {Resize::kSmall, 20, 15, 31, 40, 0, 0, 20, 15, 0x1000120, 0, 0},
};

Bytes RandomSource(Random& random, const Resize& r) {
  Bytes source = r.Image(r.source_width, r.source_height);
  for (uint8_t& byte : source) byte = static_cast<uint8_t>(random());
  for (size_t i = 1; (r.format & 15) == 4 && i < source.size(); i += 2) source[i] &= 15;
  return source;
}

// An upright resize, or with modes one that turns.
OvraStatus Resized(const Resize& r, const Bytes& source, Bytes& destination, auto... mode) {
  const bool is_turned = ((mode % 2 != 0) || ...);
  const auto run = [&](auto* upright, auto* turning, auto... kernel) {
    const auto call = [&](auto* resize, auto... more) {
      return resize(source.data(), r.source_width, r.source_height, destination.data(),
                    is_turned ? r.height : r.width, is_turned ? r.width : r.height, r.format, r.x,
                    r.y, r.region_width, r.region_height, more...);
    };
    if constexpr (sizeof...(mode) == 0) {
      return call(upright, kernel...);
    } else {
      return call(turning, kernel..., mode...);
    }
  };
  switch (r.kind) {
    case Resize::kRoi:
      return run(OvraResizeImageROI, OvraResizeRotateImageROI);
    case Resize::kCore:
      return run(OvraResizeImageCore, OvraResizeRotateImageCore, Table(), r.stretch, r.taps);
    default:
      return run(OvraSmallResizeImage, OvraSmallResizeRotateImage, Table());
  }
}

TEST(ResizeRotate, EqualsTheTwoCalls) {
  Random random(1);
  for (const Resize& r : kResizes) {
    const Bytes source = RandomSource(random, r);
    Bytes upright = r.Image(r.width, r.height);
    ASSERT_EQ(Resized(r, source, upright), OVRA_OK);
    for (int32_t mode = 0; mode < 8; ++mode) {
      Bytes expected = mode % 2 == 0 ? r.Image(r.width, r.height) : r.Image(r.height, r.width);
      Bytes actual = expected;
      OvraRotateImage(upright.data(), expected.data(), r.width, r.height, r.format, mode);
      ASSERT_EQ(Resized(r, source, actual, mode), OVRA_OK);
      ASSERT_TRUE(expected == actual) << &r - kResizes << " mode " << mode;
    }
  }
}

// tw / w is 0.33 and th / h 0.32: the ratio is that of the upright size, and for the engine.
TEST(ResizeRotate, TheUprightSizeGivesTheRatio) {
  const Bytes source(1000 * 500, 100);
  Bytes destination(330 * 160, kUntouched);
  // A destination too small for the taps tells the engine from the reduction.
  EXPECT_EQ(OvraResizeRotateImageROI(source.data(), 1000, 500, destination.data(), 160, 330, 0, 0,
                                     0, 1000, 500, 1),
            OVRA_OK);
  EXPECT_EQ(OvraResizeRotateImageROI(source.data(), 1000, 500, destination.data(), 7, 330, 0, 0, 0,
                                     1000, 500, 1),
            OVRA_ERROR_RESIZE_DESTINATION_SMALL);
  EXPECT_EQ(OvraResizeRotateImageROI(source.data(), 1000, 500, destination.data(), 7, 329, 0, 0, 0,
                                     1000, 500, 1),
            OVRA_OK);
}

TEST(BandResize, ContextsHaveTheirOwnCopyOfTheTable) {
  const Resize& r = kResizes[4];
  ASSERT_EQ(r.kind, Resize::kCore);
  Random random(2);
  const Bytes source = RandomSource(random, r);
  Bytes whole = r.Image(r.width, r.height);
  Bytes joined = whole;
  ASSERT_EQ(Resized(r, source, whole), OVRA_OK);
  std::vector<float> table(Table(), Table() + OVRA_KERNEL_TABLE_ENTRIES);
  OvraBandResizeContext* context = nullptr;
  ASSERT_EQ(OvraBandResizeCore_Init(r.source_width, r.source_height, r.width, r.height, r.format,
                                    r.x, r.y, r.region_width, r.region_height, table.data(),
                                    r.stretch, r.taps, &context),
            OVRA_OK);
  std::fill(table.begin(), table.end(), 0.0F);
  int32_t taken = 0;
  int32_t written = 0;
  EXPECT_EQ(OvraBandResize(source.data(), r.source_width, r.source_height, joined.data(), r.width,
                           r.height, r.format, 0, &taken, &written, context),
            OVRA_OK);
  EXPECT_EQ(joined, whole);
  EXPECT_EQ(OvraBandResize_Free(&context), OVRA_OK);
  EXPECT_EQ(context, nullptr);
}

}  // namespace
