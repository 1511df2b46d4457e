// SPDX-License-Identifier: MIT
#include "image.h"

#include <string>

#include "error.h"

namespace ovra_host {
namespace {

constexpr uint32_t kLastDepthCode = 8;      // 16 bits
constexpr uint32_t kLastChannelCode = 3;    // 4 channels
constexpr uint32_t kLastAlignmentCode = 2;  // 4 bytes
constexpr uint32_t kArrangementMask = 0x000F0000;

size_t CheckedStride(int64_t width, int64_t height, OvraPixelFormatCode format) {
  if (width < 1 || height < 1 || width > kMaxSide || height > kMaxSide) {
    throw Error("a picture of " + std::to_string(width) + " x " + std::to_string(height) +
                " pixels is not possible; sides are 1 to " + std::to_string(kMaxSide));
  }
  const uint32_t alignment_code = format >> 20 & 15;
  if ((format & 15) > kLastDepthCode || (format >> 4 & 15) > kLastChannelCode ||
      alignment_code > kLastAlignmentCode || (format & kArrangementMask) != 0) {
    throw Error("pixel format word " + std::to_string(format) + " is not one of a picture");
  }
  const int64_t bytes_per_pixel = int64_t{(format & 15) > 0 ? 2 : 1} * ((format >> 4 & 15) + 1);
  const int64_t alignment = int64_t{1} << alignment_code;
  const int64_t stride = (width * bytes_per_pixel + alignment - 1) / alignment * alignment;
  if (stride * height > kMaxImageBytes) {
    throw Error("a picture of " + std::to_string(width) + " x " + std::to_string(height) +
                " pixels would take more than " + std::to_string(kMaxImageBytes >> 20) + " MiB");
  }
  return static_cast<size_t>(stride);
}

}  // namespace

Image::Image(int64_t width, int64_t height, OvraPixelFormatCode format)
    : width_(static_cast<int32_t>(width)),
      height_(static_cast<int32_t>(height)),
      format_(format),
      stride_(CheckedStride(width, height, format)),
      bytes_(stride_ * static_cast<size_t>(height)) {}

OvraPixelFormatCode FileFormat(uint32_t depth_bits, uint32_t channels) {
  const OvraColorModel model = channels == 1   ? OVRA_MODEL_GREY
                               : channels == 3 ? OVRA_MODEL_RGB
                                               : OVRA_MODEL_RGBA;
  return OvraMakePixelFormat(depth_bits, channels, model, 1, OVRA_ROWS_TOP_DOWN);
}

}  // namespace ovra_host
