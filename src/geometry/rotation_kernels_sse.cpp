// SPDX-License-Identifier: MIT
#include <smmintrin.h>

#include "geometry/rotation_vector_movers.h"

namespace ovra {
namespace {

struct Vector128 {
  using Type = __m128i;
  static constexpr int kLanes = 1;

  static Type Load(const uint8_t* first, const uint8_t* /*second*/) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(first));
  }
  static void Store(uint8_t* first, uint8_t* /*second*/, Type vector) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(first), vector);
  }
  static void StoreAll(uint8_t* address, Type vector) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(address), vector);
  }
  static Type Table(const int8_t* bytes) {
    return _mm_load_si128(reinterpret_cast<const __m128i*>(bytes));
  }
  static Type Shuffle(Type vector, Type table) { return _mm_shuffle_epi8(vector, table); }
  static Type Or(Type a, Type b) { return _mm_or_si128(a, b); }

  template <int kBytes>
  static Type ShiftUp(Type vector) {
    return _mm_slli_si128(vector, kBytes);
  }
  template <int kBytes>
  static Type ShiftDown(Type vector) {
    return _mm_srli_si128(vector, kBytes);
  }
  template <int kBytes>
  static Type InterleaveLow(Type a, Type b) {
    if constexpr (kBytes == 1) return _mm_unpacklo_epi8(a, b);
    if constexpr (kBytes == 2) return _mm_unpacklo_epi16(a, b);
    if constexpr (kBytes == 4) return _mm_unpacklo_epi32(a, b);
    if constexpr (kBytes == 8) return _mm_unpacklo_epi64(a, b);
  }
  template <int kBytes>
  static Type InterleaveHigh(Type a, Type b) {
    if constexpr (kBytes == 1) return _mm_unpackhi_epi8(a, b);
    if constexpr (kBytes == 2) return _mm_unpackhi_epi16(a, b);
    if constexpr (kBytes == 4) return _mm_unpackhi_epi32(a, b);
    if constexpr (kBytes == 8) return _mm_unpackhi_epi64(a, b);
  }
};

}  // namespace

OrientKernel* SelectOrientSse(Orientation orientation, int32_t bytes_per_sample) {
  return SelectOrientWith<VectorMovers<Vector128>>(orientation, bytes_per_sample);
}

}  // namespace ovra
