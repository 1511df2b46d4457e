// SPDX-License-Identifier: MIT
#include "filter/edge_classifier_kernels.h"

namespace ovra {

void ColorDifferencePlain(const uint8_t* pixels, int16_t* first, int16_t* second,
                          std::ptrdiff_t width) {
  for (std::ptrdiff_t x = 0; x < width; ++x) {
    const int32_t c0 = pixels[3 * x];
    const int32_t c1 = pixels[3 * x + 1];
    const int32_t c2 = pixels[3 * x + 2];
    first[x] = static_cast<int16_t>((45 * c0 - 38 * c1 - 7 * c2) >> 4);
    second[x] = static_cast<int16_t>(((3 * c2 - 2 * c1 - c0) * 19) >> 4);
  }
}

uint32_t CountMiddlingPlain(const int16_t* a, const int16_t* b, std::ptrdiff_t width) {
  uint32_t count = 0;
  for (std::ptrdiff_t x = 0; x < width; ++x) {
    const int32_t difference = a[x] - b[x];
    const int32_t magnitude = difference < 0 ? -difference : difference;
    if (magnitude >= kMiddlingDifference && magnitude < 2 * kMiddlingDifference) ++count;
  }
  return count;
}

}  // namespace ovra
