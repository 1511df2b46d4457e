// SPDX-License-Identifier: MIT
#include "resample/resize.h"

#include "core/work_memory.h"
#include "ovra/resample.h"
#include "resample/kernel_table.h"

namespace ovra {
namespace {

KernelSupport SupportFor(double ratio) {
  uint32_t taps = 0;
  KernelSupport support = {};
  SelectKernelSupport(static_cast<float>(ratio), &taps, &support.stretch);
  support.taps = static_cast<int32_t>(taps);
  return support;
}

ResizeRegion WholeImage(int32_t width, int32_t height) {
  return {0, 0, width, height};
}

}  // namespace

Status ResizeImageVar(const ResizeImages& images, ResizeFactors factors, KernelTier tier) {
  PixelFormat format;
  Status status = DecodePixelFormat(images.format, &format);
  if (status != OVRA_OK) return status;
  WorkMemory<float> table;
  if (!table.Allocate(kKernelTableEntries)) return OVRA_ERROR_NO_MEMORY;
  status = CalcCubicSpline(kResizeKernelParameter, table.data());
  if (status != OVRA_OK) return status;
  const KernelSupport horizontal = SupportFor(factors.horizontal);
  const KernelSupport vertical = SupportFor(factors.vertical);
  if (factors.horizontal < kMinEngineRatio || factors.vertical < kMinEngineRatio) {
    return OVRA_ERROR_RESIZE_FACTOR;
  }
  return ResizeImageCoreVar(images, factors, table.data(), horizontal, vertical, tier);
}

}  // namespace ovra

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
