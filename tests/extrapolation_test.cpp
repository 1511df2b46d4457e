// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "ovra/geometry.h"
#include "support/guarded_buffer.h"
#include "support/random.h"

namespace {

using ovra_test::GuardedBuffer;
using ovra_test::RandomInt;
using Bytes = std::vector<uint8_t>;

struct Canvas {
  uint32_t depth_bits;
  uint32_t channels;
  OvraColorModel model;
  uint32_t alignment;
  OvraRowOrder order;
  int32_t source_width;
  int32_t source_height;
  int32_t width;
  int32_t height;
  int32_t x;
  int32_t y;

  uint32_t SampleBytes() const { return depth_bits == 8 ? 1 : 2; }
  uint32_t Stride(int32_t pixels) const {
    const uint32_t packed = static_cast<uint32_t>(pixels) * channels * SampleBytes();
    return (packed + alignment - 1) / alignment * alignment;
  }
  uint32_t Padding() const {
    return Stride(width) - static_cast<uint32_t>(width) * channels * SampleBytes();
  }
  OvraPixelFormatCode Format() const {
    return OvraMakePixelFormat(depth_bits, channels, model, alignment, order);
  }
  // Bytes that a call writes: two-byte samples clear as many behind the end as a row has padding.
  uint32_t WrittenBytes() const {
    return Stride(width) * static_cast<uint32_t>(height) + (SampleBytes() == 2 ? Padding() : 0);
  }
};

// Every destination byte, found from where it stands in the picture as seen.
Bytes Expected(const Canvas& c, const uint8_t* source, const uint16_t* fill) {
  Bytes out(c.WrittenBytes(), 0);
  const uint32_t pixel_bytes = c.channels * c.SampleBytes();
  const bool bottom_up = c.order == OVRA_ROWS_BOTTOM_UP;
  for (int32_t y = 0; y < c.height; ++y) {
    const int32_t row = bottom_up ? c.height - 1 - y : y;
    const int32_t source_y = y - c.y;
    const int32_t source_row = bottom_up ? c.source_height - 1 - source_y : source_y;
    for (int32_t x = 0; x < c.width; ++x) {
      const int32_t source_x = x - c.x;
      const bool inside =
          source_x >= 0 && source_x < c.source_width && source_y >= 0 && source_y < c.source_height;
      for (uint32_t i = 0; i < pixel_bytes; ++i) {
        const uint32_t value =
            std::min<uint32_t>(fill[i / c.SampleBytes()], (1U << c.depth_bits) - 1);
        out[static_cast<uint32_t>(row) * c.Stride(c.width) +
            static_cast<uint32_t>(x) * pixel_bytes + i] =
            inside ? source[static_cast<uint32_t>(source_row) * c.Stride(c.source_width) +
                            static_cast<uint32_t>(source_x) * pixel_bytes + i]
                   : static_cast<uint8_t>(value >> 8 * (i % c.SampleBytes()));
      }
    }
  }
  return out;
}

void ExpectRight(const Canvas& c, ovra_test::Random& random) {
  // The last row of the source has no padding here, and fill no entry more than there are channels.
  const uint32_t source_bytes = c.source_height == 0
                                    ? 1
                                    : c.Stride(c.source_width) * (c.source_height - 1U) +
                                          c.source_width * c.channels * c.SampleBytes();
  GuardedBuffer source(source_bytes);
  ovra_test::FillSamples(random, source.begin(), source.end(), 255U);
  GuardedBuffer fill(c.channels * sizeof(uint16_t));
  for (uint32_t i = 0; i < c.channels; ++i) {
    fill.as<uint16_t>()[i] = static_cast<uint16_t>(random() >> random() % 16);
  }
  const Bytes expected = Expected(c, source.data(), fill.as<uint16_t>());
  GuardedBuffer destination(expected.size());
  ASSERT_EQ(OvraExtrapolateImage(source.data(), static_cast<uint32_t>(c.source_width),
                                 static_cast<uint32_t>(c.source_height), destination.data(),
                                 static_cast<uint32_t>(c.width), static_cast<uint32_t>(c.height),
                                 c.Format(), c.x, c.y, fill.as<uint16_t>()),
            OVRA_OK);
  ASSERT_TRUE(std::equal(expected.begin(), expected.end(), destination.begin()))
      << c.source_width << " x " << c.source_height << " on " << c.width << " x " << c.height
      << " at " << c.x << ", " << c.y << ", depth " << c.depth_bits << ", channels " << c.channels
      << ", alignment " << c.alignment << ", row order " << c.order;
}

TEST(Extrapolation, PlacesTheSourceAndFillsTheRest) {
  ovra_test::Random random(33);
  const uint32_t channel_counts[] = {1, 3, 4};
  const OvraColorModel models[] = {OVRA_MODEL_GREY, OVRA_MODEL_YCC, OVRA_MODEL_RGBA,
                                   OVRA_MODEL_CMYK};
  for (int round = 0; round < 600; ++round) {
    Canvas c = {};
    c.depth_bits = static_cast<uint32_t>(random() % 2 == 0 ? 8 : RandomInt(random, 9, 16));
    c.channels = channel_counts[random() % 3];
    c.model = models[random() % 4];  // any of them with any channel count
    c.alignment = 1U << random() % 3;
    c.order = random() % 2 == 0 ? OVRA_ROWS_TOP_DOWN : OVRA_ROWS_BOTTOM_UP;
    c.source_width = RandomInt(random, 1, 40);
    c.source_height = RandomInt(random, 0, 6);
    c.x = RandomInt(random, 0, 3) * RandomInt(random, 0, 30);
    c.y = RandomInt(random, 0, 3);
    c.width = c.x + c.source_width + RandomInt(random, 0, 1) * RandomInt(random, 1, 40);
    c.height = std::max(1, c.y + c.source_height + RandomInt(random, 0, 3));
    ASSERT_NO_FATAL_FAILURE(ExpectRight(c, random));
  }
  // Rows longer than the piece that is copied over and over.
  ASSERT_NO_FATAL_FAILURE(
      ExpectRight({8, 3, OVRA_MODEL_RGB, 4, OVRA_ROWS_TOP_DOWN, 7, 2, 9001, 4, 4003, 1}, random));
}

// 16-bit grey, one pixel a row, rows four bytes apart: two bytes of padding, four cleared.
TEST(Extrapolation, TwoByteSamplesClearTwiceThePadding) {
  const OvraPixelFormatCode format =
      OvraMakePixelFormat(16, 1, OVRA_MODEL_GREY, 4, OVRA_ROWS_TOP_DOWN);
  const uint16_t source = 0x1111;
  const uint16_t fill = 0x2222;
  uint16_t destination[6] = {9, 9, 9, 9, 9, 9};
  const uint16_t expected[6] = {0x1111, 0, 0x2222, 0, 0, 9};
  EXPECT_EQ(
      OvraExtrapolateImage(reinterpret_cast<const uint8_t*>(&source), 1, 1,
                           reinterpret_cast<uint8_t*>(destination), 1, 2, format, 0, 0, &fill),
      OVRA_OK);
  EXPECT_TRUE(std::equal(std::begin(expected), std::end(expected), destination));
}

TEST(Extrapolation, AnswersTheFirstFailingCheck) {
  constexpr OvraPixelFormatCode kBad = 0x0FFFFFFF;
  const Bytes source(8, 1);
  const Bytes untouched(8, 7);
  Bytes destination = untouched;
  const uint16_t fill[4] = {1, 2, 3, 4};
  struct Case {
    OvraStatus status;
    const uint8_t* source;
    uint8_t* destination;
    uint32_t source_width;
    uint32_t source_height;
    uint32_t width;
    uint32_t height;
    OvraPixelFormatCode format;
    int32_t x;
    int32_t y;
    const uint16_t* fill;
  };
  const uint8_t* const src = source.data();
  uint8_t* const dst = destination.data();
  // Each case also breaks what is checked after it.
  const Case cases[] = {
      {OVRA_ERROR_EXTRAPOLATION_NULL, nullptr, dst, 0, 1, 1, 1, kBad, 0, 0, nullptr},
      {OVRA_ERROR_EXTRAPOLATION_NULL, src, nullptr, 0, 1, 1, 1, kBad, 0, 0, nullptr},
      {OVRA_ERROR_EXTRAPOLATION_IN_PLACE, dst, dst, 0, 1, 1, 1, kBad, 0, 0, nullptr},
      {OVRA_ERROR_EXTRAPOLATION_SIZE, src, dst, 0, 1, 1, 1, kBad, 0, 0, nullptr},
      {OVRA_ERROR_EXTRAPOLATION_SIZE, src, dst, 1, 0, 1, 0, kBad, 0, 0, nullptr},
      {OVRA_ERROR_EXTRAPOLATION_SIZE, src, dst, 1, 1, 0, 1, kBad, 0, 0, nullptr},
      {OVRA_ERROR_EXTRAPOLATION_SIZE, src, dst, 2, 1, 4, 1, kBad, 3, 0, nullptr},
      {OVRA_ERROR_EXTRAPOLATION_SIZE, src, dst, 1, 2, 1, 3, kBad, 0, 2, nullptr},
      {OVRA_ERROR_EXTRAPOLATION_SIZE, src, dst, 2, 1, 2, 1, kBad, -1, 0, nullptr},
      {OVRA_ERROR_EXTRAPOLATION_SIZE, src, dst, 1, 2, 1, 2, kBad, 0, -1, nullptr},
      // Sums that would wrap round to something that fits.
      {OVRA_ERROR_EXTRAPOLATION_SIZE, src, dst, 0xFFFFFFFF, 1, 8, 1, kBad, 1, 0, nullptr},
      {OVRA_ERROR_EXTRAPOLATION_SIZE, src, dst, 1, 0x80000001, 1, 8, kBad, 0, INT32_MAX, nullptr},
      {OVRA_ERROR_EXTRAPOLATION_NULL_FILL, src, dst, 1, 1, 1, 1, kBad, 0, 0, nullptr},
      {OVRA_ERROR_FORMAT_CHANNELS, src, dst, 1, 1, 1, 1, kBad, 0, 0, fill},
      {OVRA_ERROR_FORMAT_ROW_ORDER, src, dst, 1, 1, 1, 1, 0x0F010419, 0, 0, fill},
      {OVRA_ERROR_EXTRAPOLATION_CHANNELS, src, dst, 1, 1, 1, 1, 0x00010419, 0, 0, fill},
      {OVRA_ERROR_EXTRAPOLATION_DEPTH, src, dst, 1, 1, 1, 1, 0x00010429, 0, 0, fill},
      {OVRA_ERROR_EXTRAPOLATION_COLOR_MODEL, src, dst, 1, 1, 1, 1, 0x00010420, 0, 0, fill},
      {OVRA_ERROR_EXTRAPOLATION_COLOR_MODEL, src, dst, 1, 1, 1, 1, 0x00010728, 0, 0, fill},
      {OVRA_ERROR_EXTRAPOLATION_ARRANGEMENT, src, dst, 1, 1, 1, 1, 0x01010320, 0, 0, fill},
      {OVRA_ERROR_EXTRAPOLATION_ARRANGEMENT, src, dst, 1, 1, 1, 1, 0x00021200, 0, 0, fill},
      // More rows below the source than a signed number holds.
      {OVRA_ERROR_EXTRAPOLATION_SIZE, src, dst, 1, 1, 1, 0xFFFFFFFF, 0x01000000, 0, 0, fill},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(OvraExtrapolateImage(c.source, c.source_width, c.source_height, c.destination,
                                   c.width, c.height, c.format, c.x, c.y, c.fill),
              c.status)
        << "case " << &c - cases;
    EXPECT_EQ(destination, untouched) << "case " << &c - cases;
  }
}

}  // namespace
