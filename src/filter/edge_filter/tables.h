// SPDX-License-Identifier: MIT
// The range weights of the edge filter.
#pragma once

#include <cstdint>

namespace ovra {

// Weights of a neighbour by its colour distance from the centre, the sum of the three absolute
// differences, in units of 1/1024: full up to some distance, then falling to 0.
struct EdgeTable {
  static constexpr int32_t kDistances = 3 * 255 + 1;

  // The same weights for look-ups by byte shuffles. Segment s serves the distances that exceed
  // full_until by 16 * s and more; its bytes are combined by exclusive or with those of all later
  // segments at the same place, so that a look-up needs no lower bound. They are the bytes of
  // -32 * weight: a difference of doubled samples, times that, has the weighted difference in its
  // upper 16 bits.
  static constexpr int32_t kMaxSegments = 3;
  struct Segment {
    uint8_t low[16];
    uint8_t high[16];
  };

  uint16_t weights[kDistances];
  uint8_t full_until;  // the greatest distance with full weight
  uint8_t segment_count;
  Segment segments[kMaxSegments];
};

extern const EdgeTable kNarrowEdgeTable;
extern const EdgeTable kWideEdgeTable;

}  // namespace ovra
