// SPDX-License-Identifier: MIT
#include "filter/edge_classifier_simd.h"

namespace ovra {

void ColorDifferenceSse(const uint8_t* pixels, int16_t* first, int16_t* second,
                        std::ptrdiff_t width) {
  ColorDifference<Sse>(pixels, first, second, width);
}

uint32_t CountMiddlingSse(const int16_t* a, const int16_t* b, std::ptrdiff_t width) {
  return CountMiddling<Sse>(a, b, width);
}

}  // namespace ovra
