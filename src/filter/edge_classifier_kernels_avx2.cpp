// SPDX-License-Identifier: MIT
#include "filter/edge_classifier_simd.h"

namespace ovra {

void ColorDifferenceAvx2(const uint8_t* pixels, int16_t* first, int16_t* second,
                         std::ptrdiff_t width) {
  ColorDifference<Avx2>(pixels, first, second, width);
}

uint32_t CountMiddlingAvx2(const int16_t* a, const int16_t* b, std::ptrdiff_t width) {
  return CountMiddling<Avx2>(a, b, width);
}

}  // namespace ovra
