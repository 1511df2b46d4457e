// SPDX-License-Identifier: MIT
// The vector forms, for registers of any width. Included by one kernel file a tier.
#pragma once

#include "core/vector_ops.h"
#include "filter/plane_filter/kernels.h"

namespace ovra {
namespace {

// Calls block(x) for blocks of a register's 16-bit samples, as CoverRow does.
template <class V, class Block>
bool CoverSamples(std::ptrdiff_t width, const Block& block) {
  return CoverRow(width, V::kBytes / 2, block);
}

// (left + 2 middle + right) >> 2, of samples below 2^13.
template <class V>
typename V::Reg Smooth(typename V::Reg left, typename V::Reg middle, typename V::Reg right) {
  return V::ShiftRight16(V::Add16(V::Add16(left, right), V::Add16(middle, middle)), 2);
}

template <class V>
void CombineRowsThreeTaps(const int16_t* const* rows, const PlaneKernel& kernel, int16_t* output,
                          std::ptrdiff_t width) {
  const auto block = [&](std::ptrdiff_t x) {
    V::Store(output + x,
             Smooth<V>(V::Load(rows[0] + x), V::Load(rows[1] + x), V::Load(rows[2] + x)));
  };
  if (!CoverSamples<V>(width, block)) {
    NarrowerThan<V>(kPlaneFilterPlain, kPlaneFilterSse).three_taps(rows, kernel, output, width);
  }
}

// The weighted sums for one block, modulo 2^32: those of the lower half of each lane in sums[0].
// Rows of equal weights, the first and the last and so on, may be added first.
template <class V, bool kMirrored = false>
void WeightedSums(const int16_t* const* rows, const PlaneKernel& kernel, std::ptrdiff_t x,
                  typename V::Reg (&sums)[2]) {
  using Reg = typename V::Reg;
  sums[0] = V::Zero();
  sums[1] = V::Zero();
  const std::ptrdiff_t taps = kMirrored ? (kernel.taps + 1) / 2 : kernel.taps;
  const auto row = [&](std::ptrdiff_t k) {
    const std::ptrdiff_t other = kernel.taps - 1 - k;
    const Reg samples = V::Load(rows[k] + x);
    return kMirrored && other != k ? V::Add16(samples, V::Load(rows[other] + x)) : samples;
  };
  for (std::ptrdiff_t k = 0; k < taps; k += 2) {
    const Reg a = row(k);
    const Reg b = k + 1 < taps ? row(k + 1) : V::Zero();
    const Reg weights = V::Set32(kernel.weight_pairs[k / 2]);
    sums[0] = V::Add32(sums[0], V::MulAdd16(V::template UnpackLow<16>(a, b), weights));
    sums[1] = V::Add32(sums[1], V::MulAdd16(V::template UnpackHigh<16>(a, b), weights));
  }
}

// The low 16 bits of each 32-bit element: brought under their own sign, so that packing wraps.
template <class V>
typename V::Reg PackWrapped(typename V::Reg low, typename V::Reg high) {
  return V::PackS32(V::ShiftRight32(V::ShiftLeft32(low, 16), 16),
                    V::ShiftRight32(V::ShiftLeft32(high, 16), 16));
}

template <class V, bool kMirrored>
void CombineRowsShift(const int16_t* const* rows, const PlaneKernel& kernel, int16_t* output,
                      std::ptrdiff_t width) {
  const auto block = [&](std::ptrdiff_t x) {
    typename V::Reg sums[2];
    WeightedSums<V, kMirrored>(rows, kernel, x, sums);
    // As PackWrapped, of the sums shifted down.
    for (auto& sum : sums) sum = V::ShiftRight32(V::ShiftLeft32(sum, 16 - kPlaneUnitBits), 16);
    V::Store(output + x, V::PackS32(sums[0], sums[1]));
  };
  if (!CoverSamples<V>(width, block)) {
    NarrowerThan<V>(kPlaneFilterPlain, kPlaneFilterSse).shift(rows, kernel, output, width);
  }
}

// Sums of 16 bits: one for each half of the weights, of which the tap in the middle of the sum has a
// part in both.
template <class V>
void CombineLuminanceRows(const int16_t* const* rows, const PlaneKernel& kernel, int16_t* output,
                          std::ptrdiff_t width) {
  using Reg = typename V::Reg;
  const std::ptrdiff_t taps = (kernel.taps + 1) / 2;
  const auto rows_of = [&](std::ptrdiff_t k) { return kernel.taps - 1 - k == k ? 1 : 2; };
  std::ptrdiff_t divided = 0;
  int32_t left = kPlaneUnitSum / 2;
  for (; rows_of(divided) * kernel.weights[divided] <= left; ++divided) {
    left -= rows_of(divided) * kernel.weights[divided];
  }
  const int32_t first_part = left / rows_of(divided);
  const Reg first_weight = V::Set16(first_part);
  const Reg second_weight = V::Set16(kernel.weights[divided] - first_part);
  const auto add = [&](std::ptrdiff_t k, std::ptrdiff_t x, Reg weight, Reg(&sums)[2]) {
    for (int r = 0; r < 2; ++r) {
      const std::ptrdiff_t at = x + r * (V::kBytes / 2);
      const Reg samples = V::Load(rows[k] + at);
      const Reg both =
          rows_of(k) == 1 ? samples : V::Add16(samples, V::Load(rows[kernel.taps - 1 - k] + at));
      sums[r] = V::Add16(sums[r], V::MulLow16(both, weight));
    }
  };
  const auto block = [&](std::ptrdiff_t x) {
    Reg first[2] = {V::Zero(), V::Zero()};
    Reg second[2] = {V::Zero(), V::Zero()};
    for (std::ptrdiff_t k = 0; k < divided; ++k) add(k, x, V::Set16(kernel.weights[k]), first);
    add(divided, x, first_weight, first);
    add(divided, x, second_weight, second);
    for (std::ptrdiff_t k = divided + 1; k < taps; ++k) {
      add(k, x, V::Set16(kernel.weights[k]), second);
    }
    for (int r = 0; r < 2; ++r) {
      // Half of both sums, rounded down, without a wider sum.
      const Reg half =
          V::Add16(V::And(first[r], second[r]), V::ShiftRightU16(V::Xor(first[r], second[r]), 1));
      V::Store(output + x + r * (V::kBytes / 2), V::ShiftRightU16(half, kPlaneUnitBits - 1));
    }
  };
  if (!CoverRow(width, V::kBytes, block)) {
    NarrowerThan<V>(kPlaneFilterPlain, kPlaneFilterSse).luminance(rows, kernel, output, width);
  }
}

// Divides four integers by a positive integer, of which the reciprocal is given, toward zero. With
// a half added to its magnitude no quotient is closer to an integer than half of that reciprocal,
// which is far more than what the product of doubles can be off.
template <class V>
Sse::Reg DivideFourTowardZero(Sse::Reg a, double reciprocal) {
  typename V::Doubles values[4 / V::kDoubles];
  V::ToDoubles(a, values);
  for (auto& value : values) {
    const auto half = V::CopySign(V::SetDoubles(0.5), value);
    value = (value + half) * V::SetDoubles(reciprocal);
  }
  return V::Truncate(values);
}

template <class V>
typename V::Reg DivideTowardZero(typename V::Reg a, double reciprocal) {
  return V::SetLanes(DivideFourTowardZero<V>(V::Lane(a, 0), reciprocal),
                     DivideFourTowardZero<V>(V::Lane(a, V::kLanes - 1), reciprocal));
}

template <class V>
void CombineRowsDivide(const int16_t* const* rows, const PlaneKernel& kernel, int16_t* output,
                       std::ptrdiff_t width) {
  const auto block = [&](std::ptrdiff_t x) {
    typename V::Reg sums[2];
    WeightedSums<V>(rows, kernel, x, sums);
    for (auto& sum : sums) sum = DivideTowardZero<V>(sum, kernel.reciprocal);
    V::Store(output + x, PackWrapped<V>(sums[0], sums[1]));
  };
  if (!CoverSamples<V>(width, block)) {
    NarrowerThan<V>(kPlaneFilterPlain, kPlaneFilterSse).divide(rows, kernel, output, width);
  }
}

template <class V>
constexpr PlaneFilterKernels kPlaneFilterOf = {CombineRowsShift<V, false>,
                                               CombineRowsShift<V, true>, CombineLuminanceRows<V>,
                                               CombineRowsDivide<V>, CombineRowsThreeTaps<V>};

}  // namespace
}  // namespace ovra
