// SPDX-License-Identifier: MIT
// The mask's blur on vectors of any width. Included by one kernel file a tier.
#pragma once

#include "filter/plane_filter_simd.h"
#include "filter/yusm_kernels.h"

namespace ovra {
namespace {

// (left + 2 middle + right) >> 2: rounding down twice is rounding down once.
template <class V>
typename V::Reg Smooth(typename V::Reg left, typename V::Reg middle, typename V::Reg right) {
  return Mean<V>(Mean<V>(left, right), middle);
}

template <class V>
void SmoothTwice(const int16_t* const* rows, const PlaneKernel& kernel, int16_t* output,
                 std::ptrdiff_t width) {
  const auto block = [&](std::ptrdiff_t x) {
    typename V::Reg row[5];
    for (int k = 0; k < 5; ++k) row[k] = V::Load(rows[k] + x);
    V::Store(output + x,
             Smooth<V>(Smooth<V>(row[0], row[1], row[2]), Smooth<V>(row[1], row[2], row[3]),
                       Smooth<V>(row[2], row[3], row[4])));
  };
  if (!CoverRow<V>(width, block)) SmoothTwicePlain(rows, kernel, output, width);
}

template <class V>
void CombineRowsLimited(const int16_t* const* rows, const PlaneKernel& kernel, int16_t* output,
                        std::ptrdiff_t width) {
  constexpr int kWeightBits = 7;
  const typename V::Reg max_luminance = V::Set16(1023);
  const auto block = [&](std::ptrdiff_t x) {
    typename V::Reg sums[2];
    WeightedSums<V>(rows, kernel, x, sums);
    for (auto& sum : sums) sum = V::ShiftRight32(sum, kWeightBits);
    const typename V::Reg value = V::PackS32(sums[0], sums[1]);
    V::Store(output + x, V::Min16(V::Max16(value, V::Zero()), max_luminance));
  };
  if (!CoverRow<V>(width, block)) CombineRowsLimitedPlain(rows, kernel, output, width);
}

}  // namespace
}  // namespace ovra
