// SPDX-License-Identifier: MIT
#include "resample/small_resize/small_resize.h"

#include "ovra/resample.h"

namespace ovra {

Status SmallResizeImage(const ResizeImages& images, const float* kernel_table, KernelTier tier) {
  if (images.source == nullptr || images.destination == nullptr) {
    return OVRA_ERROR_RESIZE_NULL_IMAGE;
  }
  if (kernel_table == nullptr) return OVRA_ERROR_RESIZE_NULL_TABLE;
  PixelFormat format;
  ResizePlan plan;
  Status status = DecodePixelFormat(images.format, &format);
  if (status == OVRA_OK) status = CheckResizeFormat(format);
  if (status == OVRA_OK) {
    status = PlanReduction(images.shape, format, SizeRatio(images.shape), kernel_table, &plan);
  }
  return status == OVRA_OK ? ResizeWhole(images, plan, tier) : status;
}

}  // namespace ovra

OVRA_API OvraStatus OVRA_CALL OvraSmallResizeImage(
    const uint8_t* source, int32_t source_width, int32_t source_height, uint8_t* destination,
    int32_t destination_width, int32_t destination_height, OvraPixelFormatCode format, int32_t x,
    int32_t y, int32_t width, int32_t height, const float* kernel_table) {
  return ovra::SmallResizeImage({source,
                                 destination,
                                 format,
                                 {{source_width, source_height},
                                  {destination_width, destination_height},
                                  {x, y, width, height}}},
                                kernel_table, ovra::DetectedTier());
}
