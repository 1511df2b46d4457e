// SPDX-License-Identifier: MIT
#include "core/pixel_format.h"

#include <limits>

namespace ovra {
namespace {

constexpr uint32_t kDepthMask = 0x0000000F;
constexpr uint32_t kChannelMask = 0x000000F0;
constexpr uint32_t kColorModelMask = 0x0000FF00;
constexpr uint32_t kArrangementMask = 0x000F0000;
constexpr uint32_t kAlignmentMask = 0x00F00000;
constexpr uint32_t kRowOrderMask = 0x0F000000;

constexpr uint32_t kChannelShift = 4;
constexpr uint32_t kAlignmentShift = 20;

constexpr uint32_t kLastConsecutiveDepthCode = 8;  // codes 0..8 are 8..16 bits
constexpr uint32_t kDepthCodeOf32Bits = 9;
constexpr uint32_t kLastChannelCode = 3;
constexpr uint32_t kLastArrangement = 0x00020000;
constexpr uint32_t kLastAlignmentCode = 2;

bool IsKnownColorModel(uint32_t color_model) {
  return color_model <= OVRA_MODEL_TRIPLE_7 ||
         (color_model >= OVRA_MODEL_RGBA && color_model <= OVRA_MODEL_CMYK);
}

}  // namespace

Status DecodeChannelCount(PixelFormatCode code, uint32_t* channels) {
  if (channels == nullptr) return OVRA_ERROR_NULL_DECODER_OUTPUT;
  const uint32_t channel_code = (code & kChannelMask) >> kChannelShift;
  if (channel_code > kLastChannelCode) return OVRA_ERROR_FORMAT_CHANNELS;
  *channels = channel_code + 1;
  return OVRA_OK;
}

Status DecodeSampleDepth(PixelFormatCode code, uint32_t* depth_bits) {
  if (depth_bits == nullptr) return OVRA_ERROR_NULL_DECODER_OUTPUT;
  const uint32_t depth_code = code & kDepthMask;
  if (depth_code > kDepthCodeOf32Bits) return OVRA_ERROR_FORMAT_DEPTH;
  *depth_bits = depth_code <= kLastConsecutiveDepthCode ? depth_code + 8 : 32;
  return OVRA_OK;
}

Status DecodeColourModel(PixelFormatCode code, uint32_t* color_model) {
  if (color_model == nullptr) return OVRA_ERROR_NULL_DECODER_OUTPUT;
  *color_model = code & kColorModelMask;
  return IsKnownColorModel(*color_model) ? OVRA_OK : OVRA_ERROR_FORMAT_COLOR_MODEL;
}

Status DecodeArrangement(PixelFormatCode code, uint32_t* arrangement) {
  if (arrangement == nullptr) return OVRA_ERROR_NULL_DECODER_OUTPUT;
  *arrangement = code & kArrangementMask;
  return *arrangement <= kLastArrangement ? OVRA_OK : OVRA_ERROR_FORMAT_ARRANGEMENT;
}

Status DecodeRowAlignment(PixelFormatCode code, uint32_t* alignment_bytes) {
  if (alignment_bytes == nullptr) return OVRA_ERROR_NULL_DECODER_OUTPUT;
  const uint32_t alignment_code = (code & kAlignmentMask) >> kAlignmentShift;
  if (alignment_code > kLastAlignmentCode) return OVRA_ERROR_FORMAT_ROW_ALIGNMENT;
  *alignment_bytes = uint32_t{1} << alignment_code;
  return OVRA_OK;
}

Status DecodeRowOrder(PixelFormatCode code, uint32_t* row_order) {
  if (row_order == nullptr) return OVRA_ERROR_NULL_DECODER_OUTPUT;
  *row_order = code & kRowOrderMask;
  return *row_order <= OVRA_ROWS_BOTTOM_UP ? OVRA_OK : OVRA_ERROR_FORMAT_ROW_ORDER;
}

Status DecodePixelFormat(PixelFormatCode code, uint32_t* channels, uint32_t* depth_bits,
                         uint32_t* color_model, uint32_t* arrangement, uint32_t* alignment_bytes,
                         uint32_t* row_order) {
  Status status = DecodeChannelCount(code, channels);
  if (status == OVRA_OK) status = DecodeSampleDepth(code, depth_bits);
  if (status == OVRA_OK) status = DecodeColourModel(code, color_model);
  if (status == OVRA_OK) status = DecodeArrangement(code, arrangement);
  if (status == OVRA_OK) status = DecodeRowAlignment(code, alignment_bytes);
  if (status == OVRA_OK) status = DecodeRowOrder(code, row_order);
  return status;
}

Status DecodePixelFormat(PixelFormatCode code, PixelFormat* format) {
  *format = PixelFormat{};
  return DecodePixelFormat(code, &format->channels, &format->depth_bits, &format->color_model,
                           &format->arrangement, &format->alignment_bytes, &format->row_order);
}

bool ColorModelFitsChannels(uint32_t color_model, uint32_t channels) {
  if (!IsKnownColorModel(color_model)) return false;
  if (color_model == OVRA_MODEL_GREY) return channels == 1;
  return channels == (color_model <= OVRA_MODEL_TRIPLE_7 ? 3U : 4U);
}

Status EncodePixelFormat(uint32_t depth_bits, uint32_t channels, uint32_t color_model,
                         uint32_t row_alignment, uint32_t row_order, PixelFormatCode* code) {
  if (code == nullptr) return OVRA_ERROR_NULL_DECODER_OUTPUT;
  // Judged as numbers: only known values may become enumerators.
  if ((color_model & ~kColorModelMask) != 0 || !IsKnownColorModel(color_model)) {
    return OVRA_ERROR_FORMAT_COLOR_MODEL;
  }
  if (row_order != OVRA_ROWS_TOP_DOWN && row_order != OVRA_ROWS_BOTTOM_UP) {
    return OVRA_ERROR_FORMAT_ROW_ORDER;
  }
  const PixelFormatCode word =
      OvraMakePixelFormat(depth_bits, channels, static_cast<OvraColorModel>(color_model),
                          row_alignment, static_cast<OvraRowOrder>(row_order));
  PixelFormat decoded;
  const Status status = DecodePixelFormat(word, &decoded);
  if (status == OVRA_OK) *code = word;
  return status;
}

}  // namespace ovra

OVRA_API OvraStatus OVRA_CALL OvraMakePixelFormatCode(uint32_t depth_bits, uint32_t channels,
                                                      uint32_t color_model, uint32_t row_alignment,
                                                      uint32_t row_order,
                                                      OvraPixelFormatCode* format) {
  return ovra::EncodePixelFormat(depth_bits, channels, color_model, row_alignment, row_order,
                                 format);
}

OVRA_API OvraStatus OVRA_CALL OvraRowStride(uint32_t width, OvraPixelFormatCode format,
                                            size_t* stride) {
  if (stride == nullptr) return OVRA_ERROR_NULL_DECODER_OUTPUT;
  *stride = 0;
  ovra::PixelFormat decoded;
  const ovra::Status status = ovra::DecodePixelFormat(format, &decoded);
  if (status != OVRA_OK) return status;
  const int64_t bytes = ovra::WideRowStride(width, static_cast<int32_t>(decoded.channels),
                                            static_cast<int32_t>(decoded.depth_bits),
                                            static_cast<int32_t>(decoded.alignment_bytes));
  if (bytes > std::numeric_limits<std::ptrdiff_t>::max()) return OVRA_ERROR_NO_MEMORY;
  *stride = static_cast<size_t>(bytes);
  return OVRA_OK;
}
