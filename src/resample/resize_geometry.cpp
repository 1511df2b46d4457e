// SPDX-License-Identifier: MIT
#include "resample/resize_geometry.h"

namespace ovra {

double SizeRatio(ImageSize destination, const ResizeRegion& region) {
  const double horizontal = static_cast<double>(destination.width) / region.width;
  const double vertical = static_cast<double>(destination.height) / region.height;
  return vertical < horizontal ? horizontal : vertical;
}

int64_t FirstRegionRow(int32_t source_height, const ResizeRegion& region, bool bottom_up) {
  return bottom_up ? int64_t{source_height} - region.y - region.height : region.y;
}

}  // namespace ovra
