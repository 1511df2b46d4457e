// SPDX-License-Identifier: MIT
#include "resample/resize_checks.h"

namespace ovra {

Status CheckResizeFormat(PixelFormatCode code, PixelFormat* format) {
  constexpr uint32_t kMaxChannels = 4;
  constexpr uint32_t kMaxDepthBits = 16;
  const Status status = DecodePixelFormat(code, format);
  if (status != OVRA_OK) return status;
  if (format->channels < 1 || format->channels > kMaxChannels) return OVRA_ERROR_RESIZE_CHANNELS;
  if (format->depth_bits > kMaxDepthBits) return OVRA_ERROR_RESIZE_DEPTH;
  if (!ColorModelFitsChannels(format->color_model, format->channels)) {
    return OVRA_ERROR_RESIZE_COLOR_MODEL;
  }
  if (format->arrangement != 0) return OVRA_ERROR_RESIZE_ARRANGEMENT;
  return OVRA_OK;
}

Status CheckResizeNotEmpty(ImageSize source, const ResizeRegion& region) {
  const bool empty = source.width == 0 || region.width == 0 || region.height == 0;
  return empty ? OVRA_ERROR_RESIZE_ZERO_SIZE : OVRA_OK;
}

Status CheckResizeRegion(ImageSize source, ImageSize destination, const ResizeRegion& region,
                         int32_t horizontal_taps, int32_t vertical_taps) {
  if (source.width < horizontal_taps || source.height < vertical_taps) {
    return OVRA_ERROR_RESIZE_SOURCE_SMALL;
  }
  if (destination.width < horizontal_taps || destination.height < vertical_taps) {
    return OVRA_ERROR_RESIZE_DESTINATION_SMALL;
  }
  if (region.width < horizontal_taps || region.height < vertical_taps ||
      region.width > source.width || region.height > source.height) {
    return OVRA_ERROR_RESIZE_REGION_SIZE;
  }
  if (int64_t{region.x} + region.width > source.width ||
      int64_t{region.y} + region.height > source.height) {
    return OVRA_ERROR_RESIZE_REGION_OUTSIDE;
  }
  return OVRA_OK;
}

}  // namespace ovra
