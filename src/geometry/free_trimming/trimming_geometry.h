// SPDX-License-Identifier: MIT
// Where the pixels of a trimmed picture come from, in exact integers.
#pragma once

#include <cstdint>

namespace ovra {

// Source positions of one axis: a whole pixel, and what is to be added to it in units of 2^-32
// pixels. The whole part is apart because the sum takes up to 65 bits.
struct TrimmingAxis {
  int64_t origin = 0;
  int64_t start = 0;        // at destination pixel (0, 0)
  int64_t column_step = 0;  // from one destination pixel to the next
  int64_t row_step = 0;     // from one destination row to the next

  int64_t At(int64_t column, int64_t row) const {
    return start + column * column_step + row * row_step;
  }
};

struct TrimmingGeometry {
  bool moves_pixels = false;  // all positions are whole numbers
  int32_t quarter_turns = 0;  // counter-clockwise, without the rest of the angle
  TrimmingAxis across;
  TrimmingAxis down;
};

// For a rectangle of width x height pixels at (x, y), turned by `angle` tenths of a degree
// counter-clockwise about its centre.
TrimmingGeometry FindTrimmingGeometry(int32_t width, int32_t height, int32_t x, int32_t y,
                                      int32_t angle);

}  // namespace ovra
