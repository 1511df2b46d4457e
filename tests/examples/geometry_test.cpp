// SPDX-License-Identifier: MIT
// Rotation and extrapolation, worked out by hand.
#include <gtest/gtest.h>

#include <vector>

#include "ovra/geometry.h"

namespace {

using Bytes = std::vector<uint8_t>;

constexpr OvraPixelFormatCode kBottomUp = 0x01000000;

// The letters as they are seen, top row first, of three rows of two:  ab cd ef
TEST(Rotation, TurnsThePictureAsItIsSeen) {
  const char* const expected[] = {"abcdef", "bdface", "fedcba", "ecafdb",
                                  "badcfe", "fdbeca", "efcdab", "acebdf"};
  for (int32_t mode = OVRA_ROTATE_NONE; mode <= OVRA_ROTATE_TRANSPOSE; ++mode) {
    const Bytes seen(expected[mode], expected[mode] + 6);
    Bytes result(6);
    const Bytes top_down = {'a', 'b', 'c', 'd', 'e', 'f'};
    EXPECT_EQ(OvraRotateImage(top_down.data(), result.data(), 2, 3, 0, mode), OVRA_OK);
    EXPECT_EQ(result, seen) << mode;
    const Bytes bottom_up = {'e', 'f', 'c', 'd', 'a', 'b'};
    EXPECT_EQ(OvraRotateImage(bottom_up.data(), result.data(), 2, 3, kBottomUp, mode), OVRA_OK);
    const size_t width = mode % 2 == 0 ? 2 : 3;
    for (size_t i = 0; i < 6; ++i) {
      const size_t row = 6 / width - 1 - i / width;
      EXPECT_EQ(result[row * width + i % width], seen[i]) << mode;
    }
  }
}

TEST(Rotation, ClearsPaddingButNotInPlace) {
  constexpr OvraPixelFormatCode kAligned = 0x00200120;  // rows of three bytes, four bytes apart
  const Bytes before = {1, 2, 3, 99, 4, 5, 6, 98};
  Bytes image = before;
  EXPECT_EQ(OvraRotateImage(image.data(), image.data(), 1, 2, kAligned, 0), OVRA_OK);
  EXPECT_EQ(image, before);
  Bytes copy(8, 7);
  EXPECT_EQ(OvraRotateImage(image.data(), copy.data(), 1, 2, kAligned, 0), OVRA_OK);
  EXPECT_EQ(copy, (Bytes{1, 2, 3, 0, 4, 5, 6, 0}));
}

TEST(Extrapolation, PlacesTheSourceAndFillsTheRest) {
  const Bytes source = {1, 2};
  const uint16_t fill = 300;  // counts as 255
  Bytes canvas(12, 7);
  EXPECT_EQ(OvraExtrapolateImage(source.data(), 2, 1, canvas.data(), 3, 3, 0x00200000, 1, 0, &fill),
            OVRA_OK);
  EXPECT_EQ(canvas, (Bytes{255, 1, 2, 0, 255, 255, 255, 0, 255, 255, 255, 0}));
  canvas.resize(9);
  EXPECT_EQ(OvraExtrapolateImage(source.data(), 2, 1, canvas.data(), 3, 3, kBottomUp, 0, 0, &fill),
            OVRA_OK);
  EXPECT_EQ(canvas, (Bytes{255, 255, 255, 255, 255, 255, 1, 2, 255}));
}

// 16-bit grey, one pixel a row, rows four bytes apart: two bytes of padding, four cleared.
TEST(Extrapolation, TwoByteSamplesClearTwiceThePadding) {
  const uint16_t source = 0x1111;
  const uint16_t fill = 0x2222;
  std::vector<uint16_t> canvas(6, 9);
  EXPECT_EQ(OvraExtrapolateImage(reinterpret_cast<const uint8_t*>(&source), 1, 1,
                                 reinterpret_cast<uint8_t*>(canvas.data()), 1, 2, 0x00200008, 0, 0,
                                 &fill),
            OVRA_OK);
  EXPECT_EQ(canvas, (std::vector<uint16_t>{0x1111, 0, 0x2222, 0, 0, 9}));
}

}  // namespace
