// SPDX-License-Identifier: MIT
#include "geometry/rotation/rotation.h"

#include <algorithm>
#include <cstring>

#include "core/format_rules.h"
#include "core/row_copy/kernels.h"
#include "ovra/geometry.h"

namespace ovra {
namespace {

Status CheckArguments(const uint8_t* source, const uint8_t* destination, int32_t width,
                      int32_t height, int32_t mode) {
  if (source == nullptr || destination == nullptr) return OVRA_ERROR_ROTATION_NULL;
  if (width == 0 || height == 0) return OVRA_ERROR_ROTATION_ZERO_SIZE;
  if (mode < OVRA_ROTATE_NONE || mode > OVRA_ROTATE_TRANSPOSE) return OVRA_ERROR_ROTATION_MODE;
  return OVRA_OK;
}

OrientedImage MakeOrientedImage(uint8_t* destination, int32_t width, int32_t height,
                                const PixelFormat& format, int32_t mode) {
  OrientedImage image;
  image.base = destination;
  image.orientation = OrientationOf(mode, format.BottomUp());
  image.source_width = width;
  image.source_height = height;
  image.pixel_bytes = BytesPerSample(static_cast<int32_t>(format.depth_bits)) *
                      static_cast<int32_t>(format.channels);
  image.stride = RowStride(image.orientation.transposed ? height : width, format);
  image.streaming = WritesRoundCache(image.stride, image.orientation.transposed ? width : height);
  return image;
}

std::ptrdiff_t PaddingOf(const OrientedImage& image) {
  const std::ptrdiff_t pixels =
      image.orientation.transposed ? image.source_height : image.source_width;
  return image.stride - pixels * image.pixel_bytes;
}

void ClearPadding(const OrientedImage& image) {
  const auto padding = static_cast<size_t>(PaddingOf(image));
  if (padding == 0) return;
  for (std::ptrdiff_t y = 1; y <= image.source_width; ++y) {
    std::memset(image.base + y * image.stride - padding, 0, padding);
  }
}

}  // namespace

// A turn, or a reflection in a diagonal, goes the other way round where rows are stored bottom-up.
Orientation OrientationOf(int32_t mode, bool bottom_up) {
  static constexpr Orientation kTopDown[] = {
      {false, false, false},  // OVRA_ROTATE_NONE
      {true, true, false},    // OVRA_ROTATE_QUARTER_LEFT
      {false, true, true},    // OVRA_ROTATE_HALF
      {true, false, true},    // OVRA_ROTATE_QUARTER_RIGHT
      {false, true, false},   // OVRA_ROTATE_MIRROR
      {true, true, true},     // OVRA_ROTATE_ANTI_TRANSPOSE
      {false, false, true},   // OVRA_ROTATE_FLIP
      {true, false, false},   // OVRA_ROTATE_TRANSPOSE
  };
  Orientation orientation = kTopDown[mode];
  if (bottom_up && orientation.transposed) {
    orientation.columns_reversed = !orientation.columns_reversed;
    orientation.rows_reversed = !orientation.rows_reversed;
  }
  return orientation;
}

void OrientRows(const uint8_t* rows, std::ptrdiff_t rows_stride, std::ptrdiff_t first,
                std::ptrdiff_t count, const OrientedImage& image, KernelTier tier) {
  const RotationKernels& kernels = RotationKernelsOf(tier);
  const Orientation& turn = image.orientation;
  const uint8_t* const source = turn.rows_reversed ? rows + (count - 1) * rows_stride : rows;
  const std::ptrdiff_t step = turn.rows_reversed ? -rows_stride : rows_stride;
  const std::ptrdiff_t place = turn.rows_reversed ? image.source_height - first - count : first;
  if (!turn.transposed) {
    const bool reversed = turn.columns_reversed;
    MoveRows* const move_rows =
        reversed ? kernels.reverse[image.pixel_bytes] : RowCopyKernelsOf(tier).copy;
    return move_rows(
        {.source = source,
         .source_stride = step,
         .destination = image.base + place * image.stride,
         .destination_stride = image.stride,
         .pixels = reversed ? image.source_width : image.source_width * image.pixel_bytes,
         .rows = count,
         .padding = PaddingOf(image),
         .streaming = image.streaming});
  }
  const bool upward = turn.columns_reversed;
  uint8_t* const first_row =
      upward ? image.base + (image.source_width - 1) * image.stride : image.base;
  kernels.transpose_block[image.pixel_bytes](source, step, first_row + place * image.pixel_bytes,
                                             upward ? -image.stride : image.stride, count,
                                             image.source_width, image.streaming);
  if (place + count == image.source_height) ClearPadding(image);
}

const RotationKernels& RotationKernelsOf(KernelTier tier) {
  return ForTier(tier, kRotationPlain, kRotationSse, kRotationAvx2);
}

Status ValidateRotationFormat(PixelFormatCode code, PixelFormat* format) {
  static constexpr FormatRules kRules = {
      .channels = NumberSet::Between(1, 4),
      .channels_refused = OVRA_ERROR_ROTATION_CHANNELS,
      .depths_bits = NumberSet::Between(8, 16),
      .depth_refused = OVRA_ERROR_ROTATION_DEPTH,
      .accepts_model = ModelFitsChannels,
      .model_refused = OVRA_ERROR_ROTATION_COLOR_MODEL,
      .arrangement_refused = OVRA_ERROR_ROTATION_ARRANGEMENT,
  };
  return DecodeAndCheckFormat(code, kRules, format);
}

Status RotateImage(const uint8_t* source, uint8_t* destination, int32_t width, int32_t height,
                   PixelFormatCode code, int32_t mode, KernelTier tier) {
  PixelFormat format;
  Status status = CheckArguments(source, destination, width, height, mode);
  if (status == OVRA_OK) status = ValidateRotationFormat(code, &format);
  if (status != OVRA_OK) return status;
  const bool onto_itself = mode == OVRA_ROTATE_NONE && source == destination;
  if (width < 0 || height < 0 || onto_itself) return OVRA_OK;

  const OrientedImage image = MakeOrientedImage(destination, width, height, format, mode);
  const std::ptrdiff_t block_rows =
      image.orientation.transposed ? RotationKernelsOf(tier).block_rows : height;
  const std::ptrdiff_t stride = RowStride(width, format);
  for (std::ptrdiff_t place = 0; place < height; place += block_rows) {
    const std::ptrdiff_t count = std::min(block_rows, height - place);
    const std::ptrdiff_t first = image.orientation.rows_reversed ? height - place - count : place;
    OrientRows(source + first * stride, stride, first, count, image, tier);
  }
  return OVRA_OK;
}

}  // namespace ovra

OVRA_API OvraStatus OVRA_CALL OvraRotateImage(const uint8_t* source, uint8_t* destination,
                                              int32_t width, int32_t height,
                                              OvraPixelFormatCode format, int32_t mode) {
  return ovra::RotateImage(source, destination, width, height, format, mode, ovra::DetectedTier());
}
