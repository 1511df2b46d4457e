// SPDX-License-Identifier: MIT
#include "filter/edge_filter/edge_filter.h"

#include <algorithm>
#include <cstddef>
#include <limits>

#include "core/format_rules.h"
#include "core/row_ring.h"
#include "filter/edge_filter/classifier.h"
#include "filter/edge_filter/kernels.h"
#include "ovra/filter.h"

namespace ovra {
namespace {

constexpr FormatRules kRules = {
    .channels = NumberSet::Of(3),
    .channels_refused = OVRA_ERROR_EDGE_FILTER_CHANNELS,
    .depths_bits = NumberSet::Of(8),
    .depth_refused = OVRA_ERROR_EDGE_FILTER_DEPTH,
    .accepts_model = IsRgbBgrOrYcc,
    .model_refused = OVRA_ERROR_EDGE_FILTER_COLOR_MODEL,
    .arrangement_refused = OVRA_ERROR_EDGE_FILTER_ARRANGEMENT,
};

Status CheckArguments(const uint8_t* source, const uint8_t* destination, uint32_t width,
                      uint32_t height, PixelFormatCode code) {
  if (source == nullptr || destination == nullptr) return OVRA_ERROR_EDGE_FILTER_NULL;
  if (source == destination) return OVRA_ERROR_EDGE_FILTER_IN_PLACE;
  if (width == 0 || height == 0) return OVRA_ERROR_EDGE_FILTER_ZERO_SIZE;
  PixelFormat format;
  return DecodeAndCheckFormat(code, kRules, &format);
}

// Whether a picture with its border could lie in memory at all. Offsets into it fit a ptrdiff_t
// then.
bool IsAddressable(uint32_t width, uint32_t height) {
  constexpr uint64_t kMaxPixels = std::numeric_limits<std::ptrdiff_t>::max() / 3;
  constexpr uint64_t kBorder = 2 * kEdgeReach;
  return width + kBorder <= kMaxPixels / (height + kBorder);
}

const EdgeFilterKernels& KernelsOf(KernelTier tier) {
  return ForTier(tier, kEdgeFilterPlain, kEdgeFilterSse, kEdgeFilterAvx2);
}

// The rows within reach of the one in hand, each as three planes of scaled samples with the first
// and the last pixel repeated.
class WorkRows {
 public:
  [[nodiscard]] bool Prepare(const uint8_t* source, uint32_t width, uint32_t height,
                             SplitEdgeRow* split) {
    source_ = source;
    split_ = split;
    width_ = static_cast<std::ptrdiff_t>(width);
    height_ = static_cast<std::ptrdiff_t>(height);
    const uint64_t plane_samples = uint64_t{width} + 2 * kEdgeReach;
    if (!rows_.Allocate(3 * plane_samples, 2 * kEdgeReach + 1)) return false;
    plane_stride_ = static_cast<std::ptrdiff_t>(plane_samples);
    for (std::ptrdiff_t y = 0; y < std::min(kEdgeReach, height_); ++y) Load(y);
    return true;
  }

  // What row `y` sees; to be asked for in ascending order. Rows above the first and below the last
  // are these.
  EdgeNeighbours Neighbours(std::ptrdiff_t y) {
    if (y + kEdgeReach < height_) Load(y + kEdgeReach);
    EdgeNeighbours neighbours;
    neighbours.plane_stride = plane_stride_;
    const int16_t** next = neighbours.samples;
    for (std::ptrdiff_t dy = -kEdgeReach; dy <= kEdgeReach; dy += kEdgeStep) {
      const int64_t row = std::clamp<int64_t>(int64_t{y} + dy, 0, height_ - 1);
      const int16_t* const first = rows_.Row(static_cast<std::ptrdiff_t>(row)) + kEdgeReach;
      for (std::ptrdiff_t dx = -kEdgeReach; dx <= kEdgeReach; dx += kEdgeStep) {
        *next++ = first + dx;
      }
    }
    return neighbours;
  }

 private:
  void Load(std::ptrdiff_t y) {
    int16_t* const row = rows_.Row(y);
    split_(source_ + 3 * width_ * y, row + kEdgeReach, plane_stride_, width_);
    for (std::ptrdiff_t c = 0; c < 3; ++c) {
      int16_t* const first = row + c * plane_stride_ + kEdgeReach;
      std::fill(first - kEdgeReach, first, *first);
      std::fill_n(first + width_, kEdgeReach, first[width_ - 1]);
    }
  }

  const uint8_t* source_ = nullptr;
  SplitEdgeRow* split_ = nullptr;
  std::ptrdiff_t width_ = 0;
  std::ptrdiff_t height_ = 0;
  std::ptrdiff_t plane_stride_ = 0;
  RowRing<int16_t> rows_;
};

}  // namespace

Status FilterEdges(const uint8_t* source, uint8_t* destination, uint32_t width, uint32_t height,
                   const EdgeTable& table, KernelTier tier) {
  const EdgeFilterKernels& kernels = KernelsOf(tier);
  WorkRows work_rows;
  if (!work_rows.Prepare(source, width, height, kernels.split)) return OVRA_ERROR_NO_MEMORY;
  FilterEdgeRow* const filter_row = kernels.Filter(table);
  const auto row_pixels = static_cast<std::ptrdiff_t>(width);
  for (std::ptrdiff_t y = 0; y < static_cast<std::ptrdiff_t>(height); ++y) {
    filter_row(work_rows.Neighbours(y), table, destination + 3 * row_pixels * y, row_pixels);
  }
  return OVRA_OK;
}

Status EdgeFilterImage(const uint8_t* source, uint8_t* destination, uint32_t width, uint32_t height,
                       PixelFormatCode code, KernelTier tier) {
  const Status status = CheckArguments(source, destination, width, height, code);
  if (status != OVRA_OK) return status;
  if (!IsAddressable(width, height)) return OVRA_ERROR_NO_MEMORY;
  const bool wide = HasMiddlingDetail(source, width, height, tier);
  return FilterEdges(source, destination, width, height, wide ? kWideEdgeTable : kNarrowEdgeTable,
                     tier);
}

}  // namespace ovra

OVRA_API OvraStatus OVRA_CALL OvraEFilterImage(const uint8_t* source, uint8_t* destination,
                                               uint32_t width, uint32_t height,
                                               OvraPixelFormatCode format) {
  return ovra::EdgeFilterImage(source, destination, width, height, format, ovra::DetectedTier());
}
