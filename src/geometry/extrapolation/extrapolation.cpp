// SPDX-License-Identifier: MIT
#include "geometry/extrapolation/extrapolation.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "core/format_rules.h"
#include "core/row_copy/kernels.h"
#include "ovra/geometry.h"

namespace ovra {
namespace {

constexpr uint32_t kMaxChannels = 4;

bool AcceptsColorModel(const PixelFormat& format) {
  return format.color_model <= OVRA_MODEL_YCC || format.color_model >= OVRA_MODEL_RGBA;
}

// Extents along one axis, formed in 64 bits so that no sum wraps round.
bool Fits(uint32_t source_size, int32_t offset, uint32_t destination_size) {
  return offset >= 0 && uint64_t{source_size} + static_cast<uint64_t>(offset) <= destination_size;
}

// Where the source stands on the canvas, in pixels; rows are counted in memory order.
struct Placement {
  int64_t source_width;
  int64_t source_height;
  int64_t destination_width;
  int64_t destination_height;
  int64_t offset_x;
  int64_t offset_y;
};

// The canvas is written in strips of so many rows: what is left of the source in a strip is still in
// the processor's table of pages when what is right of it is written.
constexpr int64_t kStripRows = 32;

// The fill as samples of the image.
template <class Sample>
struct LimitedPixel {
  LimitedPixel(const uint16_t* fill, const PixelFormat& format) {
    for (uint32_t c = 0; c < std::min(format.channels, kMaxChannels); ++c) {
      samples[c] = static_cast<Sample>(std::min<uint32_t>(fill[c], format.MaxSample()));
    }
  }

  Sample samples[kMaxChannels] = {};
};

template <class Sample>
class Canvas {
 public:
  Canvas(uint8_t* destination, const Placement& place, const PixelFormat& format,
         const uint16_t* fill, KernelTier tier)
      : destination_(destination),
        place_(place),
        pixel_bytes_(static_cast<std::ptrdiff_t>(format.channels * sizeof(Sample))),
        source_stride_(RowStride(place.source_width, format)),
        stride_(RowStride(place.destination_width, format)),
        streaming_(WritesRoundCache(stride_, place.destination_height)),
        kernels_(RowCopyKernelsOf(tier)),
        pattern_(LimitedPixel<Sample>(fill, format).samples, pixel_bytes_) {}

  void Write(const uint8_t* source) const {
    const int64_t below = place_.offset_y + place_.source_height;
    Fill(0, place_.destination_width, 0, place_.offset_y);
    for (int64_t y = 0; y < place_.source_height; y += kStripRows) {
      WriteStrip(source, y, std::min(kStripRows, place_.source_height - y));
    }
    Fill(0, place_.destination_width, below, place_.destination_height - below);
    ClearPadding();
  }

 private:
  uint8_t* At(int64_t x, int64_t y) const { return destination_ + y * stride_ + x * pixel_bytes_; }

  // The strip of `rows` source rows from row y on, with what stands beside it.
  void WriteStrip(const uint8_t* source, int64_t y, int64_t rows) const {
    const int64_t row = place_.offset_y + y;
    const int64_t right = place_.offset_x + place_.source_width;
    Fill(0, place_.offset_x, row, rows);
    kernels_.copy({.source = source + y * source_stride_,
                   .source_stride = source_stride_,
                   .destination = At(place_.offset_x, row),
                   .destination_stride = stride_,
                   .pixels = static_cast<std::ptrdiff_t>(place_.source_width) * pixel_bytes_,
                   .rows = static_cast<std::ptrdiff_t>(rows),
                   .padding = 0,
                   .streaming = streaming_});
    Fill(right, place_.destination_width - right, row, rows);
  }

  void Fill(int64_t x, int64_t columns, int64_t y, int64_t rows) const {
    if (columns == 0) return;
    kernels_.fill({.destination = At(x, y),
                   .stride = stride_,
                   .pixels = static_cast<std::ptrdiff_t>(columns),
                   .rows = static_cast<std::ptrdiff_t>(rows),
                   .pattern = pattern_,
                   .streaming = streaming_});
  }

  // Of two-byte samples twice the padding is cleared: what falls on the next row is the row's, but
  // behind the last row the interface reserves as many bytes.
  void ClearPadding() const {
    const int64_t packed = place_.destination_width * pixel_bytes_;
    const auto padding = static_cast<size_t>(stride_ - packed);
    if (padding == 0) return;
    for (int64_t y = 0; y < place_.destination_height; ++y) {
      const bool last = y == place_.destination_height - 1;
      std::memset(At(0, y) + packed, 0, last ? padding * sizeof(Sample) : padding);
    }
  }

  uint8_t* destination_;
  const Placement& place_;
  std::ptrdiff_t pixel_bytes_;
  std::ptrdiff_t source_stride_;
  std::ptrdiff_t stride_;
  bool streaming_;
  const RowCopyKernels& kernels_;
  PixelPattern pattern_;
};

}  // namespace

Status ValidateExtrapolationFormat(PixelFormatCode code, PixelFormat* format) {
  static constexpr FormatRules kRules = {
      .channels = NumberSet::Of(1, 3, 4),
      .channels_refused = OVRA_ERROR_EXTRAPOLATION_CHANNELS,
      .depths_bits = NumberSet::Between(8, 16),
      .depth_refused = OVRA_ERROR_EXTRAPOLATION_DEPTH,
      .accepts_model = AcceptsColorModel,
      .model_refused = OVRA_ERROR_EXTRAPOLATION_COLOR_MODEL,
      .arrangement_refused = OVRA_ERROR_EXTRAPOLATION_ARRANGEMENT,
  };
  return DecodeAndCheckFormat(code, kRules, format);
}

Status ExtrapolateImage(const uint8_t* source, uint32_t source_width, uint32_t source_height,
                        uint8_t* destination, uint32_t destination_width,
                        uint32_t destination_height, PixelFormatCode code, int32_t offset_x,
                        int32_t offset_y, const uint16_t* fill, KernelTier tier) {
  if (source == nullptr || destination == nullptr) return OVRA_ERROR_EXTRAPOLATION_NULL;
  if (source == destination) return OVRA_ERROR_EXTRAPOLATION_IN_PLACE;
  if (source_width == 0 || destination_height == 0) return OVRA_ERROR_EXTRAPOLATION_SIZE;
  if (!Fits(source_width, offset_x, destination_width) ||
      !Fits(source_height, offset_y, destination_height)) {
    return OVRA_ERROR_EXTRAPOLATION_SIZE;
  }
  if (fill == nullptr) return OVRA_ERROR_EXTRAPOLATION_NULL_FILL;
  PixelFormat format;
  const Status status = ValidateExtrapolationFormat(code, &format);
  if (status != OVRA_OK) return status;
  const int64_t rows_below = int64_t{destination_height} - source_height - offset_y;
  // Bottom-up rows count the offset from the other end; it must be a signed 32-bit number there.
  if (format.BottomUp() && rows_below > INT32_MAX) return OVRA_ERROR_EXTRAPOLATION_SIZE;
  const Placement place = {source_width,      source_height,
                           destination_width, destination_height,
                           offset_x,          format.BottomUp() ? rows_below : offset_y};
  if (format.depth_bits > 8) {
    Canvas<uint16_t>(destination, place, format, fill, tier).Write(source);
  } else {
    Canvas<uint8_t>(destination, place, format, fill, tier).Write(source);
  }
  return OVRA_OK;
}

}  // namespace ovra

OVRA_API OvraStatus OVRA_CALL OvraExtrapolateImage(const uint8_t* source, uint32_t source_width,
                                                   uint32_t source_height, uint8_t* destination,
                                                   uint32_t destination_width,
                                                   uint32_t destination_height,
                                                   OvraPixelFormatCode format, int32_t offset_x,
                                                   int32_t offset_y, const uint16_t* fill) {
  return ovra::ExtrapolateImage(source, source_width, source_height, destination, destination_width,
                                destination_height, format, offset_x, offset_y, fill,
                                ovra::DetectedTier());
}
