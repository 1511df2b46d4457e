// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

#include "filter/edge_filter/tables.h"

namespace ovra {

// A pixel is compared with neighbours at -6, -4, ... 6 in both directions.
inline constexpr std::ptrdiff_t kEdgeReach = 6;
inline constexpr std::ptrdiff_t kEdgeStep = 2;
inline constexpr std::ptrdiff_t kEdgeSide = 2 * kEdgeReach / kEdgeStep + 1;
inline constexpr int32_t kEdgeNeighbours = kEdgeSide * kEdgeSide;  // the pixel itself included

// Work rows hold samples times this, one plane a channel: see EdgeTable::segments.
inline constexpr int32_t kEdgeSampleScale = 2;

// One row's view of the work rows. Each pointer names the first channel's sample for the pixel in
// column 0; the other channels follow at plane_stride and 2 * plane_stride. The pixel itself is the
// neighbour in the middle.
struct EdgeNeighbours {
  const int16_t* samples[kEdgeNeighbours];
  std::ptrdiff_t plane_stride;

  [[gnu::always_inline]] const int16_t* Centre() const { return samples[kEdgeNeighbours / 2]; }
};

// Spreads `width` three-byte pixels over the three planes of a work row.
using SplitEdgeRow = void(const uint8_t* pixels, int16_t* planes, std::ptrdiff_t plane_stride,
                          std::ptrdiff_t width);

// Writes `width` filtered pixels of three bytes.
using FilterEdgeRow = void(const EdgeNeighbours& neighbours, const EdgeTable& table,
                           uint8_t* output, std::ptrdiff_t width);

// Forms the two colour differences of `width` three-byte pixels: four times the distance of the
// first and of the third channel from a luminance of 19, 38 and 7 parts in 64.
using ColorDifferenceRow = void(const uint8_t* pixels, int16_t* first, int16_t* second,
                                std::ptrdiff_t width);

// Counts the samples at which two rows of blurred colour differences (below 2^14 in magnitude)
// differ by a middling amount, at least kMiddlingDifference and less than twice that.
using CountMiddlingRow = uint32_t(const int16_t* a, const int16_t* b, std::ptrdiff_t width);

inline constexpr int32_t kMiddlingDifference = 10;

struct EdgeFilterKernels {
  SplitEdgeRow* split;
  FilterEdgeRow* filter[2];  // for tables of two and of three segments
  ColorDifferenceRow* color_difference;
  CountMiddlingRow* count_middling;

  // Inlined always: a tier may not leave a copy of it to others.
  [[gnu::always_inline]] FilterEdgeRow* Filter(const EdgeTable& table) const {
    return filter[table.segment_count - 2];
  }
};

extern const EdgeFilterKernels kEdgeFilterPlain;
extern const EdgeFilterKernels kEdgeFilterSse;
extern const EdgeFilterKernels kEdgeFilterAvx2;

}  // namespace ovra
