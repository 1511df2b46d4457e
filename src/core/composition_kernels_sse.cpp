// SPDX-License-Identifier: MIT
#include "core/composition_kernels_vector.h"

namespace ovra {
namespace {

struct Vector128 {
  using Register = __m128i;
  static constexpr std::ptrdiff_t kLanes = 1;
  static constexpr const CompositionKernels& kNarrower = kCompositionPlain;

  static Register LoadLanes(const uint8_t* p, std::ptrdiff_t /*step*/) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
  }
  static void Store(uint8_t* p, Register v) { _mm_storeu_si128(reinterpret_cast<__m128i*>(p), v); }
  template <std::ptrdiff_t kBytes>
  static void StoreLanes(uint8_t* p, Register v) {
    StoreLane<kBytes>(p, v);
  }
  static Register PerLane(const int8_t* bytes) {
    return _mm_load_si128(reinterpret_cast<const __m128i*>(bytes));
  }
  static Register Words(int16_t word) { return _mm_set1_epi16(word); }
  static Register And(Register a, Register b) { return _mm_and_si128(a, b); }
  static Register Shuffle(Register v, Register from) { return _mm_shuffle_epi8(v, from); }
  static Register UnpackLow(Register a, Register b) { return _mm_unpacklo_epi8(a, b); }
  static Register UnpackHigh(Register a, Register b) { return _mm_unpackhi_epi8(a, b); }
  static Register PackWords(Register a, Register b) { return _mm_packus_epi16(a, b); }
  static Register MultiplyAddBytes(Register a, Register b) { return _mm_maddubs_epi16(a, b); }
  static Register MultiplyWords(Register a, Register b) { return _mm_mullo_epi16(a, b); }
  static Register AddWords(Register a, Register b) { return _mm_add_epi16(a, b); }
  static Register ShiftRight8(Register v) { return _mm_srli_epi16(v, 8); }
};

}  // namespace

const CompositionKernels kCompositionSse = {kVectorKernels<Vector128, WeightOf::kDestination>,
                                            kVectorKernels<Vector128, WeightOf::kSource>};

}  // namespace ovra
