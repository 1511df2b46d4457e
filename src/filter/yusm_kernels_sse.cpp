// SPDX-License-Identifier: MIT
#include "filter/yusm_kernels_simd.h"

namespace ovra {

void SmoothTwiceSse(const int16_t* const* rows, const PlaneKernel& kernel, int16_t* output,
                    std::ptrdiff_t width) {
  SmoothTwice<Sse>(rows, kernel, output, width);
}

void CombineRowsLimitedSse(const int16_t* const* rows, const PlaneKernel& kernel, int16_t* output,
                           std::ptrdiff_t width) {
  CombineRowsLimited<Sse>(rows, kernel, output, width);
}

}  // namespace ovra
