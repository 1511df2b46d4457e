// SPDX-License-Identifier: MIT
// Sizes, regions, and how a region of the source meets the destination.
#pragma once

#include <cstdint>

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

// The size ratio of a resize whose factors follow from the sizes: the larger one of the two axes.
// It serves both axes, so that the picture keeps its proportions and the region is cut
// symmetrically along the other axis. The region is not empty.
double SizeRatio(ImageSize destination, const ResizeRegion& region);

// The memory row at which the region begins: bottom-up images keep the picture's top at the end.
int64_t FirstRegionRow(int32_t source_height, const ResizeRegion& region, bool bottom_up);

}  // namespace ovra
