// SPDX-License-Identifier: MIT
#include <cstring>

#include "core/wrapping.h"
#include "filter/plane_filter/kernels.h"

namespace ovra {
namespace {

void CombineRowsShift(const int16_t* const* rows, const PlaneKernel& kernel, int16_t* output,
                      std::ptrdiff_t width) {
  for (std::ptrdiff_t x = 0; x < width; ++x) {
    output[x] = static_cast<int16_t>(WeightedSum(rows, kernel, x) >> kPlaneUnitBits);
  }
}

void CombineRowsDivide(const int16_t* const* rows, const PlaneKernel& kernel, int16_t* output,
                       std::ptrdiff_t width) {
  for (std::ptrdiff_t x = 0; x < width; ++x) {
    output[x] = static_cast<int16_t>(WeightedSum(rows, kernel, x) / kernel.sum);
  }
}

}  // namespace

// Caller-given weights may overflow the sum.
int32_t WeightedSum(const int16_t* const* rows, const PlaneKernel& kernel, std::ptrdiff_t x) {
  uint32_t sum = 0;
  for (std::ptrdiff_t k = 0; k < kernel.taps; ++k) {
    sum = WrappingSum(sum, WrappingProduct(kernel.weights[k], rows[k][x]));
  }
  return static_cast<int32_t>(sum);
}

void CombineRowsZero(const int16_t* const* /*rows*/, const PlaneKernel& /*kernel*/, int16_t* output,
                     std::ptrdiff_t width) {
  std::memset(output, 0, static_cast<size_t>(width) * sizeof(*output));
}

const PlaneFilterKernels kPlaneFilterPlain = {CombineRowsShift, CombineRowsShift, CombineRowsShift,
                                              CombineRowsDivide, CombineRowsShift};

}  // namespace ovra
