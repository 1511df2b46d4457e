// SPDX-License-Identifier: MIT
#include "resample/resize/resize.h"

#include <cstring>

#include "ovra/resample.h"
#include "resample/kernel_table.h"
#include "resample/row_stream.h"

namespace ovra {
namespace {

bool HasImages(const ResizeImages& images) {
  return images.source != nullptr && images.destination != nullptr;
}

// As many rows as the region has are copied, from the first one in memory on, wherever the region
// lies.
void CopyRows(const ResizeImages& images, const ResizePlan& plan) {
  const std::ptrdiff_t bytes = plan.SourceStride() * plan.shape.region.height;
  std::memcpy(images.destination, images.source, static_cast<size_t>(bytes));
}

}  // namespace

Status CheckResizeCore(PixelFormatCode code, const ResizeKernel& kernel, PixelFormat* format) {
  Status status = CheckResizeKernel(kernel);
  if (status == OVRA_OK) status = DecodePixelFormat(code, format);
  return status == OVRA_OK ? CheckResizeFormat(*format) : status;
}

Status ResizeWhole(const ResizeImages& images, const ResizePlan& plan, KernelTier tier) {
  if (plan.method == ResizeMethod::kCopy) {
    CopyRows(images, plan);
    return OVRA_OK;
  }
  RowStream rows;
  const Status status = rows.Prepare(plan, RowMemory::kRowByRow, tier);
  if (status != OVRA_OK) return status;
  rows.Run({images.source, 0, plan.shape.source.height}, images.destination,
           plan.DestinationStride(), plan.shape.destination.height);
  return OVRA_OK;
}

Status ResizeImage(const ResizeImages& images, KernelTier tier) {
  PixelFormat format;
  ResizePlan plan;
  // The format word is looked at before anything else.
  Status status = DecodePixelFormat(images.format, &format);
  if (status == OVRA_OK) status = CheckResizeNotEmpty(images.shape);
  if (status != OVRA_OK) return status;
  if (!HasImages(images)) return OVRA_ERROR_RESIZE_NULL_IMAGE;
  status = PlanByRatio(images.shape, format, ResizeKernelTable(), &plan);
  return status == OVRA_OK ? ResizeWhole(images, plan, tier) : status;
}

Status ResizeImageVar(const ResizeImages& images, ResizeFactors factors, KernelTier tier) {
  PixelFormat format;
  ResizePlan plan;
  Status status = DecodePixelFormat(images.format, &format);
  if (status != OVRA_OK) return status;
  if (factors.horizontal < kMinEngineRatio || factors.vertical < kMinEngineRatio) {
    return OVRA_ERROR_RESIZE_FACTOR;
  }
  if (!HasImages(images)) return OVRA_ERROR_RESIZE_NULL_IMAGE;
  status = CheckResizeFormat(format);
  if (status == OVRA_OK) {
    const ResizeKernel kernel = {ResizeKernelTable(), SupportFor(factors.horizontal),
                                 SupportFor(factors.vertical)};
    status = PlanEngine(images.shape, format, factors, kernel, &plan);
  }
  return status == OVRA_OK ? ResizeWhole(images, plan, tier) : status;
}

Status ResizeImageCore(const ResizeImages& images, const float* table, KernelSupport support,
                       KernelTier tier) {
  const double ratio = SizeRatio(images.shape);
  return ResizeImageCoreVar(images, {ratio, ratio}, {table, support, support}, tier);
}

Status ResizeImageCoreVar(const ResizeImages& images, ResizeFactors factors,
                          const ResizeKernel& kernel, KernelTier tier) {
  if (!HasImages(images)) return OVRA_ERROR_RESIZE_NULL_IMAGE;
  PixelFormat format;
  ResizePlan plan;
  Status status = CheckResizeCore(images.format, kernel, &format);
  if (status == OVRA_OK) status = PlanEngine(images.shape, format, factors, kernel, &plan);
  return status == OVRA_OK ? ResizeWhole(images, plan, tier) : status;
}

}  // namespace ovra

OVRA_API OvraStatus OVRA_CALL OvraResizeImage(const uint8_t* source, int32_t source_width,
                                              int32_t source_height, uint8_t* destination,
                                              int32_t destination_width, int32_t destination_height,
                                              OvraPixelFormatCode format) {
  return ovra::ResizeImage({source,
                            destination,
                            format,
                            {{source_width, source_height},
                             {destination_width, destination_height},
                             {0, 0, source_width, source_height}}},
                           ovra::DetectedTier());
}

OVRA_API OvraStatus OVRA_CALL OvraResizeImageROI(const uint8_t* source, int32_t source_width,
                                                 int32_t source_height, uint8_t* destination,
                                                 int32_t destination_width,
                                                 int32_t destination_height,
                                                 OvraPixelFormatCode format, int32_t x, int32_t y,
                                                 int32_t width, int32_t height) {
  return ovra::ResizeImage({source,
                            destination,
                            format,
                            {{source_width, source_height},
                             {destination_width, destination_height},
                             {x, y, width, height}}},
                           ovra::DetectedTier());
}

OVRA_API OvraStatus OVRA_CALL OvraResizeImageVAR(const uint8_t* source, int32_t source_width,
                                                 int32_t source_height, uint8_t* destination,
                                                 int32_t destination_width,
                                                 int32_t destination_height,
                                                 OvraPixelFormatCode format,
                                                 double horizontal_factor, double vertical_factor) {
  return ovra::ResizeImageVar({source,
                               destination,
                               format,
                               {{source_width, source_height},
                                {destination_width, destination_height},
                                {0, 0, source_width, source_height}}},
                              {horizontal_factor, vertical_factor}, ovra::DetectedTier());
}

OVRA_API OvraStatus OVRA_CALL OvraResizeImageROIVAR(
    const uint8_t* source, int32_t source_width, int32_t source_height, uint8_t* destination,
    int32_t destination_width, int32_t destination_height, OvraPixelFormatCode format, int32_t x,
    int32_t y, int32_t width, int32_t height, double horizontal_factor, double vertical_factor) {
  return ovra::ResizeImageVar({source,
                               destination,
                               format,
                               {{source_width, source_height},
                                {destination_width, destination_height},
                                {x, y, width, height}}},
                              {horizontal_factor, vertical_factor}, ovra::DetectedTier());
}

OVRA_API OvraStatus OVRA_CALL
OvraResizeImageCore(const uint8_t* source, int32_t source_width, int32_t source_height,
                    uint8_t* destination, int32_t destination_width, int32_t destination_height,
                    OvraPixelFormatCode format, int32_t x, int32_t y, int32_t width, int32_t height,
                    const float* kernel_table, float stretch, int32_t taps) {
  return ovra::ResizeImageCore({source,
                                destination,
                                format,
                                {{source_width, source_height},
                                 {destination_width, destination_height},
                                 {x, y, width, height}}},
                               kernel_table, {stretch, taps}, ovra::DetectedTier());
}

OVRA_API OvraStatus OVRA_CALL OvraResizeImageCoreVAR(
    const uint8_t* source, int32_t source_width, int32_t source_height, uint8_t* destination,
    int32_t destination_width, int32_t destination_height, OvraPixelFormatCode format, int32_t x,
    int32_t y, int32_t width, int32_t height, double horizontal_factor, double vertical_factor,
    const float* kernel_table, float horizontal_stretch, float vertical_stretch,
    int32_t horizontal_taps, int32_t vertical_taps) {
  return ovra::ResizeImageCoreVar(
      {source,
       destination,
       format,
       {{source_width, source_height},
        {destination_width, destination_height},
        {x, y, width, height}}},
      {horizontal_factor, vertical_factor},
      {kernel_table, {horizontal_stretch, horizontal_taps}, {vertical_stretch, vertical_taps}},
      ovra::DetectedTier());
}
