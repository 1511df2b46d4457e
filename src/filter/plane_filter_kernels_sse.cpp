// SPDX-License-Identifier: MIT
#include "filter/plane_filter_simd.h"

namespace ovra {

void CombineRowsThreeTapsSse(const int16_t* const* rows, const PlaneKernel& kernel, int16_t* output,
                             std::ptrdiff_t width) {
  CombineRowsThreeTaps<Sse>(rows, kernel, output, width);
}

void CombineRowsShiftSse(const int16_t* const* rows, const PlaneKernel& kernel, int16_t* output,
                         std::ptrdiff_t width) {
  CombineRowsShift<Sse>(rows, kernel, output, width);
}

void CombineRowsDivideSse(const int16_t* const* rows, const PlaneKernel& kernel, int16_t* output,
                          std::ptrdiff_t width) {
  CombineRowsDivide<Sse>(rows, kernel, output, width);
}

}  // namespace ovra
