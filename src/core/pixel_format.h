// SPDX-License-Identifier: MIT
// Decoding of the pixel-format word, and the row stride that follows from it.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/status.h"
#include "ovra/pixel_format.h"

namespace ovra {

using PixelFormatCode = OvraPixelFormatCode;

// Field decoders. Each answers OVRA_ERROR_NULL_DECODER_OUTPUT when its output pointer is null and
// the field's own status when the field is not an accepted one. Colour model, arrangement and row
// order are decoded to the field in place, which is written even when it is refused.
Status DecodeChannelCount(PixelFormatCode code, uint32_t* channels);
Status DecodeSampleDepth(PixelFormatCode code, uint32_t* depth_bits);
Status DecodeColourModel(PixelFormatCode code, uint32_t* color_model);
Status DecodeArrangement(PixelFormatCode code, uint32_t* arrangement);
Status DecodeRowAlignment(PixelFormatCode code, uint32_t* alignment_bytes);
Status DecodeRowOrder(PixelFormatCode code, uint32_t* row_order);

// Decodes all six fields in the order of the arguments; the first status that is not 0 is returned.
Status DecodePixelFormat(PixelFormatCode code, uint32_t* channels, uint32_t* depth_bits,
                         uint32_t* color_model, uint32_t* arrangement, uint32_t* alignment_bytes,
                         uint32_t* row_order);

struct PixelFormat {
  uint32_t channels = 0;
  uint32_t depth_bits = 0;
  uint32_t color_model = 0;  // an OvraColorModel
  uint32_t arrangement = 0;
  uint32_t alignment_bytes = 0;
  uint32_t row_order = 0;  // an OvraRowOrder

  bool BottomUp() const { return row_order != OVRA_ROWS_TOP_DOWN; }
  // The greatest value of a sample; for depths of 8 to 16 bits.
  uint32_t MaxSample() const { return (uint32_t{1} << depth_bits) - 1; }
};

Status DecodePixelFormat(PixelFormatCode code, PixelFormat* format);

// Whether a colour model is one of those that need this channel count: grey 1, the 0x01..0x07
// models 3, the 0x10..0x12 models 4.
bool ColorModelFitsChannels(uint32_t color_model, uint32_t channels);

// The format word of these fields; statuses as at OvraMakePixelFormatCode.
Status EncodePixelFormat(uint32_t depth_bits, uint32_t channels, uint32_t color_model,
                         uint32_t row_alignment, uint32_t row_order, PixelFormatCode* code);

static constexpr int32_t BytesPerSample(int32_t depth_bits) {
  return (depth_bits + 7) / 8;
}

// Bytes between the starts of two rows: the bytes of `width` pixels rounded up to the alignment
// (0 counts as 1). Formed in 64 bits, so that the rows of the widest images keep their distance; a
// negative width gives a stride that callers never walk with.
static constexpr int64_t WideRowStride(int64_t width, int32_t channels, int32_t depth_bits,
                                       int32_t alignment_bytes) {
  const int64_t packed = int64_t{BytesPerSample(depth_bits)} * width * channels;
  const int64_t alignment = alignment_bytes == 0 ? 1 : alignment_bytes;
  return (packed + alignment - 1) / alignment * alignment;
}

static constexpr std::ptrdiff_t RowStride(int64_t width, int32_t channels, int32_t depth_bits,
                                          int32_t alignment_bytes) {
  return static_cast<std::ptrdiff_t>(WideRowStride(width, channels, depth_bits, alignment_bytes));
}

// The stride of an image of this format.
static inline std::ptrdiff_t RowStride(int64_t width, const PixelFormat& format) {
  return RowStride(width, static_cast<int32_t>(format.channels),
                   static_cast<int32_t>(format.depth_bits),
                   static_cast<int32_t>(format.alignment_bytes));
}

// Whether width, height and the bytes of a row's pixels can be counted in signed 32 bits.
static inline bool IsCountable(uint32_t width, uint32_t height, const PixelFormat& format) {
  constexpr uint64_t kMax = INT32_MAX;
  const auto sample_bytes =
      static_cast<uint64_t>(BytesPerSample(static_cast<int32_t>(format.depth_bits)));
  return height <= kMax && width * sample_bytes * format.channels <= kMax;
}

}  // namespace ovra
