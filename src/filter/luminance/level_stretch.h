// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "ovra/filter.h"

namespace ovra {

// Levels first to last, for which the masks' level tables hold the same.
struct LevelStretch {
  int32_t first;
  int32_t last;

  bool IsAll() const { return first == 0 && last == OVRA_LEVEL_TABLE_SIZE - 1; }
};

// The longest, where same(a, b) says whether two levels have the same entries.
template <class Same>
LevelStretch LongestStretch(const Same& same) {
  LevelStretch longest = {0, 0};
  LevelStretch open = {0, 0};
  for (int32_t level = 1; level < OVRA_LEVEL_TABLE_SIZE; ++level) {
    if (!same(level - 1, level)) open.first = level;
    open.last = level;
    if (open.last - open.first > longest.last - longest.first) longest = open;
  }
  return longest;
}

}  // namespace ovra
