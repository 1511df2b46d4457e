// SPDX-License-Identifier: MIT
#include <smmintrin.h>

#include <cstring>

#include "resample/resize_kernels_simd.h"

namespace ovra {
namespace {

// One lane: second pointers are not read.
struct Sse {
  using Reg = __m128i;
  static constexpr int kLanes = 1;

  static Reg Load(const void* p) { return _mm_loadu_si128(static_cast<const __m128i*>(p)); }
  static Reg LoadLanes(const void* p, const void*) { return Load(p); }
  static void Store(void* p, Reg a) { _mm_storeu_si128(static_cast<__m128i*>(p), a); }
  static void StoreLane(void* p, Reg a, int) { Store(p, a); }
  // The low words of all parts.
  static void StoreLowWords(void* p, Reg a) {
    _mm_storel_epi64(static_cast<__m128i*>(p), _mm_packs_epi32(a, a));
  }

  static Reg Set32(int32_t value) { return _mm_set1_epi32(value); }
  static Reg Set16Pair(int16_t low, int16_t high) {
    return Set32(
        static_cast<int32_t>(static_cast<uint16_t>(low) | static_cast<uint32_t>(high) << 16));
  }
  static Reg BroadcastToLanes(const uint32_t* value, const uint32_t*) {
    return Set32(static_cast<int32_t>(*value));
  }
  static Reg BroadcastPart(Reg a, int part) {
    switch (part) {
      case 0:
        return _mm_shuffle_epi32(a, 0x00);
      case 1:
        return _mm_shuffle_epi32(a, 0x55);
      case 2:
        return _mm_shuffle_epi32(a, 0xAA);
      default:
        return _mm_shuffle_epi32(a, 0xFF);
    }
  }

  static Reg Add32(Reg a, Reg b) { return _mm_add_epi32(a, b); }
  static Reg AddAcross32(Reg a, Reg b) { return _mm_hadd_epi32(a, b); }
  static Reg Multiply32(Reg a, Reg b) { return _mm_mullo_epi32(a, b); }
  static Reg MultiplyAdd16(Reg a, Reg b) { return _mm_madd_epi16(a, b); }
  static Reg ShiftLeft32(Reg a, int bits) { return _mm_slli_epi32(a, bits); }
  static Reg ShiftRight32(Reg a, int bits) { return _mm_srai_epi32(a, bits); }
  static Reg FlipSign16(Reg a) { return _mm_xor_si128(a, _mm_set1_epi16(INT16_MIN)); }

  static Reg ShuffleBytes(Reg a, Reg order) { return _mm_shuffle_epi8(a, order); }
  static Reg DropWords3And7(Reg a) {
    return _mm_shuffle_epi8(a,
                            _mm_setr_epi8(0, 1, 2, 3, 4, 5, 8, 9, 10, 11, 12, 13, -1, -1, -1, -1));
  }
  // The second and the fourth part of a, then of b.
  static Reg OddParts(Reg a, Reg b) {
    return _mm_castps_si128(_mm_shuffle_ps(_mm_castsi128_ps(a), _mm_castsi128_ps(b), 0xDD));
  }
  static Reg UnpackLow16(Reg a, Reg b) { return _mm_unpacklo_epi16(a, b); }
  static Reg UnpackHigh16(Reg a, Reg b) { return _mm_unpackhi_epi16(a, b); }
  static Reg PackSigned32(Reg a, Reg b) { return _mm_packs_epi32(a, b); }
  static Reg PackUnsigned8(Reg a, Reg b) { return _mm_packus_epi16(a, b); }
  static Reg PackUnsigned16Limited(Reg a, Reg b, int32_t max) {
    return _mm_min_epu16(_mm_packus_epi32(a, b), _mm_set1_epi16(static_cast<int16_t>(max)));
  }

  static Reg EightSamples(const uint8_t* p, const uint8_t*) {
    return _mm_cvtepu8_epi16(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(p)));
  }
  static Reg EightSamples(const uint16_t* p, const uint16_t*) { return FlipSign16(Load(p)); }
  // Four samples from each of two places.
  static Reg FourSamplesOfTwo(const uint8_t* a, const uint8_t* b, const uint8_t*, const uint8_t*) {
    return _mm_cvtepu8_epi16(_mm_insert_epi32(_mm_cvtsi32_si128(Load32(a)), Load32(b), 1));
  }
  static Reg FourSamplesOfTwo(const uint16_t* a, const uint16_t* b, const uint16_t*,
                              const uint16_t*) {
    return FlipSign16(_mm_unpacklo_epi64(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(a)),
                                         _mm_loadl_epi64(reinterpret_cast<const __m128i*>(b))));
  }

 private:
  static int32_t Load32(const uint8_t* p) {
    int32_t value = 0;
    std::memcpy(&value, p, sizeof value);
    return value;
  }
};

}  // namespace

template <>
HorizontalKernel<uint8_t> SelectHorizontalSse(int32_t taps, int32_t channels) {
  return HorizontalSimd<Sse, uint8_t>(taps, channels);
}
template <>
HorizontalKernel<uint16_t> SelectHorizontalSse(int32_t taps, int32_t channels) {
  return HorizontalSimd<Sse, uint16_t>(taps, channels);
}
template <>
VerticalRow<uint8_t>* SelectVerticalSse(int32_t taps) {
  return VerticalSimd<Sse, uint8_t>(taps);
}
template <>
VerticalRow<uint16_t>* SelectVerticalSse(int32_t taps) {
  return VerticalSimd<Sse, uint16_t>(taps);
}

}  // namespace ovra
