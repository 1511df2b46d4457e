// SPDX-License-Identifier: MIT
#include <immintrin.h>

#include "color/color_matrix_kernels_simd.h"

namespace ovra {
namespace {

struct Avx2 {
  using Int = __m256i;
  using Double = __m256d;
  static constexpr int kLanes = 2;
  static constexpr int kVectorsOfFour = 1;
  struct FourDoubles {
    Double vector[kVectorsOfFour];
  };

  static Int Broadcast(__m128i lane) { return _mm256_broadcastsi128_si256(lane); }
  static Int LoadLanes(const uint8_t* bytes, std::ptrdiff_t to_next_lane) {
    return _mm256_inserti128_si256(_mm256_castsi128_si256(LoadBytes(bytes)),
                                   LoadBytes(bytes + to_next_lane), 1);
  }
  static void StoreLanes(uint8_t* bytes, std::ptrdiff_t to_next_lane, Int lanes) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(bytes), _mm256_castsi256_si128(lanes));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(bytes + to_next_lane),
                     _mm256_extracti128_si256(lanes, 1));
  }
  static Int Shuffle(Int bytes, Int places) { return _mm256_shuffle_epi8(bytes, places); }
  static Int Xor(Int a, Int b) { return _mm256_xor_si256(a, b); }
  static Int Add32(Int a, Int b) { return _mm256_add_epi32(a, b); }
  static Int Multiply32(Int a, Int b) { return _mm256_mullo_epi32(a, b); }
  static Int MultiplyAddPairs(Int a, Int b) { return _mm256_madd_epi16(a, b); }
  static Int ShiftRight32(Int a, __m128i bits) { return _mm256_sra_epi32(a, bits); }
  static Int PackSigned32(Int a, Int b) { return _mm256_packs_epi32(a, b); }
  static Int PackUnsigned32(Int a, Int b) { return _mm256_packus_epi32(a, b); }
  static Int PackUnsigned16(Int a, Int b) { return _mm256_packus_epi16(a, b); }
  static Int MinUnsigned16(Int a, Int b) { return _mm256_min_epu16(a, b); }

  static Double SetDouble(double value) { return _mm256_set1_pd(value); }
  static Double MaxDouble(Double a, Double b) { return _mm256_max_pd(a, b); }
  static Double MinDouble(Double a, Double b) { return _mm256_min_pd(a, b); }
  static FourDoubles ToDoubles(__m128i a) { return {{_mm256_cvtepi32_pd(a)}}; }
  static __m128i Truncate(const FourDoubles& a) { return _mm256_cvttpd_epi32(a.vector[0]); }
};

}  // namespace

template <class Matrix, class In, class Out>
void ConvertMatrixAvx2(const In* source, Out* destination, std::ptrdiff_t pixels,
                       const Matrix& matrix) {
  const std::ptrdiff_t done = ConvertSteps<Avx2>(source, destination, pixels, matrix);
  ConvertMatrixSse(source + 3 * done, destination + 3 * done, pixels - done, matrix);
}

template <class Matrix, class In, class Out>
using Row = ConvertMatrixRow<Matrix, In, Out>;

template Row<FixedMatrix, uint8_t, uint8_t> ConvertMatrixAvx2;
template Row<FixedMatrix, uint8_t, uint16_t> ConvertMatrixAvx2;
template Row<FixedMatrix, uint16_t, uint8_t> ConvertMatrixAvx2;
template Row<FixedMatrix, uint16_t, uint16_t> ConvertMatrixAvx2;
template Row<DoubleMatrix, uint8_t, uint8_t> ConvertMatrixAvx2;
template Row<DoubleMatrix, uint8_t, uint16_t> ConvertMatrixAvx2;
template Row<DoubleMatrix, uint16_t, uint8_t> ConvertMatrixAvx2;
template Row<DoubleMatrix, uint16_t, uint16_t> ConvertMatrixAvx2;

}  // namespace ovra
