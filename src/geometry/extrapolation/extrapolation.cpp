// SPDX-License-Identifier: MIT
#include "geometry/extrapolation/extrapolation.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "core/format_rules.h"
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

// Writes one pixel `count` times and answers the end of what it wrote. Doubling what stands there
// already runs at the speed of memory, so that this operation has no tiers.
uint8_t* FillPixels(uint8_t* begin, int64_t count, const void* pixel, size_t pixel_bytes) {
  constexpr size_t kMaxCopy = 4096;  // the copied bytes stay in the first-level cache
  const size_t bytes = static_cast<size_t>(count) * pixel_bytes;
  if (bytes == 0) return begin;
  std::memcpy(begin, pixel, pixel_bytes);
  for (size_t done = pixel_bytes; done < bytes;) {
    const size_t whole_pixels = std::min(done, kMaxCopy / pixel_bytes * pixel_bytes);
    const size_t copied = std::min(whole_pixels, bytes - done);
    std::memcpy(begin + done, begin, copied);
    done += copied;
  }
  return begin + bytes;
}

template <class Sample>
void PlaceOnCanvas(const uint8_t* source, uint8_t* destination, const Placement& place,
                   const PixelFormat& format, const uint16_t* fill) {
  Sample pixel[kMaxChannels] = {};
  for (uint32_t c = 0; c < format.channels; ++c) {
    pixel[c] = static_cast<Sample>(std::min<uint32_t>(fill[c], format.MaxSample()));
  }
  const size_t pixel_bytes = format.channels * sizeof(Sample);
  const std::ptrdiff_t source_stride = RowStride(place.source_width, format);
  const std::ptrdiff_t stride = RowStride(place.destination_width, format);
  const size_t source_bytes = static_cast<size_t>(place.source_width) * pixel_bytes;
  const size_t packed_bytes = static_cast<size_t>(place.destination_width) * pixel_bytes;
  const size_t padding = static_cast<size_t>(stride) - packed_bytes;
  const int64_t right = place.destination_width - place.offset_x - place.source_width;
  for (int64_t y = 0; y < place.destination_height; ++y) {
    uint8_t* out = destination + y * stride;
    const int64_t source_y = y - place.offset_y;
    if (source_y < 0 || source_y >= place.source_height) {
      out = FillPixels(out, place.destination_width, pixel, pixel_bytes);
    } else {
      out = FillPixels(out, place.offset_x, pixel, pixel_bytes);
      std::memcpy(out, source + source_y * source_stride, source_bytes);
      out = FillPixels(out + source_bytes, right, pixel, pixel_bytes);
    }
    // As many samples as the padding has bytes: of two-byte samples twice the padding. The surplus
    // falls on the next row, which is written after it, and behind the last row on the bytes that
    // the interface reserves there.
    std::memset(out, 0, padding * sizeof(Sample));
  }
}

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
                        int32_t offset_y, const uint16_t* fill) {
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
    PlaceOnCanvas<uint16_t>(source, destination, place, format, fill);
  } else {
    PlaceOnCanvas<uint8_t>(source, destination, place, format, fill);
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
                                destination_height, format, offset_x, offset_y, fill);
}
