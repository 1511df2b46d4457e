// SPDX-License-Identifier: MIT
#include <immintrin.h>

#include "filter/yusm_double_kernels.h"

namespace ovra {
namespace {

__m256i LoadWide(const int16_t* values) {
  return _mm256_cvtepi16_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(values)));
}

__m256i ScaledBand(const YUsmBandTables& tables, __m256i luminance, __m256i band) {
  const __m256i low = _mm256_set1_epi32(-1024);
  const __m256i high = _mm256_set1_epi32(1023);
  const __m256i entry = _mm256_min_epi32(_mm256_max_epi32(band, low), high);
  const int* const no_difference = tables.difference + 1024;
  const __m256i difference = _mm256_i32gather_epi32(no_difference, entry, 4);
  const __m256i level = _mm256_i32gather_epi32(tables.level, luminance, 4);
  const __m256i strength = _mm256_srai_epi32(_mm256_mullo_epi32(difference, level), 8);
  return _mm256_srai_epi32(_mm256_mullo_epi32(strength, band), 16);
}

}  // namespace

void FindDoubleDeltasAvx2(const int16_t* luminance, const int16_t* coarse_blur,
                          const int16_t* fine_blur, int16_t* deltas, std::ptrdiff_t columns,
                          const YUsmDoubleTables& tables) {
  constexpr std::ptrdiff_t kColumns = 8;
  std::ptrdiff_t x = 0;
  for (; x + kColumns <= columns; x += kColumns) {
    const __m256i y = LoadWide(luminance + x);
    const __m256i coarse = LoadWide(coarse_blur + x);
    const __m256i fine = LoadWide(fine_blur + x);
    const __m256i bands =
        _mm256_add_epi32(ScaledBand(tables.coarse, y, _mm256_sub_epi32(fine, coarse)),
                         ScaledBand(tables.fine, y, _mm256_sub_epi32(y, fine)));
    const __m256i change = _mm256_add_epi32(_mm256_sub_epi32(coarse, y), bands);
    const __m256i delta = _mm256_srai_epi32(change, 2);
    _mm_storeu_si128(
        reinterpret_cast<__m128i*>(deltas + x),
        _mm_packs_epi32(_mm256_castsi256_si128(delta), _mm256_extracti128_si256(delta, 1)));
  }
  FindDoubleDeltasPlain(luminance + x, coarse_blur + x, fine_blur + x, deltas + x, columns - x,
                        tables);
}

}  // namespace ovra
