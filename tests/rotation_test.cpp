// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "ovra/geometry.h"
#include "support/guarded_buffer.h"
#include "support/random.h"

namespace {

using ovra_test::Guard;
using ovra_test::GuardedBuffer;
using Bytes = std::vector<uint8_t>;

struct PixelKind {
  uint32_t depth_bits;
  uint32_t channels;
  OvraColorModel model;

  size_t Bytes() const { return (depth_bits == 8 ? 1 : 2) * channels; }
};

constexpr PixelKind kKinds[] = {
    {8, 1, OVRA_MODEL_GREY},  {8, 3, OVRA_MODEL_RGB}, {8, 4, OVRA_MODEL_CMYK},
    {12, 1, OVRA_MODEL_GREY}, {9, 3, OVRA_MODEL_YCC}, {16, 4, OVRA_MODEL_RGBA},
};

// A picture as it is seen: one number a pixel, top row first.
struct Picture {
  size_t width;
  size_t height;
  std::vector<uint32_t> pixels;

  uint32_t At(size_t x, size_t y) const { return pixels[y * width + x]; }
};

Picture TurnedLeft(const Picture& in) {
  Picture out{in.height, in.width, {}};
  for (size_t y = 0; y < out.height; ++y) {
    for (size_t x = 0; x < out.width; ++x) out.pixels.push_back(in.At(in.width - 1 - y, x));
  }
  return out;
}

Picture Mirrored(const Picture& in) {
  Picture out{in.width, in.height, {}};
  for (size_t y = 0; y < out.height; ++y) {
    for (size_t x = 0; x < out.width; ++x) out.pixels.push_back(in.At(in.width - 1 - x, y));
  }
  return out;
}

// Modes 0..3 are as many quarter turns to the left; 4..7 the same, then mirrored.
Picture Rotated(Picture picture, int32_t mode) {
  for (int32_t turn = 0; turn < mode % 4; ++turn) picture = TurnedLeft(picture);
  return mode < 4 ? picture : Mirrored(picture);
}

struct Storage {
  PixelKind kind;
  size_t alignment;
  OvraRowOrder order;

  OvraPixelFormatCode Format() const {
    return OvraMakePixelFormat(kind.depth_bits, kind.channels, kind.model,
                               static_cast<uint32_t>(alignment), order);
  }
  size_t Stride(size_t width) const {
    return (width * kind.Bytes() + alignment - 1) / alignment * alignment;
  }
};

// The bytes of a picture in memory: pixels spelled from their number, rows filled up with `padding`.
Bytes Stored(const Picture& picture, const Storage& storage, uint8_t padding) {
  Bytes bytes;
  for (size_t row = 0; row < picture.height; ++row) {
    const size_t y = storage.order == OVRA_ROWS_TOP_DOWN ? row : picture.height - 1 - row;
    for (size_t x = 0; x < picture.width; ++x) {
      uint32_t bits = picture.At(x, y);
      for (size_t i = 0; i < storage.kind.Bytes(); ++i) {
        bytes.push_back(static_cast<uint8_t>(bits >> 24));
        bits = bits * 69069 + 1;
      }
    }
    bytes.resize((row + 1) * storage.Stride(picture.width), padding);
  }
  return bytes;
}

void ExpectEveryModeRight(const Picture& picture, const Storage& storage, Guard guard) {
  const Bytes in = Stored(picture, storage, 0x77);
  GuardedBuffer source(in.size(), guard);
  std::copy(in.begin(), in.end(), source.begin());
  for (int32_t mode = OVRA_ROTATE_NONE; mode <= OVRA_ROTATE_TRANSPOSE; ++mode) {
    const Bytes expected = Stored(Rotated(picture, mode), storage, 0);
    GuardedBuffer destination(expected.size(), guard);
    ASSERT_EQ(
        OvraRotateImage(source.data(), destination.data(), static_cast<int32_t>(picture.width),
                        static_cast<int32_t>(picture.height), storage.Format(), mode),
        OVRA_OK);
    ASSERT_TRUE(std::equal(expected.begin(), expected.end(), destination.begin()))
        << "mode " << mode << ", " << picture.width << " x " << picture.height << ", depth "
        << storage.kind.depth_bits << ", channels " << storage.kind.channels << ", alignment "
        << storage.alignment << ", row order " << storage.order;
  }
}

TEST(Rotation, ThePictureIsTurnedAsItIsSeen) {
  ovra_test::Random random(31);
  const std::pair<int32_t, int32_t> sizes[] = {{1, 1},    {3, 2},   {2, 63},   {64, 64},
                                               {130, 65}, {1, 129}, {200, 33}, {37, 128}};
  for (const auto& [width, height] : sizes) {
    for (const PixelKind& kind : kKinds) {
      Picture picture{static_cast<size_t>(width), static_cast<size_t>(height), {}};
      for (int32_t i = 0; i < width * height; ++i) picture.pixels.push_back(random());
      for (const size_t alignment : {1, 2, 4}) {
        for (const OvraRowOrder order : {OVRA_ROWS_TOP_DOWN, OVRA_ROWS_BOTTOM_UP}) {
          ExpectEveryModeRight(picture, {kind, alignment, order},
                               random() % 2 == 0 ? Guard::kAfter : Guard::kBefore);
        }
      }
    }
  }
}

TEST(Rotation, ModeZeroOnOneBufferLeavesEvenThePadding) {
  const OvraPixelFormatCode format =
      OvraMakePixelFormat(8, 3, OVRA_MODEL_RGB, 4, OVRA_ROWS_TOP_DOWN);
  const Bytes before = {1, 2, 3, 99, 4, 5, 6, 98};
  Bytes image = before;
  EXPECT_EQ(OvraRotateImage(image.data(), image.data(), 1, 2, format, OVRA_ROTATE_NONE), OVRA_OK);
  EXPECT_EQ(image, before);
}

TEST(Rotation, NegativeSizesWriteNothing) {
  uint8_t source = 1;
  uint8_t destination = 7;
  for (const int32_t size : {-1, -64, INT32_MIN}) {
    for (int32_t mode = OVRA_ROTATE_NONE; mode <= OVRA_ROTATE_TRANSPOSE; ++mode) {
      EXPECT_EQ(OvraRotateImage(&source, &destination, size, 1, 0, mode), OVRA_OK);
      EXPECT_EQ(OvraRotateImage(&source, &destination, 1, size, 0, mode), OVRA_OK);
    }
  }
  EXPECT_EQ(destination, 7);
}

TEST(Rotation, AnswersTheFirstFailingCheck) {
  struct Case {
    OvraStatus status;
    bool has_source;
    bool has_destination;
    int32_t width;
    int32_t height;
    OvraPixelFormatCode format;
    int32_t mode;
  };
  // Each case also breaks what is checked after it.
  constexpr OvraPixelFormatCode kBad = 0x0FFFFFFF;
  const Case cases[] = {
      {OVRA_ERROR_ROTATION_NULL, false, true, 0, 0, kBad, 8},
      {OVRA_ERROR_ROTATION_NULL, true, false, 0, 0, kBad, 8},
      {OVRA_ERROR_ROTATION_ZERO_SIZE, true, true, 0, 1, kBad, 8},
      {OVRA_ERROR_ROTATION_ZERO_SIZE, true, true, 1, 0, kBad, 8},
      {OVRA_ERROR_ROTATION_MODE, true, true, 1, 1, kBad, 8},
      {OVRA_ERROR_ROTATION_MODE, true, true, 1, 1, kBad, -1},
      {OVRA_ERROR_ROTATION_MODE, true, true, 1, 1, kBad, 256},
      {OVRA_ERROR_FORMAT_CHANNELS, true, true, 1, 1, kBad, 0},
      {OVRA_ERROR_FORMAT_ROW_ORDER, true, true, 1, 1, 0x0F010019, 0},
      {OVRA_ERROR_ROTATION_DEPTH, true, true, 1, 1, 0x00010019, 0},
      {OVRA_ERROR_ROTATION_COLOR_MODEL, true, true, 1, 1, 0x00010010, 0},
      {OVRA_ERROR_ROTATION_COLOR_MODEL, true, true, 1, 1, 0x00010020, 0},
      {OVRA_ERROR_ROTATION_COLOR_MODEL, true, true, 1, 1, 0x00010130, 0},
      {OVRA_ERROR_ROTATION_COLOR_MODEL, true, true, 1, 1, 0x00011020, 0},
      {OVRA_ERROR_ROTATION_ARRANGEMENT, true, true, 1, 1, 0x00010720, 0},
      {OVRA_ERROR_ROTATION_ARRANGEMENT, true, true, 1, 1, 0x00021230, 0},
  };
  const Bytes source(8, 1);
  for (const Case& c : cases) {
    Bytes destination(8, 7);
    EXPECT_EQ(OvraRotateImage(c.has_source ? source.data() : nullptr,
                              c.has_destination ? destination.data() : nullptr, c.width, c.height,
                              c.format, c.mode),
              c.status)
        << c.status;
    EXPECT_EQ(destination, Bytes(8, 7)) << c.status;
  }
}

}  // namespace
