// SPDX-License-Identifier: MIT
#include "geometry/rotation.h"

#include "geometry/rotation_kernels.h"
#include "ovra/geometry.h"

namespace ovra {
namespace {

constexpr uint32_t kMaxDepthBits = 16;

Status CheckArguments(const uint8_t* source, const uint8_t* destination, int32_t width,
                      int32_t height, PixelFormatCode format, int32_t mode) {
  if (source == nullptr || destination == nullptr) return OVRA_ERROR_ROTATION_NULL;
  if (width == 0 || height == 0) return OVRA_ERROR_ROTATION_ZERO_SIZE;
  if (mode < OVRA_ROTATE_NONE || mode > OVRA_ROTATE_TRANSPOSE) return OVRA_ERROR_ROTATION_MODE;
  return ValidateRotationFormat(format);
}

// The mapping of rows and columns in memory that has the effect of a mode on the picture as seen.
// A turn, or a reflection in a diagonal, goes the other way round where rows are stored bottom-up.
Orientation OrientationOf(int32_t mode, bool bottom_up) {
  switch (mode) {
    case OVRA_ROTATE_QUARTER_LEFT:
      return bottom_up ? Orientation::kQuarterRight : Orientation::kQuarterLeft;
    case OVRA_ROTATE_HALF:
      return Orientation::kHalfTurn;
    case OVRA_ROTATE_QUARTER_RIGHT:
      return bottom_up ? Orientation::kQuarterLeft : Orientation::kQuarterRight;
    case OVRA_ROTATE_MIRROR:
      return Orientation::kMirror;
    case OVRA_ROTATE_ANTI_TRANSPOSE:
      return bottom_up ? Orientation::kTranspose : Orientation::kAntiTranspose;
    case OVRA_ROTATE_FLIP:
      return Orientation::kFlipVertical;
    case OVRA_ROTATE_TRANSPOSE:
      return bottom_up ? Orientation::kAntiTranspose : Orientation::kTranspose;
    default:
      return Orientation::kCopy;
  }
}

}  // namespace

Status ValidateRotationFormat(PixelFormatCode code) {
  PixelFormat format;
  const Status status = DecodePixelFormat(code, &format);
  if (status != OVRA_OK) return status;
  if (format.channels < 1 || format.channels > 4) return OVRA_ERROR_ROTATION_CHANNELS;
  if (format.depth_bits > kMaxDepthBits) return OVRA_ERROR_ROTATION_DEPTH;
  if (!ColorModelFitsChannels(format.color_model, format.channels)) {
    return OVRA_ERROR_ROTATION_COLOR_MODEL;
  }
  if (format.arrangement != 0) return OVRA_ERROR_ROTATION_ARRANGEMENT;
  return OVRA_OK;
}

Status RotateImage(const uint8_t* source, uint8_t* destination, int32_t width, int32_t height,
                   PixelFormatCode code, int32_t mode, KernelTier tier) {
  Status status = CheckArguments(source, destination, width, height, code, mode);
  if (status != OVRA_OK) return status;
  if (width < 0 || height < 0) return OVRA_OK;
  PixelFormat format;
  status = DecodePixelFormat(code, &format);
  if (status != OVRA_OK) return status;
  const int32_t bytes_per_sample = BytesPerSample(static_cast<int32_t>(format.depth_bits));
  OrientKernel* const orient =
      SelectOrient(OrientationOf(mode, format.BottomUp()), bytes_per_sample, tier);
  return orient(source, destination, width, height, static_cast<int32_t>(format.channels),
                static_cast<int32_t>(format.alignment_bytes));
}

}  // namespace ovra

OVRA_API OvraStatus OVRA_CALL OvraRotateImage(const uint8_t* src, uint8_t* dst, int32_t width,
                                              int32_t height, OvraPixelFormatCode format,
                                              int32_t mode) {
  return ovra::RotateImage(src, dst, width, height, format, mode, ovra::DetectedTier());
}
