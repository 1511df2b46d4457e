// SPDX-License-Identifier: MIT
// The plane filter's kernels on vectors of any width. Included by one kernel file a tier.
#pragma once

#include "filter/plane_filter_kernels.h"
#include "filter/vector_ops.h"

namespace ovra {
namespace {

// Calls block(x) for blocks of vector width that cover the row. The last one overlaps the one
// before it, which is safe as the output is apart from the rows. False when the row is narrower.
template <class V, class Block>
bool CoverRow(std::ptrdiff_t width, const Block& block) {
  constexpr std::ptrdiff_t kLanes = V::kBytes / 2;
  if (width < kLanes) return false;
  for (std::ptrdiff_t x = 0; x + kLanes < width; x += kLanes) block(x);
  block(width - kLanes);
  return true;
}

// The mean of two, rounded down, without a wider sum.
template <class V>
typename V::Reg Mean(typename V::Reg a, typename V::Reg b) {
  return V::Add16(V::And(a, b), V::ShiftRight16(V::Xor(a, b), 1));
}

template <class V>
void CombineRowsThreeTaps(const int16_t* const* rows, const PlaneKernel& kernel, int16_t* output,
                          std::ptrdiff_t width) {
  // Rounding down twice is rounding down once: (a + 2b + c) >> 2.
  const auto block = [&](std::ptrdiff_t x) {
    const typename V::Reg outer = Mean<V>(V::Load(rows[0] + x), V::Load(rows[2] + x));
    V::Store(output + x, Mean<V>(outer, V::Load(rows[1] + x)));
  };
  if (!CoverRow<V>(width, block)) CombineRowsShiftPlain(rows, kernel, output, width);
}

// The weighted sums for one block, modulo 2^32: those of the lower half of each lane in sums[0].
template <class V>
void WeightedSums(const int16_t* const* rows, const PlaneKernel& kernel, std::ptrdiff_t x,
                  typename V::Reg sums[2]) {
  using Reg = typename V::Reg;
  sums[0] = V::Zero();
  sums[1] = V::Zero();
  for (std::ptrdiff_t k = 0; k < kernel.taps; k += 2) {
    const Reg a = V::Load(rows[k] + x);
    const Reg b = k + 1 < kernel.taps ? V::Load(rows[k + 1] + x) : V::Zero();
    const Reg weights = V::Set32(kernel.weight_pairs[k / 2]);
    sums[0] = V::Add32(sums[0], V::MulAdd16(V::UnpackLow16(a, b), weights));
    sums[1] = V::Add32(sums[1], V::MulAdd16(V::UnpackHigh16(a, b), weights));
  }
}

template <class V>
void CombineRowsShift(const int16_t* const* rows, const PlaneKernel& kernel, int16_t* output,
                      std::ptrdiff_t width) {
  static_assert(kPlaneUnitSum == 1 << 7);
  const auto block = [&](std::ptrdiff_t x) {
    typename V::Reg sums[2];
    WeightedSums<V>(rows, kernel, x, sums);
    // Shifted so that the 16 bits to keep come down with their own sign: packing then wraps.
    for (auto& sum : sums) sum = V::ShiftRight32(V::ShiftLeft32(sum, 9), 16);
    V::Store(output + x, V::PackS32(sums[0], sums[1]));
  };
  if (!CoverRow<V>(width, block)) CombineRowsShiftPlain(rows, kernel, output, width);
}

// Divides by a positive integer, of which the reciprocal is given, toward zero. With a half added
// to its magnitude no quotient is closer to an integer than half of that reciprocal, which is far
// more than what the product of doubles can be off.
inline __m128i DivideTowardZero(__m128i a, double reciprocal) {
  const __m128d sign = _mm_set1_pd(-0.0);
  const auto divide = [&](__m128i pair) {
    const __m128d value = _mm_cvtepi32_pd(pair);
    const __m128d half = _mm_or_pd(_mm_and_pd(value, sign), _mm_set1_pd(0.5));
    return _mm_cvttpd_epi32(_mm_mul_pd(_mm_add_pd(value, half), _mm_set1_pd(reciprocal)));
  };
  return _mm_unpacklo_epi64(divide(a), divide(_mm_unpackhi_epi64(a, a)));
}

#ifdef __AVX2__
inline __m256i DivideTowardZero(__m256i a, double reciprocal) {
  const __m256d sign = _mm256_set1_pd(-0.0);
  const auto divide = [&](__m128i four) {
    const __m256d value = _mm256_cvtepi32_pd(four);
    const __m256d half = _mm256_or_pd(_mm256_and_pd(value, sign), _mm256_set1_pd(0.5));
    return _mm256_cvttpd_epi32(
        _mm256_mul_pd(_mm256_add_pd(value, half), _mm256_set1_pd(reciprocal)));
  };
  return _mm256_set_m128i(divide(_mm256_extracti128_si256(a, 1)),
                          divide(_mm256_castsi256_si128(a)));
}
#endif

template <class V>
void CombineRowsDivide(const int16_t* const* rows, const PlaneKernel& kernel, int16_t* output,
                       std::ptrdiff_t width) {
  const double reciprocal = 1.0 / kernel.sum;
  const auto block = [&](std::ptrdiff_t x) {
    typename V::Reg sums[2];
    WeightedSums<V>(rows, kernel, x, sums);
    for (auto& sum : sums) {
      // Keeps the low 16 bits, so that packing wraps.
      sum = V::ShiftRight32(V::ShiftLeft32(DivideTowardZero(sum, reciprocal), 16), 16);
    }
    V::Store(output + x, V::PackS32(sums[0], sums[1]));
  };
  if (!CoverRow<V>(width, block)) CombineRowsDividePlain(rows, kernel, output, width);
}

}  // namespace
}  // namespace ovra
