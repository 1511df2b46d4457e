// SPDX-License-Identifier: MIT
#include "filter/plane_filter_simd.h"

namespace ovra {

void CombineRowsThreeTapsAvx2(const int16_t* const* rows, const PlaneKernel& kernel,
                              int16_t* output, std::ptrdiff_t width) {
  CombineRowsThreeTaps<Avx2>(rows, kernel, output, width);
}

void CombineRowsShiftAvx2(const int16_t* const* rows, const PlaneKernel& kernel, int16_t* output,
                          std::ptrdiff_t width) {
  CombineRowsShift<Avx2>(rows, kernel, output, width);
}

void CombineRowsDivideAvx2(const int16_t* const* rows, const PlaneKernel& kernel, int16_t* output,
                           std::ptrdiff_t width) {
  CombineRowsDivide<Avx2>(rows, kernel, output, width);
}

}  // namespace ovra
