// SPDX-License-Identifier: MIT
#include <smmintrin.h>

#include "color/cube_kernel_instances.h"
#include "color/cube_kernels.h"
#include "color/cube_kernels_vector.h"

namespace ovra {
namespace {

struct Sse {
  using Register = __m128i;
  static constexpr int kLanes = 1;
  static constexpr int kPixels = 4;

  static Register Load(const void* p) { return _mm_load_si128(static_cast<const __m128i*>(p)); }
  static void Store(void* p, Register a) { _mm_store_si128(static_cast<__m128i*>(p), a); }
  static Register Set16(int value) { return _mm_set1_epi16(static_cast<int16_t>(value)); }
  static Register Set32(int value) { return _mm_set1_epi32(value); }
  static Register And(Register a, Register b) { return _mm_and_si128(a, b); }
  static Register Or(Register a, Register b) { return _mm_or_si128(a, b); }
  static Register Add(Register a, Register b) { return _mm_add_epi32(a, b); }
  static Register Min16(Register a, Register b) { return _mm_min_epu16(a, b); }
  static Register Multiply32(Register a, Register b) { return _mm_mullo_epi32(a, b); }
  static Register MultiplyAddPairs(Register a, Register b) { return _mm_madd_epi16(a, b); }
  static Register Pack32Signed(Register a, Register b) { return _mm_packs_epi32(a, b); }
  static Register Pack32Unsigned(Register a, Register b) { return _mm_packus_epi32(a, b); }
  static Register Pack16Unsigned(Register a, Register b) { return _mm_packus_epi16(a, b); }
  static Register ShuffleLanes(Register a, __m128i order) { return _mm_shuffle_epi8(a, order); }
  template <int kBits>
  static Register ShiftLeft(Register a) {
    return _mm_slli_epi32(a, kBits);
  }
  template <int kBits>
  static Register ShiftRight(Register a) {
    return _mm_srli_epi32(a, kBits);
  }
  template <int kBits>
  static Register ShiftRightSigned(Register a) {
    return _mm_srai_epi32(a, kBits);
  }
  // Element kElement of each lane, in all elements of the lane.
  template <int kElement>
  static Register Spread(Register a) {
    return _mm_shuffle_epi32(a, kElement * 0x55);
  }
  // 16 bytes of the cell cells[0].
  template <class Coefficient>
  static Register LoadLanes(const Coefficient* first, int cell_entries, const uint32_t* cells) {
    return Load(first + cells[0] * static_cast<size_t>(cell_entries));
  }
  static void StoreLane(void* p, Register a, int /*lane*/) {
    _mm_storeu_si128(static_cast<__m128i*>(p), a);
  }
};

template <class Input, class Output, class Coefficient, int kChannels>
struct SseKernel : VectorKernel<Sse, Input, Output, Coefficient, kChannels> {};

}  // namespace

ConvertCubeRow* SelectCubeRowSse(const CubeKernelShape& shape) {
  return CubeKernelInstance<SseKernel>(shape);
}

}  // namespace ovra
