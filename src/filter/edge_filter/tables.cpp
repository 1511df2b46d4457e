// SPDX-License-Identifier: MIT
#include "filter/edge_filter/tables.h"

#include <cstddef>

namespace ovra {
namespace {

constexpr int32_t kFullWeight = 1024;
constexpr int32_t kSegmentSize = 16;

// The two bytes of -32 * weight, for the distance that exceeds full_until by `excess`.
constexpr uint16_t Factor(const EdgeTable& table, int32_t excess) {
  return static_cast<uint16_t>(-32 * table.weights[table.full_until + excess]);
}

constexpr void MakeSegments(EdgeTable& table) {
  for (int32_t s = 0; s < table.segment_count; ++s) {
    const bool last = s + 1 == table.segment_count;
    for (int32_t i = 0; i < kSegmentSize; ++i) {
      const int32_t excess = kSegmentSize * s + i;
      const uint16_t later = last ? uint16_t{0} : Factor(table, excess + kSegmentSize);
      const auto factor = static_cast<uint16_t>(Factor(table, excess) ^ later);
      table.segments[s].low[i] = static_cast<uint8_t>(factor);
      table.segments[s].high[i] = static_cast<uint8_t>(factor >> 8);
    }
  }
}

template <size_t kFalling>
constexpr EdgeTable MakeTable(uint8_t full_until, const uint16_t (&falling)[kFalling]) {
  EdgeTable table = {};
  for (int32_t d = 0; d <= full_until; ++d) table.weights[d] = kFullWeight;
  for (size_t i = 0; i < kFalling; ++i) table.weights[full_until + 1 + i] = falling[i];
  table.full_until = full_until;
  table.segment_count = (1 + kFalling + kSegmentSize - 1) / kSegmentSize;
  static_assert((1 + kFalling + kSegmentSize - 1) / kSegmentSize <= EdgeTable::kMaxSegments);
  MakeSegments(table);
  return table;
}

}  // namespace

// Both fall steeply at first and ever more slowly toward the end.
constexpr EdgeTable kNarrowEdgeTable =
    MakeTable(19, {1003, 911, 827, 750, 679, 613, 553, 496, 444, 395, 349,
                   306,  266, 228, 192, 158, 126, 96,  67,  40,  14});

constexpr EdgeTable kWideEdgeTable = MakeTable(
    33, {1003, 947, 893, 843, 795, 750, 706, 665, 626, 588, 553, 518, 485, 454, 424, 395, 367, 340,
         315,  290, 266, 243, 221, 199, 178, 158, 139, 120, 102, 85,  67,  51,  35,  19,  4});

}  // namespace ovra
