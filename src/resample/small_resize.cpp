// SPDX-License-Identifier: MIT
#include "resample/small_resize.h"

#include <algorithm>

#include "core/rows.h"
#include "core/work_memory.h"
#include "ovra/resample.h"
#include "resample/reduction_axis.h"
#include "resample/resize_checks.h"
#include "resample/resize_geometry.h"
#include "resample/small_resize_kernels.h"

namespace ovra {
namespace {

// Samples of a row that the vertical pass takes at a time: narrow enough for the rows under one
// stretched kernel to stay in the second-level cache while the next destination rows use them again.
constexpr std::ptrdiff_t kTileSamples = 1024;

struct Picture {
  const uint8_t* source;
  std::ptrdiff_t source_stride;
  uint8_t* destination;
  std::ptrdiff_t destination_stride;
};

Status CheckSizes(ImageSize source, ImageSize destination, const ResizeRegion& region) {
  const Status status = CheckResizeNotEmpty(source, region);
  if (status != OVRA_OK) return status;
  if (destination.width <= 0 || destination.height <= 0) {
    return OVRA_ERROR_RESIZE_DESTINATION_SMALL;
  }
  if (region.width < 0 || region.height < 0 || region.width > source.width ||
      region.height > source.height) {
    return OVRA_ERROR_RESIZE_REGION_SIZE;
  }
  if (region.x < 0 || region.y < 0 || region.x > source.width - region.width ||
      region.y > source.height - region.height) {
    return OVRA_ERROR_RESIZE_REGION_OUTSIDE;
  }
  return OVRA_OK;
}

// One call: a group of destination rows is weighed vertically, tile by tile, and then horizontally.
template <class Sample>
class Reduction {
 public:
  Reduction(const Picture& picture, const PixelFormat& format, ImageSize destination,
            KernelTier tier)
      : picture_(picture),
        format_(format),
        destination_(destination),
        kernels_(SelectReductionKernels<Sample>(tier)) {}

  Status Run(ImageSize source, const ResizeRegion& region, const float* kernel_table) {
    const double scale = SizeRatio(destination_, region);
    const int64_t first_row = FirstRegionRow(source.height, region, format_.BottomUp());
    if (!columns_.Build(destination_.width, source.width, region.x, region.width, scale,
                        kernel_table) ||
        !rows_.Build(destination_.height, source.height, first_row, region.height, scale,
                     kernel_table)) {
      return OVRA_ERROR_NO_MEMORY;
    }
    const auto channels = static_cast<int32_t>(format_.channels);
    const int64_t columns = columns_.Last() - columns_.First() + 1;
    row_samples_ = static_cast<std::ptrdiff_t>(columns) * channels;
    const auto group_samples =
        static_cast<uint64_t>(columns) * static_cast<uint64_t>(channels) * kReductionRowGroup;
    if (!intermediate_.Allocate(group_samples) || !scratch_.Allocate(group_samples)) {
      return OVRA_ERROR_NO_MEMORY;
    }
    const HorizontalReduction job = {&columns_,        destination_.width,
                                     columns_.First(), columns,
                                     channels,         static_cast<int32_t>(format_.MaxSample()),
                                     scratch_.data()};
    for (int32_t row = 0; row < destination_.height; row += kReductionRowGroup) {
      ReduceGroup(row, job);
    }
    return OVRA_OK;
  }

 private:
  void ReduceGroup(int32_t first_row, const HorizontalReduction& job) {
    const int32_t rows = std::min(kReductionRowGroup, destination_.height - first_row);
    for (std::ptrdiff_t tile = 0; tile < row_samples_; tile += kTileSamples) {
      for (int32_t row = 0; row < rows; ++row) ReduceTile(first_row + row, row, tile);
    }
    const int32_t* intermediate[kReductionRowGroup];
    Sample* destination[kReductionRowGroup];
    for (int32_t row = 0; row < kReductionRowGroup; ++row) {
      const int32_t used = std::min(row, rows - 1);  // an incomplete group repeats its last row
      intermediate[row] = intermediate_.data() + used * row_samples_;
      destination[row] = RowAt<Sample>(picture_.destination, picture_.destination_stride,
                                       std::ptrdiff_t{first_row} + used);
    }
    kernels_.horizontal(intermediate, job, destination);
  }

  void ReduceTile(int32_t destination_row, int32_t group_row, std::ptrdiff_t tile) {
    const ReductionAxis::Taps taps = rows_[destination_row];
    const auto first_sample =
        static_cast<std::ptrdiff_t>(columns_.First()) * static_cast<int32_t>(format_.channels);
    const auto* row = RowAt<Sample>(picture_.source, picture_.source_stride,
                                    static_cast<std::ptrdiff_t>(taps.first));
    kernels_.vertical(row + first_sample + tile, picture_.source_stride, taps,
                      std::min(kTileSamples, row_samples_ - tile),
                      intermediate_.data() + group_row * row_samples_ + tile);
  }

  Picture picture_;
  PixelFormat format_;
  ImageSize destination_;
  ReductionKernels<Sample> kernels_;
  ReductionAxis columns_;
  ReductionAxis rows_;
  std::ptrdiff_t row_samples_ = 0;
  WorkMemory<int32_t> intermediate_;
  WorkMemory<double> scratch_;
};

}  // namespace

Status SmallResizeImage(const uint8_t* source, int32_t source_width, int32_t source_height,
                        uint8_t* destination, int32_t destination_width, int32_t destination_height,
                        PixelFormatCode format_code, int32_t x, int32_t y, int32_t width,
                        int32_t height, const float* kernel_table, KernelTier tier) {
  if (source == nullptr || destination == nullptr) return OVRA_ERROR_RESIZE_NULL_IMAGE;
  if (kernel_table == nullptr) return OVRA_ERROR_RESIZE_NULL_TABLE;
  PixelFormat format;
  Status status = CheckResizeFormat(format_code, &format);
  if (status != OVRA_OK) return status;
  const ImageSize source_size = {source_width, source_height};
  const ImageSize destination_size = {destination_width, destination_height};
  const ResizeRegion region = {x, y, width, height};
  status = CheckSizes(source_size, destination_size, region);
  if (status != OVRA_OK) return status;

  const Picture picture = {source, RowStride(source_width, format), destination,
                           RowStride(destination_width, format)};
  if (format.depth_bits == 8) {
    return Reduction<uint8_t>(picture, format, destination_size, tier)
        .Run(source_size, region, kernel_table);
  }
  return Reduction<uint16_t>(picture, format, destination_size, tier)
      .Run(source_size, region, kernel_table);
}

}  // namespace ovra

OVRA_API OvraStatus OVRA_CALL OvraSmallResizeImage(
    const uint8_t* source, int32_t source_width, int32_t source_height, uint8_t* destination,
    int32_t destination_width, int32_t destination_height, OvraPixelFormatCode format, int32_t x,
    int32_t y, int32_t width, int32_t height, const float* kernel_table) {
  return ovra::SmallResizeImage(source, source_width, source_height, destination, destination_width,
                                destination_height, format, x, y, width, height, kernel_table,
                                ovra::DetectedTier());
}
