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
inline constexpr std::ptrdiff_t kEdgeMiddle = kEdgeSide / 2;
inline constexpr int32_t kEdgeNeighbours = kEdgeSide * kEdgeSide;  // the pixel itself included

// Two pixels have the same weight for each other. It is made once, at the pixel that comes first in
// reading order, for which the other one is a later neighbour: one of those to the right of it in
// its row, or of those in the rows below. Neighbour (j, i) stands j steps below and i - kEdgeMiddle
// to the right.
inline constexpr std::ptrdiff_t kEdgeLaterRows = kEdgeReach / kEdgeStep + 1;  // its own included
inline constexpr std::ptrdiff_t kEdgeLaterNeighbours = kEdgeNeighbours / 2;

constexpr std::ptrdiff_t FirstLater(std::ptrdiff_t j) {
  return j == 0 ? kEdgeMiddle + 1 : 0;
}
constexpr std::ptrdiff_t LaterNumber(std::ptrdiff_t j, std::ptrdiff_t i) {
  return kEdgeSide * j + i - kEdgeMiddle - 1;
}

// A picture is filtered in strips of columns, whose rows stay in the cache until they are no more
// needed. A plane of a row holds the columns of a strip, which begin at a cache line, and margins:
// what is within reach of the strip is weighed too, against pixels still farther away. Weighing
// begins half a cache line of factors before the strip.
inline constexpr std::ptrdiff_t kEdgeStripColumns = 256;
inline constexpr std::ptrdiff_t kEdgeFirstWeighed = 16;  // columns before the strip
inline constexpr std::ptrdiff_t kEdgeMargin = kEdgeFirstWeighed + kEdgeReach;
inline constexpr std::ptrdiff_t kEdgeFirstColumn = 32;
inline constexpr std::ptrdiff_t kEdgePlane = kEdgeFirstColumn + kEdgeStripColumns + 32;
static_assert(kEdgeFirstColumn >= kEdgeMargin && kEdgeFirstWeighed >= kEdgeReach);

// Samples that pull, one plane a channel, are times this: see EdgeTable::segments.
inline constexpr int32_t kEdgeSampleScale = 2;
// A row of them has a second copy half a cache line farther on. A register that is loaded from some
// columns to the left or right of whole blocks lies in one line in the one copy or in the other, and
// lines that are crossed would cost more than all the arithmetic.
inline constexpr std::ptrdiff_t kEdgeSecondCopy = 3 * kEdgePlane + 16;
inline constexpr std::ptrdiff_t kEdgeScaledRow = kEdgeSecondCopy + 3 * kEdgePlane;

// A factor is a weight times this.
inline constexpr int32_t kEdgeFactorScale = -32;

// Spreads `width` three-byte pixels over three planes, as they are and scaled (both copies). Those that
// will be needed next stand `next` bytes farther on.
using SplitEdgeRow = void(const uint8_t* pixels, uint8_t* planes, int16_t* scaled_planes,
                          std::ptrdiff_t width, std::ptrdiff_t next);

// Factors of `columns` pixels for their later neighbours, a plane for each. rows[j] is the first
// plane of samples of the row j steps below.
using WeighEdgeRow = void(const uint8_t* const (&rows)[kEdgeLaterRows], const EdgeTable& table,
                          int16_t* factors, std::ptrdiff_t columns);

// What pulls at the pixels of a row, from its first column on.
struct EdgePulls {
  const int16_t* rows[kEdgeSide];          // scaled samples of the rows from 6 above to 6 below
  const int16_t* factors[kEdgeLaterRows];  // of the row, and of those j steps above
};

// Writes `width` filtered pixels of three bytes.
using PullEdgeRow = void(const EdgePulls& pulls, uint8_t* output, std::ptrdiff_t width);

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
  WeighEdgeRow* weigh[2];  // for tables of two and of three segments
  PullEdgeRow* pull;
  ColorDifferenceRow* color_difference;
  CountMiddlingRow* count_middling;

  // Inlined always: a tier may not leave a copy of it to others.
  [[gnu::always_inline]] WeighEdgeRow* Weigh(const EdgeTable& table) const {
    return weigh[table.segment_count - 2];
  }
};

extern const EdgeFilterKernels kEdgeFilterPlain;
extern const EdgeFilterKernels kEdgeFilterSse;
extern const EdgeFilterKernels kEdgeFilterAvx2;

}  // namespace ovra
