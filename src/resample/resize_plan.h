// SPDX-License-Identifier: MIT
// What a resize is going to do, settled by its checks before any memory is taken.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/pixel_format.h"
#include "core/status.h"

namespace ovra {

struct ImageSize {
  int32_t width;
  int32_t height;
};

// In source pixels; y counts from the picture's top.
struct ResizeRegion {
  int32_t x;
  int32_t y;
  int32_t width;
  int32_t height;
};

// A region of the source becomes the whole destination.
struct ResizeShape {
  ImageSize source;
  ImageSize destination;
  ResizeRegion region;
};

// How wide the kernel is on one axis.
struct KernelSupport {
  float stretch;
  int32_t taps;
};

// A kernel table, and its width on both axes.
struct ResizeKernel {
  const float* table;
  KernelSupport horizontal;
  KernelSupport vertical;
};

// Destination by source.
struct ResizeFactors {
  double horizontal;
  double vertical;
};

enum class ResizeMethod {
  kCopy,       // rows as they are, padding included
  kEngine,     // a kernel of few taps
  kReduction,  // a kernel stretched over all source samples that it covers
};

struct ResizePlan {
  ResizeMethod method;
  ResizeShape shape;
  PixelFormat format;
  ResizeFactors factors;
  ResizeKernel kernel;  // a reduction uses the table alone

  // The memory row at which the region begins: bottom-up images keep the picture's top at the end.
  int64_t FirstRegionRow() const {
    const ResizeRegion& region = shape.region;
    return format.BottomUp() ? int64_t{shape.source.height} - region.y - region.height : region.y;
  }
  std::ptrdiff_t SourceStride() const { return RowStride(shape.source.width, format); }
  std::ptrdiff_t DestinationStride() const { return RowStride(shape.destination.width, format); }
};

// When the engine takes the memory that unusual tap counts need beside the ring, and whether source
// rows stay where they are while others are taken.
enum class RowMemory {
  kRowByRow,  // as the resize of whole pictures does: a row may be left out for want of memory
  kAtOnce,
  kAtOnceForBands,  // whose rows go away
};

constexpr bool RowsStay(RowMemory memory) {
  return memory != RowMemory::kAtOnceForBands;
}

// The engine's taps cover reductions down to this ratio. Beyond it, factors that follow from the
// sizes lead to the strong reduction, and explicit ones are refused.
inline constexpr double kMinEngineRatio = 0.33;

// The size ratio of a resize whose factors follow from the sizes: the larger one of the two axes.
// It serves both axes, so that the picture keeps its proportions and the region is cut
// symmetrically along the other axis. Of no use where the region is empty.
double SizeRatio(const ResizeShape& shape);

// Whether images of this format can be resized: 1, 3 or 4 channels of at most 16 bits, interleaved,
// with a colour model that fits the channel count. (No model has two channels.)
Status CheckResizeFormat(const PixelFormat& format);

// OVRA_ERROR_RESIZE_ZERO_SIZE when there is nothing to measure a ratio by.
Status CheckResizeNotEmpty(const ResizeShape& shape);

// The kernel that a caller brings along.
Status CheckResizeKernel(const ResizeKernel& kernel);

// The support of the library's own kernel for a ratio.
KernelSupport SupportFor(double ratio);

// The plans, for a format that has been accepted. Each ends the checks of its operations: source,
// destination and region hold the taps, and the region does not reach beyond the source's right or
// bottom edge. The engine accepts regions that begin left of the source or above it.
Status PlanEngine(const ResizeShape& shape, const PixelFormat& format, ResizeFactors factors,
                  const ResizeKernel& kernel, ResizePlan* plan);
Status PlanReduction(const ResizeShape& shape, const PixelFormat& format, double ratio,
                     const float* table, ResizePlan* plan);

// With the library's own kernel: the format is checked first, and the ratio of the sizes decides
// which of the two it is. The shape is not empty.
Status PlanByRatio(const ResizeShape& shape, const PixelFormat& format, const float* table,
                   ResizePlan* plan);

}  // namespace ovra
