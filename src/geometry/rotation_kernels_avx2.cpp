// SPDX-License-Identifier: MIT
#include <immintrin.h>

#include "geometry/rotation_vector_movers.h"

namespace ovra {
namespace {

struct Vector256 {
  using Type = __m256i;
  static constexpr int kLanes = 2;

  static Type Load(const uint8_t* first, const uint8_t* second) {
    return _mm256_loadu2_m128i(reinterpret_cast<const __m128i*>(second),
                               reinterpret_cast<const __m128i*>(first));
  }
  static void Store(uint8_t* first, uint8_t* second, Type vector) {
    _mm256_storeu2_m128i(reinterpret_cast<__m128i*>(second), reinterpret_cast<__m128i*>(first),
                         vector);
  }
  static void StoreAll(uint8_t* address, Type vector) {
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(address), vector);
  }
  static Type Table(const int8_t* bytes) {
    return _mm256_broadcastsi128_si256(_mm_load_si128(reinterpret_cast<const __m128i*>(bytes)));
  }
  static Type Shuffle(Type vector, Type table) { return _mm256_shuffle_epi8(vector, table); }
  static Type Or(Type a, Type b) { return _mm256_or_si256(a, b); }

  template <int kBytes>
  static Type ShiftUp(Type vector) {
    return _mm256_slli_si256(vector, kBytes);
  }
  template <int kBytes>
  static Type ShiftDown(Type vector) {
    return _mm256_srli_si256(vector, kBytes);
  }
  template <int kBytes>
  static Type InterleaveLow(Type a, Type b) {
    if constexpr (kBytes == 1) return _mm256_unpacklo_epi8(a, b);
    if constexpr (kBytes == 2) return _mm256_unpacklo_epi16(a, b);
    if constexpr (kBytes == 4) return _mm256_unpacklo_epi32(a, b);
    if constexpr (kBytes == 8) return _mm256_unpacklo_epi64(a, b);
  }
  template <int kBytes>
  static Type InterleaveHigh(Type a, Type b) {
    if constexpr (kBytes == 1) return _mm256_unpackhi_epi8(a, b);
    if constexpr (kBytes == 2) return _mm256_unpackhi_epi16(a, b);
    if constexpr (kBytes == 4) return _mm256_unpackhi_epi32(a, b);
    if constexpr (kBytes == 8) return _mm256_unpackhi_epi64(a, b);
  }
};

}  // namespace

OrientKernel* SelectOrientAvx2(Orientation orientation, int32_t bytes_per_sample) {
  return SelectOrientWith<VectorMovers<Vector256>>(orientation, bytes_per_sample);
}

}  // namespace ovra
