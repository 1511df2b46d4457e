// SPDX-License-Identifier: MIT
// The vector forms, for registers of any width. Included by one kernel file a tier.
#pragma once

#include "filter/plane_filter/kernels_vector.h"
#include "filter/yusm/kernels.h"

namespace ovra {
namespace {

template <class V>
void CombineRowsLimited(const int16_t* const* rows, const PlaneKernel& kernel, int16_t* output,
                        std::ptrdiff_t width) {
  const auto max_luminance = V::Set16(kMaxLuminance);
  const auto block = [&](std::ptrdiff_t x) {
    typename V::Reg sums[2];
    WeightedSums<V>(rows, kernel, x, sums);
    for (auto& sum : sums) sum = V::ShiftRight32(sum, kPlaneUnitBits);
    const auto value = V::PackS32(sums[0], sums[1]);
    V::Store(output + x, V::Min16(V::Max16(value, V::Zero()), max_luminance));
  };
  if (!CoverSamples<V>(width, block)) {
    NarrowerThan<V>(kYUsmPlain, kYUsmSse).limited(rows, kernel, output, width);
  }
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
  if (!CoverSamples<V>(width, block)) {
    NarrowerThan<V>(kYUsmPlain, kYUsmSse).smooth_twice(rows, kernel, output, width);
  }
}

// As 1, 4, 6, 4, 1 sixteenths: sums of 16 bits, and none beyond the luminance.
template <class V>
void FiveTaps(const int16_t* const* rows, const PlaneKernel& kernel, int16_t* output,
              std::ptrdiff_t width) {
  const auto block = [&](std::ptrdiff_t x) {
    const auto outer = V::Add16(V::Load(rows[0] + x), V::Load(rows[4] + x));
    const auto inner = V::Add16(V::Load(rows[1] + x), V::Load(rows[3] + x));
    const auto middle = V::Load(rows[2] + x);
    const auto fours = V::ShiftLeft16(V::Add16(inner, middle), 2);
    const auto rest = V::Add16(outer, V::Add16(middle, middle));
    V::Store(output + x, V::ShiftRight16(V::Add16(fours, rest), 4));
  };
  if (!CoverSamples<V>(width, block)) {
    NarrowerThan<V>(kYUsmPlain, kYUsmSse).five_taps(rows, kernel, output, width);
  }
}

// Of four or eight pixels, by two look-ups each.
template <class V>
typename V::Reg LookUpDeltas(const int16_t* luminance, const int16_t* blurred,
                             const YUsmTables& tables) {
  const auto y = V::LoadS16As32(luminance);
  const auto difference = V::Sub32(y, V::LoadS16As32(blurred));
  const auto product = V::MulLow32(V::Gather32(tables.correction + kNoDifference, difference),
                                   V::Gather32(tables.level, y));
  const auto delta = V::ShiftRight32(product, tables.shift);
  // The low 16 bits under their own sign, so that the store wraps.
  return V::ShiftRight32(V::ShiftLeft32(delta, 16), 16);
}

// As YUsmProduct.
template <class V>
typename V::Reg ProductDeltas(typename V::Reg difference, const YUsmEvenDeltas& even) {
  const auto above = V::Or(V::ShiftLeft16(difference, 16 - kYUsmProductBits), V::Set16(1));
  return V::ShiftRight16(V::MulHigh16(above, V::Set16(even.factor)), even.product_shift);
}

template <class V>
void FindDeltas(const int16_t* luminance, const int16_t* blurred, int16_t* deltas,
                std::ptrdiff_t columns, const YUsmTables& tables) {
  constexpr std::ptrdiff_t kStep = V::kBytes / 2;
  const YUsmEvenDeltas& even = *tables.even;
  const auto first = V::Set16(even.levels.first);
  const auto length = V::Set16(even.levels.last - even.levels.first);
  std::ptrdiff_t x = 0;
  for (; x + kStep <= columns; x += kStep) {
    const auto y = V::Load(luminance + x);
    const auto difference = V::Sub16(y, V::Load(blurred + x));
    if (even.is_product) {
      V::Store(deltas + x, ProductDeltas<V>(difference, even));
    } else if (V::IsZero(V::SubSatU16(V::Sub16(y, first), length))) {
      const auto entry = V::Add16(difference, V::Set16(kNoDifference));
      V::Store(deltas + x, V::Gather16(even.deltas, entry));
    } else {
      for (std::ptrdiff_t half = x; half < x + kStep; half += kStep / 2) {
        V::Store32AsS16(deltas + half, LookUpDeltas<V>(luminance + half, blurred + half, tables));
      }
    }
  }
  NarrowerThan<V>(kYUsmPlain, kYUsmSse)
      .find_deltas(luminance + x, blurred + x, deltas + x, columns - x, tables);
}

template <class V>
constexpr YUsmKernels kYUsmOf = {CombineRowsLimited<V>, SmoothTwice<V>, FiveTaps<V>, FindDeltas<V>};

}  // namespace
}  // namespace ovra
