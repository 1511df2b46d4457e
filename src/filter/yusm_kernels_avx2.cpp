// SPDX-License-Identifier: MIT
#include "filter/yusm_kernels_simd.h"

namespace ovra {

void SmoothTwiceAvx2(const int16_t* const* rows, const PlaneKernel& kernel, int16_t* output,
                     std::ptrdiff_t width) {
  SmoothTwice<Avx2>(rows, kernel, output, width);
}

void CombineRowsLimitedAvx2(const int16_t* const* rows, const PlaneKernel& kernel, int16_t* output,
                            std::ptrdiff_t width) {
  CombineRowsLimited<Avx2>(rows, kernel, output, width);
}

void FindDeltasAvx2(const int16_t* luminance, const int16_t* blurred, int16_t* deltas,
                    std::ptrdiff_t columns, const YUsmTables& tables) {
  constexpr std::ptrdiff_t kColumns = 8;
  const int* const no_difference = tables.correction + 1024;
  const __m128i shift = _mm_cvtsi32_si128(tables.shift);
  std::ptrdiff_t x = 0;
  for (; x + kColumns <= columns; x += kColumns) {
    const __m256i y = _mm256_cvtepi16_epi32(Sse::Load(luminance + x));
    const __m256i difference = _mm256_sub_epi32(y, _mm256_cvtepi16_epi32(Sse::Load(blurred + x)));
    const __m256i correction = _mm256_i32gather_epi32(no_difference, difference, 4);
    const __m256i level = _mm256_i32gather_epi32(tables.level, y, 4);
    const __m256i product = _mm256_sra_epi32(_mm256_mullo_epi32(correction, level), shift);
    // Keeps the low 16 bits, so that packing wraps.
    const __m256i delta = _mm256_srai_epi32(_mm256_slli_epi32(product, 16), 16);
    Sse::Store(deltas + x,
               _mm_packs_epi32(_mm256_castsi256_si128(delta), _mm256_extracti128_si256(delta, 1)));
  }
  FindDeltasPlain(luminance + x, blurred + x, deltas + x, columns - x, tables);
}

}  // namespace ovra
