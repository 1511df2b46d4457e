// SPDX-License-Identifier: MIT
#include "filter/soft_focus_simd.h"

namespace ovra {

void FilterSoftFocusLinesAvx2(const SoftFocusRecursion& recursion, const SoftFocusLines& lines,
                              uint32_t* work) {
  FilterLines<Avx2>(recursion, lines, work);
}

void MixSoftFocusRowAvx2(const uint8_t* source, const uint8_t* blurred, uint8_t* destination,
                         std::ptrdiff_t bytes, uint32_t share) {
  MixRow<Avx2>(source, blurred, destination, bytes, share);
}

}  // namespace ovra
