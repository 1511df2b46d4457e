// SPDX-License-Identifier: MIT
#include "core/pixel_format.h"

#include <gtest/gtest.h>

namespace {

using ovra::DecodePixelFormat;
using ovra::PixelFormat;

TEST(PixelFormat, DecodesEveryFieldInPlace) {
  PixelFormat format;
  ASSERT_EQ(DecodePixelFormat(0xF1221234, &format), OVRA_OK);  // bits 28-31 are ignored
  EXPECT_EQ(format.channels, 4U);
  EXPECT_EQ(format.depth_bits, 12U);
  EXPECT_EQ(format.color_model, 0x1200U);
  EXPECT_EQ(format.arrangement, 0x20000U);
  EXPECT_EQ(format.alignment_bytes, 4U);
  EXPECT_EQ(format.row_order, 0x01000000U);
  ASSERT_EQ(DecodePixelFormat(0, &format), OVRA_OK);
  EXPECT_EQ(format.channels, 1U);
  EXPECT_EQ(format.depth_bits, 8U);
  EXPECT_EQ(format.alignment_bytes, 1U);
}

// Of every field all 16 or 256 values, alone in an otherwise valid word.
TEST(PixelFormat, AcceptsExactlyTheKnownValues) {
  PixelFormat format;
  for (uint32_t value = 0; value < 16; ++value) {
    EXPECT_EQ(DecodePixelFormat(value, &format), value <= 9 ? OVRA_OK : OVRA_ERROR_FORMAT_DEPTH);
    EXPECT_EQ(DecodePixelFormat(value << 4, &format),
              value <= 3 ? OVRA_OK : OVRA_ERROR_FORMAT_CHANNELS);
    EXPECT_EQ(DecodePixelFormat(value << 16, &format),
              value <= 2 ? OVRA_OK : OVRA_ERROR_FORMAT_ARRANGEMENT);
    EXPECT_EQ(DecodePixelFormat(value << 20, &format),
              value <= 2 ? OVRA_OK : OVRA_ERROR_FORMAT_ROW_ALIGNMENT);
    EXPECT_EQ(DecodePixelFormat(value << 24, &format),
              value <= 1 ? OVRA_OK : OVRA_ERROR_FORMAT_ROW_ORDER);
  }
  for (uint32_t value = 0; value < 256; ++value) {
    const bool known = value <= 0x07 || (value >= 0x10 && value <= 0x12);
    EXPECT_EQ(DecodePixelFormat(value << 8, &format),
              known ? OVRA_OK : OVRA_ERROR_FORMAT_COLOR_MODEL);
  }
}

TEST(PixelFormat, ReportsTheFirstBadFieldInDecodingOrder) {
  PixelFormat format;
  EXPECT_EQ(DecodePixelFormat(0x0FFFFFFF, &format), OVRA_ERROR_FORMAT_CHANNELS);
  EXPECT_EQ(DecodePixelFormat(0x0FFFFF0F, &format), OVRA_ERROR_FORMAT_DEPTH);
  EXPECT_EQ(DecodePixelFormat(0x0FFFFF00, &format), OVRA_ERROR_FORMAT_COLOR_MODEL);
  EXPECT_EQ(DecodePixelFormat(0x0FFF0000, &format), OVRA_ERROR_FORMAT_ARRANGEMENT);
  EXPECT_EQ(DecodePixelFormat(0x0FF00000, &format), OVRA_ERROR_FORMAT_ROW_ALIGNMENT);
}

TEST(PixelFormat, WritesRefusedFieldsOnlyWhereTheyStayInPlace) {
  constexpr uint32_t kUntouched = 77;
  using Decoder = ovra::Status(ovra::PixelFormatCode, uint32_t*);
  struct Case {
    Decoder* decoder;
    uint32_t written;
  };
  const Case cases[] = {
      {ovra::DecodeChannelCount, kUntouched}, {ovra::DecodeSampleDepth, kUntouched},
      {ovra::DecodeColourModel, 0xFF00},      {ovra::DecodeArrangement, 0xF0000},
      {ovra::DecodeRowAlignment, kUntouched}, {ovra::DecodeRowOrder, 0xF000000},
  };
  for (const Case& c : cases) {
    uint32_t out = kUntouched;
    EXPECT_NE(c.decoder(0xFFFFFFFF, &out), OVRA_OK);
    EXPECT_EQ(out, c.written);
    EXPECT_EQ(c.decoder(0, nullptr), OVRA_ERROR_NULL_DECODER_OUTPUT);
  }
}

TEST(PixelFormat, RowStrideRoundsUpToTheAlignment) {
  EXPECT_EQ(ovra::RowStride(5, 3, 8, 4), 16);
  EXPECT_EQ(ovra::RowStride(3, 1, 12, 1), 6);
  EXPECT_EQ(ovra::RowStride(2, 4, 32, 2), 32);
  EXPECT_EQ(ovra::RowStride(1, 1, 8, 4), 4);
  EXPECT_EQ(ovra::RowStride(7, 1, 8, 0), 7);
  if constexpr (sizeof(std::ptrdiff_t) == 8) {
    EXPECT_EQ(ovra::RowStride(0x7FFFFFFF, 4, 16, 1), std::ptrdiff_t{0x7FFFFFFF} * 8);
  }
}

TEST(PixelFormat, MakePixelFormatBuildsWordsAndRefusedWords) {
  const OvraPixelFormatCode code =
      OvraMakePixelFormat(12, 3, OVRA_MODEL_BGR, 4, OVRA_ROWS_BOTTOM_UP);
  EXPECT_EQ(code, 0x01200224U);
  PixelFormat format;
  EXPECT_EQ(
      DecodePixelFormat(OvraMakePixelFormat(17, 3, OVRA_MODEL_RGB, 1, OVRA_ROWS_TOP_DOWN), &format),
      OVRA_ERROR_FORMAT_DEPTH);
  EXPECT_EQ(
      DecodePixelFormat(OvraMakePixelFormat(8, 5, OVRA_MODEL_RGB, 1, OVRA_ROWS_TOP_DOWN), &format),
      OVRA_ERROR_FORMAT_CHANNELS);
}

}  // namespace
