// SPDX-License-Identifier: MIT
#include "resample/resize_plan.h"

#include <cmath>

#include "core/format_rules.h"
#include "resample/kernel_table.h"

namespace ovra {
namespace {

constexpr int32_t kMinTaps = 4;

constexpr FormatRules kFormatRules = {
    NumberSet::Between(1, 4),      OVRA_ERROR_RESIZE_CHANNELS, NumberSet::Between(8, 16),
    OVRA_ERROR_RESIZE_DEPTH,       ModelFitsChannels,          OVRA_ERROR_RESIZE_COLOR_MODEL,
    OVRA_ERROR_RESIZE_ARRANGEMENT,
};

Status CheckEngineShape(const ResizeShape& shape, int32_t horizontal_taps, int32_t vertical_taps) {
  const ResizeRegion& region = shape.region;
  if (shape.source.width < horizontal_taps || shape.source.height < vertical_taps) {
    return OVRA_ERROR_RESIZE_SOURCE_SMALL;
  }
  if (shape.destination.width < horizontal_taps || shape.destination.height < vertical_taps) {
    return OVRA_ERROR_RESIZE_DESTINATION_SMALL;
  }
  if (region.width < horizontal_taps || region.height < vertical_taps ||
      region.width > shape.source.width || region.height > shape.source.height) {
    return OVRA_ERROR_RESIZE_REGION_SIZE;
  }
  if (int64_t{region.x} + region.width > shape.source.width ||
      int64_t{region.y} + region.height > shape.source.height) {
    return OVRA_ERROR_RESIZE_REGION_OUTSIDE;
  }
  return OVRA_OK;
}

Status CheckReductionShape(const ResizeShape& shape) {
  const Status status = CheckResizeNotEmpty(shape);
  if (status != OVRA_OK) return status;
  const ResizeRegion& region = shape.region;
  if (shape.destination.width <= 0 || shape.destination.height <= 0) {
    return OVRA_ERROR_RESIZE_DESTINATION_SMALL;
  }
  if (region.width < 0 || region.height < 0 || region.width > shape.source.width ||
      region.height > shape.source.height) {
    return OVRA_ERROR_RESIZE_REGION_SIZE;
  }
  if (region.x < 0 || region.y < 0 || region.x > shape.source.width - region.width ||
      region.y > shape.source.height - region.height) {
    return OVRA_ERROR_RESIZE_REGION_OUTSIDE;
  }
  return OVRA_OK;
}

// Factors of one between images of one size leave everything as it is.
bool IsIdentity(const ResizeShape& shape, ResizeFactors factors) {
  return factors.horizontal == 1.0 && factors.vertical == 1.0 &&
         shape.source.width == shape.destination.width &&
         shape.source.height == shape.destination.height;
}

bool IsUsable(double factor) {
  return factor != 0.0 && !std::isnan(factor);
}

}  // namespace

double SizeRatio(const ResizeShape& shape) {
  const double horizontal = static_cast<double>(shape.destination.width) / shape.region.width;
  const double vertical = static_cast<double>(shape.destination.height) / shape.region.height;
  return vertical < horizontal ? horizontal : vertical;
}

Status CheckResizeFormat(const PixelFormat& format) {
  return CheckFormat(format, kFormatRules);
}

Status CheckResizeNotEmpty(const ResizeShape& shape) {
  const bool empty = shape.source.width == 0 || shape.region.width == 0 || shape.region.height == 0;
  return empty ? OVRA_ERROR_RESIZE_ZERO_SIZE : OVRA_OK;
}

Status CheckResizeKernel(const ResizeKernel& kernel) {
  if (kernel.table == nullptr) return OVRA_ERROR_RESIZE_NULL_TABLE;
  if (!(kernel.horizontal.stretch > 0.0F) || !(kernel.vertical.stretch > 0.0F)) {
    return OVRA_ERROR_RESIZE_STRETCH;
  }
  if (kernel.horizontal.taps < kMinTaps || kernel.vertical.taps < kMinTaps) {
    return OVRA_ERROR_RESIZE_TAP_COUNT;
  }
  return OVRA_OK;
}

KernelSupport SupportFor(double ratio) {
  uint32_t taps = 0;
  KernelSupport support = {};
  SelectKernelSupport(static_cast<float>(ratio), &taps, &support.stretch);
  support.taps = static_cast<int32_t>(taps);
  return support;
}

Status PlanEngine(const ResizeShape& shape, const PixelFormat& format, ResizeFactors factors,
                  const ResizeKernel& kernel, ResizePlan* plan) {
  const Status status = CheckEngineShape(shape, kernel.horizontal.taps, kernel.vertical.taps);
  if (status != OVRA_OK) return status;
  const ResizeMethod method =
      IsIdentity(shape, factors) ? ResizeMethod::kCopy : ResizeMethod::kEngine;
  if (!IsUsable(factors.horizontal) || !IsUsable(factors.vertical)) return OVRA_ERROR_RESIZE_FACTOR;
  *plan = {method, shape, format, factors, kernel};
  return OVRA_OK;
}

Status PlanReduction(const ResizeShape& shape, const PixelFormat& format, double ratio,
                     const float* table, ResizePlan* plan) {
  const Status status = CheckReductionShape(shape);
  if (status != OVRA_OK) return status;
  *plan = {ResizeMethod::kReduction, shape, format, {ratio, ratio}, {table, {}, {}}};
  return OVRA_OK;
}

Status PlanByRatio(const ResizeShape& shape, const PixelFormat& format, const float* table,
                   ResizePlan* plan) {
  const Status status = CheckResizeFormat(format);
  if (status != OVRA_OK) return status;
  const double ratio = SizeRatio(shape);
  if (ratio < kMinEngineRatio) return PlanReduction(shape, format, ratio, table, plan);
  const KernelSupport support = SupportFor(ratio);
  return PlanEngine(shape, format, {ratio, ratio}, {table, support, support}, plan);
}

}  // namespace ovra
