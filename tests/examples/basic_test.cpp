// SPDX-License-Identifier: MIT
// Composition and DIB rows, worked out by hand.
#include <gtest/gtest.h>

#include <vector>

#include "ovra/basic.h"

namespace {

using Bytes = std::vector<uint8_t>;

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

// Three grey pixels in a row or in a column, on a picture of as many; the source has the part that
// is read, however large it is said to be.
TEST(Composition, PlacesAndClips) {
  constexpr int32_t kMax = 0x7FFFFFFF;
  constexpr OvraPixelFormatCode kBottomUp = 0x01000000;
  struct Case {
    int32_t width, height, source_width, source_height, x, y;
    OvraPixelFormatCode format;
    Bytes result;
  };
  const Case cases[] = {
      {3, 1, 3, 1, 0, 0, 0, {1, 2, 3}},         {3, 1, 3, 1, 2, 0, 0, {9, 9, 1}},
      {3, 1, 3, 1, -2, 0, 0, {3, 9, 9}},        {3, 1, 3, 1, 3, 0, 0, {9, 9, 9}},
      {3, 1, kMax, kMax, 1, 0, 0, {9, 1, 2}},   {1, 3, 1, 3, 0, 1, 0, {9, 1, 2}},
      {1, 3, 1, 2, 0, 0, kBottomUp, {9, 1, 2}}, {1, 3, 1, 3, 0, -1, kBottomUp, {9, 1, 2}},
      {1, 3, 1, 2, 0, 1, kBottomUp, {1, 2, 9}}, {1, 3, 1, 1, 0, -1, kBottomUp, {9, 9, 9}},
  };
  const uint8_t source[] = {1, 2, 3};
  for (const Case& c : cases) {
    SCOPED_TRACE(&c - cases);
    Bytes destination(3, 9);
    EXPECT_EQ(OvraCompositeImage(destination.data(), c.width, c.height, c.format, source,
                                 c.source_width, c.source_height, c.format, c.x, c.y, 1),
              OVRA_OK);
    EXPECT_EQ(destination, c.result);
  }
}

TEST(DibRaw, PlacesEveryByte) {
  const Bytes raw = {1, 2, 3, 4,  5,  6,    // top row: two pixels, red green blue
                     7, 8, 9, 10, 11, 12};  // bottom row
  const Bytes dib = {9, 8, 7, 12, 11, 10, 0, 0, 3, 2, 1, 6, 5, 4, 0, 0};
  Bytes to_dib(dib.size(), 0xEE);
  OvraRaw2Dib(raw.data(), to_dib.data(), 2, 2);
  EXPECT_EQ(to_dib, dib);
  Bytes to_raw(raw.size(), 0xEE);
  OvraDib2Raw(dib.data(), to_raw.data(), 2, 2);
  EXPECT_EQ(to_raw, raw);
}

}  // namespace
