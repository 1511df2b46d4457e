// SPDX-License-Identifier: MIT
#include "core/composition_kernels_vector.h"

namespace ovra {
namespace {

struct Vector256 {
  using Register = __m256i;
  static constexpr std::ptrdiff_t kLanes = 2;
  static constexpr const CompositionKernels& kNarrower = kCompositionSse;

  static Register LoadLanes(const uint8_t* p, std::ptrdiff_t step) {
    return _mm256_loadu2_m128i(reinterpret_cast<const __m128i*>(p + step),
                               reinterpret_cast<const __m128i*>(p));
  }
  static void Store(uint8_t* p, Register v) {
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), v);
  }
  template <std::ptrdiff_t kBytes>
  static void StoreLanes(uint8_t* p, Register v) {
    // The bytes behind the first lane's are the second lane's, written next.
    _mm_storeu_si128(reinterpret_cast<__m128i*>(p), _mm256_castsi256_si128(v));
    StoreLane<kBytes>(p + kBytes, _mm256_extracti128_si256(v, 1));
  }
  static Register PerLane(const int8_t* bytes) {
    return _mm256_broadcastsi128_si256(_mm_load_si128(reinterpret_cast<const __m128i*>(bytes)));
  }
  static Register Words(int16_t word) { return _mm256_set1_epi16(word); }
  static Register And(Register a, Register b) { return _mm256_and_si256(a, b); }
  static Register Shuffle(Register v, Register from) { return _mm256_shuffle_epi8(v, from); }
  static Register UnpackLow(Register a, Register b) { return _mm256_unpacklo_epi8(a, b); }
  static Register UnpackHigh(Register a, Register b) { return _mm256_unpackhi_epi8(a, b); }
  static Register PackWords(Register a, Register b) { return _mm256_packus_epi16(a, b); }
  static Register MultiplyAddBytes(Register a, Register b) { return _mm256_maddubs_epi16(a, b); }
  static Register MultiplyWords(Register a, Register b) { return _mm256_mullo_epi16(a, b); }
  static Register AddWords(Register a, Register b) { return _mm256_add_epi16(a, b); }
  static Register ShiftRight8(Register v) { return _mm256_srli_epi16(v, 8); }
};

}  // namespace

const CompositionKernels kCompositionAvx2 = {kVectorKernels<Vector256, WeightOf::kDestination>,
                                             kVectorKernels<Vector256, WeightOf::kSource>};

}  // namespace ovra
