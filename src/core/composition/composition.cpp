// SPDX-License-Identifier: MIT
#include "core/composition/composition.h"

#include <algorithm>
#include <cstddef>

#include "core/composition/kernels.h"
#include "core/format_rules.h"
#include "core/row_copy/kernels.h"
#include "ovra/basic.h"

namespace ovra {
namespace {

bool AcceptsColorModel(const PixelFormat& format) {
  return format.color_model <= OVRA_MODEL_YCC || format.color_model == OVRA_MODEL_RGBA ||
         format.color_model == OVRA_MODEL_BGRA;
}

const CompositionKernels& KernelsOf(KernelTier tier) {
  return ForTier(tier, kCompositionPlain, kCompositionSse, kCompositionAvx2);
}

struct Size {
  int32_t width;
  int32_t height;
};

Status CheckBuffers(const uint8_t* destination, Size destination_size, const uint8_t* source,
                    Size source_size) {
  if (destination == nullptr || source == nullptr) return OVRA_ERROR_COMPOSITE_NULL;
  if (destination == source) return OVRA_ERROR_COMPOSITE_IN_PLACE;
  for (const Size size : {destination_size, source_size}) {
    if (size.width == 0 || size.height == 0) return OVRA_ERROR_COMPOSITE_SIZE;
  }
  return OVRA_OK;
}

// Both formats have been accepted: their depths and arrangements are the same.
Status CheckFormatRelation(const PixelFormat& destination, const PixelFormat& source) {
  if (destination.alignment_bytes != source.alignment_bytes ||
      destination.row_order != source.row_order) {
    return OVRA_ERROR_COMPOSITE_FORMATS_DIFFER;
  }
  if (source.channels != destination.channels && source.channels != destination.channels + 1) {
    return OVRA_ERROR_COMPOSITE_CHANNEL_RELATION;
  }
  return OVRA_OK;
}

// From y, counted down the picture, to the memory row of the destination at which the first memory
// row of the source comes to lie. Sources that reach below a bottom-up picture are refused.
Status FindFirstRow(const PixelFormat& format, int32_t destination_height, int32_t source_height,
                    int32_t y, int64_t* row) {
  *row = format.BottomUp() ? int64_t{destination_height} - source_height - y : y;
  return format.BottomUp() && *row < 0 ? OVRA_ERROR_COMPOSITE_SIZE : OVRA_OK;
}

// What a placed source covers of the destination along one axis.
struct Span {
  std::ptrdiff_t destination = 0;  // the first position covered
  std::ptrdiff_t source = 0;       // the position of the source that lies there
  std::ptrdiff_t count = 0;
};

// Negative sizes cover nothing.
Span Clip(int32_t destination_size, int32_t source_size, int64_t position) {
  const int64_t begin = std::max<int64_t>(position, 0);
  const int64_t end = std::min<int64_t>(destination_size, position + source_size);
  if (begin >= end) return Span{};
  return {static_cast<std::ptrdiff_t>(begin), static_cast<std::ptrdiff_t>(begin - position),
          static_cast<std::ptrdiff_t>(end - begin)};
}

// The rectangle to write, in bytes from the base of each image.
struct Area {
  std::ptrdiff_t destination_offset = 0;
  std::ptrdiff_t destination_stride = 0;
  std::ptrdiff_t source_offset = 0;
  std::ptrdiff_t source_stride = 0;
  std::ptrdiff_t pixels = 0;  // in each row
  std::ptrdiff_t rows = 0;    // 0 when nothing is covered

  std::ptrdiff_t DestinationAt(std::ptrdiff_t row) const {
    return destination_offset + destination_stride * row;
  }
  NextRow Next() const { return {source_stride, destination_stride}; }
  std::ptrdiff_t SourceAt(std::ptrdiff_t row) const { return source_offset + source_stride * row; }
};

Area FindArea(Size destination_size, const PixelFormat& destination_format, Size source_size,
              const PixelFormat& source_format, int32_t x, int64_t first_row) {
  const Span columns = Clip(destination_size.width, source_size.width, x);
  const Span rows = Clip(destination_size.height, source_size.height, first_row);
  if (columns.count == 0 || rows.count == 0) return Area{};
  const auto destination_channels = static_cast<std::ptrdiff_t>(destination_format.channels);
  const auto source_channels = static_cast<std::ptrdiff_t>(source_format.channels);
  Area area;
  area.destination_stride = RowStride(destination_size.width, destination_format);
  area.destination_offset =
      area.destination_stride * rows.destination + destination_channels * columns.destination;
  area.source_stride = RowStride(source_size.width, source_format);
  area.source_offset = area.source_stride * rows.source + source_channels * columns.source;
  area.pixels = columns.count;
  area.rows = rows.count;
  return area;
}

void CopyRows(const uint8_t* source, uint8_t* destination, const Area& area, uint32_t channels,
              KernelTier tier) {
  const auto bytes = area.pixels * static_cast<std::ptrdiff_t>(channels);
  RowCopyKernelsOf(tier).copy({.source = source + area.source_offset,
                               .source_stride = area.source_stride,
                               .destination = destination + area.destination_offset,
                               .destination_stride = area.destination_stride,
                               .pixels = bytes,
                               .rows = area.rows,
                               .padding = 0,
                               .streaming = WritesRoundCache(bytes, area.rows)});
}

WeightOf WeightOfMode(uint8_t blend_mode) {
  return blend_mode == OVRA_BLEND_WEIGHT_OF_SOURCE ? WeightOf::kSource : WeightOf::kDestination;
}

}  // namespace

Status CheckCompositeFormat(PixelFormatCode code, PixelFormat* format) {
  static constexpr FormatRules kRules = {
      .channels = NumberSet::Between(1, 4),
      .channels_refused = OVRA_ERROR_COMPOSITE_CHANNELS,
      .depths_bits = NumberSet::Of(8),
      .depth_refused = OVRA_ERROR_COMPOSITE_DEPTH,
      .accepts_model = AcceptsColorModel,
      .model_refused = OVRA_ERROR_COMPOSITE_COLOR_MODEL,
      .arrangement_refused = OVRA_ERROR_COMPOSITE_ARRANGEMENT,
  };
  return DecodeAndCheckFormat(code, kRules, format);
}

Status CompositeImage(uint8_t* destination, int32_t destination_width, int32_t destination_height,
                      PixelFormatCode destination_code, const uint8_t* source, int32_t source_width,
                      int32_t source_height, PixelFormatCode source_code, int32_t x, int32_t y,
                      uint8_t blend_mode, KernelTier tier) {
  const Size destination_size = {destination_width, destination_height};
  const Size source_size = {source_width, source_height};
  PixelFormat destination_format;
  PixelFormat source_format;
  int64_t first_row = 0;
  Status status = CheckBuffers(destination, destination_size, source, source_size);
  if (status == OVRA_OK) status = CheckCompositeFormat(destination_code, &destination_format);
  if (status == OVRA_OK) status = CheckCompositeFormat(source_code, &source_format);
  if (status == OVRA_OK) status = CheckFormatRelation(destination_format, source_format);
  if (status == OVRA_OK) {
    status = FindFirstRow(destination_format, destination_height, source_height, y, &first_row);
  }
  if (status != OVRA_OK) return status;

  const Area area =
      FindArea(destination_size, destination_format, source_size, source_format, x, first_row);
  if (source_format.channels == destination_format.channels) {
    CopyRows(source, destination, area, source_format.channels, tier);
    return OVRA_OK;
  }
  AlphaBlendRow* const blend_row =
      KernelsOf(tier).Of(WeightOfMode(blend_mode)).alpha[destination_format.channels - 1];
  for (std::ptrdiff_t row = 0; row < area.rows; ++row) {
    blend_row(source + area.SourceAt(row), destination + area.DestinationAt(row), area.pixels,
              area.Next());
  }
  return OVRA_OK;
}

Status CompositeImageWithMaskBlending(uint8_t* destination, int32_t destination_width,
                                      int32_t destination_height, const uint8_t* source,
                                      const uint8_t* mask, int32_t source_width,
                                      int32_t source_height, PixelFormatCode code, int32_t x,
                                      int32_t y, uint8_t blend_mode, KernelTier tier) {
  const Size destination_size = {destination_width, destination_height};
  const Size source_size = {source_width, source_height};
  PixelFormat format;
  int64_t first_row = 0;
  Status status = CheckBuffers(destination, destination_size, source, source_size);
  if (status == OVRA_OK) status = CheckCompositeFormat(code, &format);
  if (status == OVRA_OK) {
    status = FindFirstRow(format, destination_height, source_height, y, &first_row);
  }
  if (status != OVRA_OK) return status;

  const Area area = FindArea(destination_size, format, source_size, format, x, first_row);
  // Not one of the checks: a mask that is not read may be missing.
  if (area.rows > 0 && mask == nullptr) return OVRA_ERROR_COMPOSITE_NULL;
  MaskBlendRow* const blend_row = KernelsOf(tier).Of(WeightOfMode(blend_mode)).mask;
  const std::ptrdiff_t samples = area.pixels * static_cast<std::ptrdiff_t>(format.channels);
  for (std::ptrdiff_t row = 0; row < area.rows; ++row) {
    blend_row(source + area.SourceAt(row), mask + area.SourceAt(row),
              destination + area.DestinationAt(row), samples, area.Next());
  }
  return OVRA_OK;
}

}  // namespace ovra

OVRA_API OvraStatus OVRA_CALL OvraCompositeImage(uint8_t* destination, int32_t destination_width,
                                                 int32_t destination_height,
                                                 OvraPixelFormatCode destination_format,
                                                 const uint8_t* source, int32_t source_width,
                                                 int32_t source_height,
                                                 OvraPixelFormatCode source_format, int32_t x,
                                                 int32_t y, uint8_t blend_mode) {
  return ovra::CompositeImage(destination, destination_width, destination_height,
                              destination_format, source, source_width, source_height,
                              source_format, x, y, blend_mode, ovra::DetectedTier());
}

OVRA_API OvraStatus OVRA_CALL OvraCompositeImageWithMaskBlending(
    uint8_t* destination, int32_t destination_width, int32_t destination_height,
    const uint8_t* source, const uint8_t* mask, int32_t source_width, int32_t source_height,
    OvraPixelFormatCode format, int32_t x, int32_t y, uint8_t blend_mode) {
  return ovra::CompositeImageWithMaskBlending(destination, destination_width, destination_height,
                                              source, mask, source_width, source_height, format, x,
                                              y, blend_mode, ovra::DetectedTier());
}
