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

struct Size {
  std::ptrdiff_t width;
  std::ptrdiff_t height;
};

// A strip of columns of a picture on its way through the filter. Even rows see even rows only, odd
// rows odd ones: either is filtered by itself, so that what it needs stays in the first-level cache.
// Rows above the first and below the last are these, and so are columns.
class EdgeStrip {
 public:
  [[nodiscard]] bool Allocate() {
    return samples_.Allocate(3 * kEdgePlane, kEdgeSide) &&
           scaled_.Allocate(kEdgeScaledRow, kEdgeSide) &&
           factors_.Allocate(kEdgeLaterNeighbours * kEdgePlane, kEdgeLaterRows);
  }

  // Filters columns first to end - 1, at most kEdgeStripColumns.
  void Filter(const uint8_t* source, uint8_t* destination, Size size, std::ptrdiff_t first,
              std::ptrdiff_t end, const EdgeTable& table, const EdgeFilterKernels& kernels) {
    source_ = source;
    size_ = size;
    first_ = first;
    end_ = end;
    for (std::ptrdiff_t parity = 0; parity < kEdgeStep; ++parity) {
      // Ring rows are kEdgeStep apart; the first one is out of reach of the picture's first.
      const auto row_of = [&](std::ptrdiff_t r) {
        return parity + kEdgeStep * (r - 2 * kEdgeMiddle);
      };
      for (std::ptrdiff_t r = 0; r < 2 * kEdgeMiddle; ++r) Load(r, row_of(r), kernels);
      for (std::ptrdiff_t r = kEdgeMiddle; row_of(r) < size.height; ++r) {
        Load(r + kEdgeMiddle, row_of(r + kEdgeMiddle), kernels);
        Weigh(r, table, kernels);
        const std::ptrdiff_t y = row_of(r);
        if (y < 0) continue;
        kernels.pull(Pulls(r), destination + 3 * (size.width * y + first), end - first);
      }
    }
  }

 private:
  // Row `y` of the picture, or the nearest one, becomes row r of the rings.
  void Load(std::ptrdiff_t r, std::ptrdiff_t y, const EdgeFilterKernels& kernels) {
    const std::ptrdiff_t begin = std::max<std::ptrdiff_t>(first_ - kEdgeMargin, 0);
    const std::ptrdiff_t end = std::min(end_ + kEdgeMargin, size_.width);
    uint8_t* const samples = samples_.Row(r) + kEdgeFirstColumn;
    int16_t* const scaled = scaled_.Row(r) + kEdgeFirstColumn;
    const std::ptrdiff_t at = begin - first_;
    const std::ptrdiff_t held = std::clamp<std::ptrdiff_t>(y, 0, size_.height - 1);
    const uint8_t* const pixels = source_ + 3 * (size_.width * held + begin);
    kernels.split(pixels, samples + at, scaled + at, end - begin, 3 * size_.width * kEdgeStep);
    for (std::ptrdiff_t c = 0; c < 3; ++c) {
      RepeatEnds(samples + c * kEdgePlane, at, end - first_);
      RepeatEnds(scaled + c * kEdgePlane, at, end - first_);
      RepeatEnds(scaled + c * kEdgePlane + kEdgeSecondCopy, at, end - first_);
    }
  }

  // Fills the margins where a plane's columns begin to end - 1 do not.
  template <class Sample>
  void RepeatEnds(Sample* plane, std::ptrdiff_t begin, std::ptrdiff_t end) const {
    std::fill(plane - kEdgeMargin, plane + begin, plane[begin]);
    std::fill(plane + end, plane + (end_ - first_) + kEdgeMargin, plane[end - 1]);
  }

  void Weigh(std::ptrdiff_t r, const EdgeTable& table, const EdgeFilterKernels& kernels) {
    const uint8_t* rows[kEdgeLaterRows];
    for (std::ptrdiff_t j = 0; j < kEdgeLaterRows; ++j) {
      rows[j] = samples_.Row(r + j) + kEdgeFirstColumn - kEdgeFirstWeighed;
    }
    kernels.Weigh(table)(rows, table, factors_.Row(r) + kEdgeFirstColumn - kEdgeFirstWeighed,
                         end_ - first_ + kEdgeFirstWeighed + kEdgeReach);
  }

  EdgePulls Pulls(std::ptrdiff_t r) {
    EdgePulls pulls;
    for (std::ptrdiff_t j = 0; j < kEdgeSide; ++j) {
      pulls.rows[j] = scaled_.Row(r + j - kEdgeMiddle) + kEdgeFirstColumn;
    }
    for (std::ptrdiff_t j = 0; j < kEdgeLaterRows; ++j) {
      pulls.factors[j] = factors_.Row(r - j) + kEdgeFirstColumn;
    }
    return pulls;
  }

  const uint8_t* source_ = nullptr;
  Size size_ = {};
  std::ptrdiff_t first_ = 0;
  std::ptrdiff_t end_ = 0;
  RowRing<uint8_t> samples_;
  RowRing<int16_t> scaled_;
  RowRing<int16_t> factors_;
};

}  // namespace

Status FilterEdges(const uint8_t* source, uint8_t* destination, uint32_t width, uint32_t height,
                   const EdgeTable& table, KernelTier tier) {
  const EdgeFilterKernels& kernels =
      ForTier(tier, kEdgeFilterPlain, kEdgeFilterSse, kEdgeFilterAvx2);
  const Size size = {static_cast<std::ptrdiff_t>(width), static_cast<std::ptrdiff_t>(height)};
  EdgeStrip strip;
  if (!strip.Allocate()) return OVRA_ERROR_NO_MEMORY;
  // Strips of about the same width: a narrow last one would be slow.
  const std::ptrdiff_t strips = (size.width - 1) / kEdgeStripColumns + 1;
  std::ptrdiff_t first = 0;
  for (std::ptrdiff_t left = strips; left > 0; --left) {
    const std::ptrdiff_t end = first + (size.width - first - 1) / left + 1;
    strip.Filter(source, destination, size, first, end, table, kernels);
    first = end;
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
