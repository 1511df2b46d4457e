// SPDX-License-Identifier: MIT
#include "resample/resize_rotate/resize_rotate.h"

#include <algorithm>
#include <utility>

#include "geometry/rotation/rotation.h"
#include "ovra/geometry.h"
#include "ovra/resample.h"
#include "resample/kernel_table.h"
#include "resample/row_stream.h"

namespace ovra {
namespace {

// So many rows of a strip fill whole cache lines of the destination at every pixel size.
constexpr int32_t kStripRows = 64;

Status CheckMode(int32_t mode) {
  const bool known = mode >= OVRA_ROTATE_NONE && mode <= OVRA_ROTATE_TRANSPOSE;
  return known ? OVRA_OK : OVRA_ERROR_ROTATION_MODE;
}

Status CheckImages(const ResizeImages& images) {
  const bool complete = images.source != nullptr && images.destination != nullptr;
  return complete ? OVRA_OK : OVRA_ERROR_RESIZE_NULL_IMAGE;
}

// The shape of the resize alone, whose destination is upright.
ResizeShape UprightShape(const ResizeImages& images, int32_t mode) {
  ResizeShape shape = images.shape;
  if (mode % 2 != 0) std::swap(shape.destination.width, shape.destination.height);
  return shape;
}

// Writes rows of the upright picture to their places, as they are made.
class TurnedImage {
 public:
  TurnedImage(const ResizeImages& images, const ResizePlan& plan, int32_t mode, KernelTier tier)
      : images_(images), plan_(plan), tier_(tier) {
    const ImageSize upright = plan.shape.destination;
    image_ = {images.destination,
              RowStride(images.shape.destination.width, plan.format),
              OrientationOf(mode, plan.format.BottomUp()),
              upright.width,
              upright.height,
              RowStride(1, static_cast<int32_t>(plan.format.channels),
                        static_cast<int32_t>(plan.format.depth_bits), 1)};
  }

  Status Write() {
    RowStream rows;
    const Status status = rows.Prepare(plan_, RowMemory::kAtOnce, tier_);
    if (status != OVRA_OK) return status;
    if (!image_.orientation.transposed && !image_.orientation.columns_reversed) {
      WriteInPlace(&rows);
      return OVRA_OK;
    }
    return WriteFromStrips(&rows);
  }

 private:
  SourceRows AllSourceRows() const { return {images_.source, 0, plan_.shape.source.height}; }

  // Rows are made where they belong, from the first to the last or the other way round.
  void WriteInPlace(RowStream* rows) {
    const std::ptrdiff_t height = image_.source_height;
    const std::ptrdiff_t packed = image_.source_width * image_.pixel_bytes;
    const bool backward = image_.orientation.rows_reversed;
    rows->Run(AllSourceRows(), image_.base + (backward ? (height - 1) * image_.stride : 0),
              backward ? -image_.stride : image_.stride, plan_.shape.destination.height);
    for (std::ptrdiff_t y = 0; y < height; ++y) {
      uint8_t* const row = image_.base + y * image_.stride;
      std::fill(row + packed, row + image_.stride, uint8_t{0});
    }
  }

  // Transposed rows fill a strip, reversed ones go one by one.
  Status WriteFromStrips(RowStream* rows) {
    const int32_t strip_rows = image_.orientation.transposed ? kStripRows : 1;
    const uint64_t row_bytes =
        static_cast<uint64_t>(image_.source_width) * static_cast<uint64_t>(image_.pixel_bytes);
    RowRing<uint8_t> strip;
    if (!strip.Allocate(row_bytes, static_cast<uint64_t>(strip_rows))) return OVRA_ERROR_NO_MEMORY;
    const std::ptrdiff_t spacing = strip_rows == 1 ? 0 : strip.Row(1) - strip.Row(0);
    while (rows->Written() < plan_.shape.destination.height) {
      const int32_t first = rows->Written();
      rows->Run(AllSourceRows(), strip.Row(0), spacing, strip_rows);
      OrientRows(strip.Row(0), spacing, first, rows->Written() - first, image_, tier_);
    }
    return OVRA_OK;
  }

  const ResizeImages& images_;
  const ResizePlan& plan_;
  KernelTier tier_;
  OrientedImage image_;
};

// Where the resize copies, the result is the turned source.
Status Turn(const ResizeImages& images, const ResizePlan& plan, int32_t mode, KernelTier tier) {
  if (plan.method == ResizeMethod::kCopy) {
    return RotateImage(images.source, images.destination, plan.shape.source.width,
                       plan.shape.source.height, images.format, mode, tier);
  }
  return TurnedImage(images, plan, mode, tier).Write();
}

}  // namespace

Status ResizeRotateImage(const ResizeImages& images, int32_t mode, KernelTier tier) {
  PixelFormat format;
  ResizePlan plan;
  Status status = DecodePixelFormat(images.format, &format);
  if (status == OVRA_OK) status = CheckMode(mode);
  if (status != OVRA_OK) return status;
  const ResizeShape shape = UprightShape(images, mode);
  status = CheckResizeNotEmpty(shape);
  if (status == OVRA_OK) status = CheckImages(images);
  if (status == OVRA_OK) status = PlanByRatio(shape, format, ResizeKernelTable(), &plan);
  return status == OVRA_OK ? Turn(images, plan, mode, tier) : status;
}

Status ResizeRotateImageCore(const ResizeImages& images, const float* table, KernelSupport support,
                             int32_t mode, KernelTier tier) {
  PixelFormat format;
  ResizePlan plan;
  const ResizeKernel kernel = {table, support, support};
  Status status = CheckImages(images);
  if (status == OVRA_OK) status = CheckResizeKernel(kernel);
  if (status == OVRA_OK) status = CheckMode(mode);
  if (status == OVRA_OK) status = DecodePixelFormat(images.format, &format);
  if (status == OVRA_OK) status = CheckResizeFormat(format);
  if (status != OVRA_OK) return status;
  const ResizeShape shape = UprightShape(images, mode);
  const double ratio = SizeRatio(shape);
  status = PlanEngine(shape, format, {ratio, ratio}, kernel, &plan);
  return status == OVRA_OK ? Turn(images, plan, mode, tier) : status;
}

Status SmallResizeRotateImage(const ResizeImages& images, const float* table, int32_t mode,
                              KernelTier tier) {
  PixelFormat format;
  ResizePlan plan;
  Status status = CheckImages(images);
  if (status != OVRA_OK) return status;
  if (table == nullptr) return OVRA_ERROR_RESIZE_NULL_TABLE;
  status = CheckMode(mode);
  if (status == OVRA_OK) status = DecodePixelFormat(images.format, &format);
  if (status == OVRA_OK) status = CheckResizeFormat(format);
  if (status != OVRA_OK) return status;
  const ResizeShape shape = UprightShape(images, mode);
  status = PlanReduction(shape, format, SizeRatio(shape), table, &plan);
  return status == OVRA_OK ? Turn(images, plan, mode, tier) : status;
}

}  // namespace ovra

OVRA_API OvraStatus OVRA_CALL OvraResizeRotateImageCore(
    const uint8_t* source, int32_t source_width, int32_t source_height, uint8_t* destination,
    int32_t destination_width, int32_t destination_height, OvraPixelFormatCode format, int32_t x,
    int32_t y, int32_t width, int32_t height, const float* kernel_table, float stretch,
    int32_t taps, int32_t mode) {
  return ovra::ResizeRotateImageCore({source,
                                      destination,
                                      format,
                                      {{source_width, source_height},
                                       {destination_width, destination_height},
                                       {x, y, width, height}}},
                                     kernel_table, {stretch, taps}, mode, ovra::DetectedTier());
}

OVRA_API OvraStatus OVRA_CALL OvraResizeRotateImageROI(
    const uint8_t* source, int32_t source_width, int32_t source_height, uint8_t* destination,
    int32_t destination_width, int32_t destination_height, OvraPixelFormatCode format, int32_t x,
    int32_t y, int32_t width, int32_t height, int32_t mode) {
  return ovra::ResizeRotateImage({source,
                                  destination,
                                  format,
                                  {{source_width, source_height},
                                   {destination_width, destination_height},
                                   {x, y, width, height}}},
                                 mode, ovra::DetectedTier());
}

OVRA_API OvraStatus OVRA_CALL OvraSmallResizeRotateImage(
    const uint8_t* source, int32_t source_width, int32_t source_height, uint8_t* destination,
    int32_t destination_width, int32_t destination_height, OvraPixelFormatCode format, int32_t x,
    int32_t y, int32_t width, int32_t height, const float* kernel_table, int32_t mode) {
  return ovra::SmallResizeRotateImage({source,
                                       destination,
                                       format,
                                       {{source_width, source_height},
                                        {destination_width, destination_height},
                                        {x, y, width, height}}},
                                      kernel_table, mode, ovra::DetectedTier());
}
