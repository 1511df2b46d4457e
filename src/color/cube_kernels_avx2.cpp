// SPDX-License-Identifier: MIT
#include <immintrin.h>

#include "color/cube_kernel_instances.h"
#include "color/cube_kernels.h"
#include "color/cube_kernels_vector.h"

namespace ovra {
namespace {

struct Avx2 {
  using Register = __m256i;
  static constexpr int kLanes = 2;
  static constexpr int kPixels = 8;

  static Register Load(const void* p) { return _mm256_load_si256(static_cast<const __m256i*>(p)); }
  static void Store(void* p, Register a) { _mm256_store_si256(static_cast<__m256i*>(p), a); }
  static Register Set16(int value) { return _mm256_set1_epi16(static_cast<int16_t>(value)); }
  static Register Set32(int value) { return _mm256_set1_epi32(value); }
  static Register And(Register a, Register b) { return _mm256_and_si256(a, b); }
  static Register Or(Register a, Register b) { return _mm256_or_si256(a, b); }
  static Register Add(Register a, Register b) { return _mm256_add_epi32(a, b); }
  static Register Min16(Register a, Register b) { return _mm256_min_epu16(a, b); }
  static Register Multiply32(Register a, Register b) { return _mm256_mullo_epi32(a, b); }
  static Register MultiplyAddPairs(Register a, Register b) { return _mm256_madd_epi16(a, b); }
  static Register Pack32Signed(Register a, Register b) { return _mm256_packs_epi32(a, b); }
  static Register Pack32Unsigned(Register a, Register b) { return _mm256_packus_epi32(a, b); }
  static Register Pack16Unsigned(Register a, Register b) { return _mm256_packus_epi16(a, b); }
  static Register ShuffleLanes(Register a, __m128i order) {
    return _mm256_shuffle_epi8(a, _mm256_broadcastsi128_si256(order));
  }
  template <int kBits>
  static Register ShiftLeft(Register a) {
    return _mm256_slli_epi32(a, kBits);
  }
  template <int kBits>
  static Register ShiftRight(Register a) {
    return _mm256_srli_epi32(a, kBits);
  }
  template <int kBits>
  static Register ShiftRightSigned(Register a) {
    return _mm256_srai_epi32(a, kBits);
  }
  // Element kElement of each lane, in all elements of the lane.
  template <int kElement>
  static Register Spread(Register a) {
    return _mm256_shuffle_epi32(a, kElement * 0x55);
  }
  // 16 bytes of the cell cells[0] in lane 0, of cells[4] in lane 1.
  template <class Coefficient>
  static Register LoadLanes(const Coefficient* first, int cell_entries, const uint32_t* cells) {
    const auto entries = static_cast<size_t>(cell_entries);
    const auto* low = reinterpret_cast<const __m128i*>(first + cells[0] * entries);
    const auto* high = reinterpret_cast<const __m128i*>(first + cells[4] * entries);
    return _mm256_inserti128_si256(_mm256_castsi128_si256(_mm_load_si128(low)),
                                   _mm_load_si128(high), 1);
  }
  static void StoreLane(void* p, Register a, int lane) {
    const __m128i half = lane == 0 ? _mm256_castsi256_si128(a) : _mm256_extracti128_si256(a, 1);
    _mm_storeu_si128(static_cast<__m128i*>(p), half);
  }
};

template <class Input, class Output, class Coefficient, int kChannels>
struct Avx2Kernel : VectorKernel<Avx2, Input, Output, Coefficient, kChannels> {};

}  // namespace

ConvertCubeRow* SelectCubeRowAvx2(const CubeKernelShape& shape) {
  return CubeKernelInstance<Avx2Kernel>(shape);
}

}  // namespace ovra
