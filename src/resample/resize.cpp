// SPDX-License-Identifier: MIT
#include "resample/resize.h"

#include "core/work_memory.h"
#include "ovra/resample.h"
#include "resample/kernel_table.h"
#include "resample/resize_checks.h"
#include "resample/small_resize.h"

namespace ovra {
namespace {

KernelSupport SupportFor(double ratio) {
  uint32_t taps = 0;
  KernelSupport support = {};
  SelectKernelSupport(static_cast<float>(ratio), &taps, &support.stretch);
  support.taps = static_cast<int32_t>(taps);
  return support;
}

// What both forms begin with: the format word is looked at before anything else, and the kernel
// table taken before the sizes are.
Status PrepareTable(PixelFormatCode code, WorkMemory<float>* table) {
  PixelFormat format;
  const Status status = DecodePixelFormat(code, &format);
  if (status != OVRA_OK) return status;
  if (!table->Allocate(kKernelTableEntries)) return OVRA_ERROR_NO_MEMORY;
  return CalcCubicSpline(kResizeKernelParameter, table->data());
}

ResizeRegion WholeImage(int32_t width, int32_t height) {
  return {0, 0, width, height};
}

}  // namespace

Status ResizeImage(const ResizeImages& images, KernelTier tier) {
  WorkMemory<float> table;
  Status status = PrepareTable(images.format, &table);
  if (status == OVRA_OK) status = CheckResizeNotEmpty(images.source_size, images.region);
  if (status != OVRA_OK) return status;
  const double ratio = SizeRatio(images.destination_size, images.region);
  if (!(ratio < kMinEngineRatio)) {
    return ResizeImageCore(images, table.data(), SupportFor(ratio), tier);
  }
  const ResizeRegion& region = images.region;
  return SmallResizeImage(images.source, images.source_size.width, images.source_size.height,
                          images.destination, images.destination_size.width,
                          images.destination_size.height, images.format, region.x, region.y,
                          region.width, region.height, table.data(), tier);
}

Status ResizeImageVar(const ResizeImages& images, ResizeFactors factors, KernelTier tier) {
  WorkMemory<float> table;
  const Status status = PrepareTable(images.format, &table);
  if (status != OVRA_OK) return status;
  const KernelSupport horizontal = SupportFor(factors.horizontal);
  const KernelSupport vertical = SupportFor(factors.vertical);
  if (factors.horizontal < kMinEngineRatio || factors.vertical < kMinEngineRatio) {
    return OVRA_ERROR_RESIZE_FACTOR;
  }
  return ResizeImageCoreVar(images, factors, table.data(), horizontal, vertical, tier);
}

}  // namespace ovra

OVRA_API OvraStatus OVRA_CALL OvraResizeImage(const uint8_t* source, int32_t source_width,
                                              int32_t source_height, uint8_t* destination,
                                              int32_t destination_width, int32_t destination_height,
                                              OvraPixelFormatCode format) {
  return ovra::ResizeImage({source,
                            {source_width, source_height},
                            destination,
                            {destination_width, destination_height},
                            format,
                            ovra::WholeImage(source_width, source_height)},
                           ovra::DetectedTier());
}

OVRA_API OvraStatus OVRA_CALL OvraResizeImageROI(const uint8_t* source, int32_t source_width,
                                                 int32_t source_height, uint8_t* destination,
                                                 int32_t destination_width,
                                                 int32_t destination_height,
                                                 OvraPixelFormatCode format, int32_t x, int32_t y,
                                                 int32_t width, int32_t height) {
  return ovra::ResizeImage({source,
                            {source_width, source_height},
                            destination,
                            {destination_width, destination_height},
                            format,
                            {x, y, width, height}},
                           ovra::DetectedTier());
}

OVRA_API OvraStatus OVRA_CALL OvraResizeImageVAR(const uint8_t* source, int32_t source_width,
                                                 int32_t source_height, uint8_t* destination,
                                                 int32_t destination_width,
                                                 int32_t destination_height,
                                                 OvraPixelFormatCode format,
                                                 double horizontal_factor, double vertical_factor) {
  return ovra::ResizeImageVar({source,
                               {source_width, source_height},
                               destination,
                               {destination_width, destination_height},
                               format,
                               ovra::WholeImage(source_width, source_height)},
                              {horizontal_factor, vertical_factor}, ovra::DetectedTier());
}

OVRA_API OvraStatus OVRA_CALL OvraResizeImageROIVAR(
    const uint8_t* source, int32_t source_width, int32_t source_height, uint8_t* destination,
    int32_t destination_width, int32_t destination_height, OvraPixelFormatCode format, int32_t x,
    int32_t y, int32_t width, int32_t height, double horizontal_factor, double vertical_factor) {
  return ovra::ResizeImageVar({source,
                               {source_width, source_height},
                               destination,
                               {destination_width, destination_height},
                               format,
                               {x, y, width, height}},
                              {horizontal_factor, vertical_factor}, ovra::DetectedTier());
}
