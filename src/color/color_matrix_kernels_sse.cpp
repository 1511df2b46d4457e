// SPDX-License-Identifier: MIT
#include <smmintrin.h>

#include "color/color_matrix_kernels_simd.h"

namespace ovra {
namespace {

struct Sse {
  using Int = __m128i;
  using Double = __m128d;
  static constexpr int kLanes = 1;
  static constexpr int kVectorsOfFour = 2;
  struct FourDoubles {
    Double vector[kVectorsOfFour];
  };

  static Int Broadcast(__m128i lane) { return lane; }
  static Int LoadLanes(const uint8_t* bytes, std::ptrdiff_t /*to_next_lane*/) {
    return LoadBytes(bytes);
  }
  static void StoreLanes(uint8_t* bytes, std::ptrdiff_t /*to_next_lane*/, Int lanes) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(bytes), lanes);
  }
  static Int Shuffle(Int bytes, Int places) { return _mm_shuffle_epi8(bytes, places); }
  static Int Xor(Int a, Int b) { return _mm_xor_si128(a, b); }
  static Int Add32(Int a, Int b) { return _mm_add_epi32(a, b); }
  static Int Multiply32(Int a, Int b) { return _mm_mullo_epi32(a, b); }
  static Int MultiplyAddPairs(Int a, Int b) { return _mm_madd_epi16(a, b); }
  static Int ShiftRight32(Int a, __m128i bits) { return _mm_sra_epi32(a, bits); }
  static Int PackSigned32(Int a, Int b) { return _mm_packs_epi32(a, b); }
  static Int PackUnsigned32(Int a, Int b) { return _mm_packus_epi32(a, b); }
  static Int PackUnsigned16(Int a, Int b) { return _mm_packus_epi16(a, b); }
  static Int MinUnsigned16(Int a, Int b) { return _mm_min_epu16(a, b); }

  static Double SetDouble(double value) { return _mm_set1_pd(value); }
  static Double MaxDouble(Double a, Double b) { return _mm_max_pd(a, b); }
  static Double MinDouble(Double a, Double b) { return _mm_min_pd(a, b); }
  static FourDoubles ToDoubles(__m128i a) {
    return {{_mm_cvtepi32_pd(a), _mm_cvtepi32_pd(_mm_unpackhi_epi64(a, a))}};
  }
  static __m128i Truncate(const FourDoubles& a) {
    return _mm_unpacklo_epi64(_mm_cvttpd_epi32(a.vector[0]), _mm_cvttpd_epi32(a.vector[1]));
  }
};

}  // namespace

template <class Matrix, class In, class Out>
void ConvertMatrixSse(const In* source, Out* destination, std::ptrdiff_t pixels,
                      const Matrix& matrix) {
  const std::ptrdiff_t done = ConvertSteps<Sse>(source, destination, pixels, matrix);
  ConvertMatrixPlain(source + 3 * done, destination + 3 * done, pixels - done, matrix);
}

template <class Matrix, class In, class Out>
using Row = ConvertMatrixRow<Matrix, In, Out>;

template Row<FixedMatrix, uint8_t, uint8_t> ConvertMatrixSse;
template Row<FixedMatrix, uint8_t, uint16_t> ConvertMatrixSse;
template Row<FixedMatrix, uint16_t, uint8_t> ConvertMatrixSse;
template Row<FixedMatrix, uint16_t, uint16_t> ConvertMatrixSse;
template Row<DoubleMatrix, uint8_t, uint8_t> ConvertMatrixSse;
template Row<DoubleMatrix, uint8_t, uint16_t> ConvertMatrixSse;
template Row<DoubleMatrix, uint16_t, uint8_t> ConvertMatrixSse;
template Row<DoubleMatrix, uint16_t, uint16_t> ConvertMatrixSse;

}  // namespace ovra
