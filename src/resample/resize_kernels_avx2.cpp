// SPDX-License-Identifier: MIT
#include <immintrin.h>

#include <cstring>

#include "resample/resize_kernels_simd.h"

namespace ovra {
namespace {

// Two lanes: first pointers are for the low one, second pointers for the high one.
struct Avx2 {
  using Reg = __m256i;
  static constexpr int kLanes = 2;

  static Reg Load(const void* p) { return _mm256_loadu_si256(static_cast<const __m256i*>(p)); }
  static Reg LoadLanes(const void* low, const void* high) {
    return _mm256_loadu2_m128i(static_cast<const __m128i*>(high), static_cast<const __m128i*>(low));
  }
  static void Store(void* p, Reg a) { _mm256_storeu_si256(static_cast<__m256i*>(p), a); }
  static void StoreLane(void* p, Reg a, int lane) {
    _mm_storeu_si128(static_cast<__m128i*>(p),
                     lane == 0 ? _mm256_castsi256_si128(a) : _mm256_extracti128_si256(a, 1));
  }
  // The low words of all parts.
  static void StoreLowWords(void* p, Reg a) {
    const Reg packed = _mm256_permute4x64_epi64(_mm256_packs_epi32(a, a), 0x08);
    _mm_storeu_si128(static_cast<__m128i*>(p), _mm256_castsi256_si128(packed));
  }

  static Reg Set32(int32_t value) { return _mm256_set1_epi32(value); }
  static Reg Set16Pair(int16_t low, int16_t high) {
    return Set32(
        static_cast<int32_t>(static_cast<uint16_t>(low) | static_cast<uint32_t>(high) << 16));
  }
  static Reg BroadcastToLanes(const uint32_t* low, const uint32_t* high) {
    return _mm256_set_m128i(_mm_set1_epi32(static_cast<int32_t>(*high)),
                            _mm_set1_epi32(static_cast<int32_t>(*low)));
  }
  static Reg BroadcastPart(Reg a, int part) {
    switch (part) {
      case 0:
        return _mm256_shuffle_epi32(a, 0x00);
      case 1:
        return _mm256_shuffle_epi32(a, 0x55);
      case 2:
        return _mm256_shuffle_epi32(a, 0xAA);
      default:
        return _mm256_shuffle_epi32(a, 0xFF);
    }
  }

  static Reg Add32(Reg a, Reg b) { return _mm256_add_epi32(a, b); }
  static Reg AddAcross32(Reg a, Reg b) { return _mm256_hadd_epi32(a, b); }
  static Reg Multiply32(Reg a, Reg b) { return _mm256_mullo_epi32(a, b); }
  static Reg MultiplyAdd16(Reg a, Reg b) { return _mm256_madd_epi16(a, b); }
  static Reg ShiftLeft32(Reg a, int bits) { return _mm256_slli_epi32(a, bits); }
  static Reg ShiftRight32(Reg a, int bits) { return _mm256_srai_epi32(a, bits); }
  static Reg FlipSign16(Reg a) { return _mm256_xor_si256(a, _mm256_set1_epi16(INT16_MIN)); }

  static Reg ShuffleBytes(Reg a, Reg order) { return _mm256_shuffle_epi8(a, order); }
  static Reg DropWords3And7(Reg a) {
    return _mm256_shuffle_epi8(a, _mm256_broadcastsi128_si256(_mm_setr_epi8(
                                      0, 1, 2, 3, 4, 5, 8, 9, 10, 11, 12, 13, -1, -1, -1, -1)));
  }
  // The second and the fourth part of a, then of b.
  static Reg OddParts(Reg a, Reg b) {
    return _mm256_castps_si256(
        _mm256_shuffle_ps(_mm256_castsi256_ps(a), _mm256_castsi256_ps(b), 0xDD));
  }
  static Reg UnpackLow16(Reg a, Reg b) { return _mm256_unpacklo_epi16(a, b); }
  static Reg UnpackHigh16(Reg a, Reg b) { return _mm256_unpackhi_epi16(a, b); }
  static Reg PackSigned32(Reg a, Reg b) { return _mm256_packs_epi32(a, b); }
  // Packs work within lanes, so that halves that were loaded as one come out apart.
  static Reg PackUnsigned8(Reg a, Reg b) { return JoinHalves(_mm256_packus_epi16(a, b)); }
  static Reg PackUnsigned16Limited(Reg a, Reg b, int32_t max) {
    return JoinHalves(
        _mm256_min_epu16(_mm256_packus_epi32(a, b), _mm256_set1_epi16(static_cast<int16_t>(max))));
  }

  static Reg EightSamples(const uint8_t* low, const uint8_t* high) {
    return _mm256_cvtepu8_epi16(
        _mm_unpacklo_epi64(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(low)),
                           _mm_loadl_epi64(reinterpret_cast<const __m128i*>(high))));
  }
  static Reg EightSamples(const uint16_t* low, const uint16_t* high) {
    return FlipSign16(LoadLanes(low, high));
  }
  // Four samples from each of two places a lane.
  static Reg FourSamplesOfTwo(const uint8_t* low_a, const uint8_t* low_b, const uint8_t* high_a,
                              const uint8_t* high_b) {
    return _mm256_cvtepu8_epi16(
        _mm_setr_epi32(Load32(low_a), Load32(low_b), Load32(high_a), Load32(high_b)));
  }
  static Reg FourSamplesOfTwo(const uint16_t* low_a, const uint16_t* low_b, const uint16_t* high_a,
                              const uint16_t* high_b) {
    return FlipSign16(_mm256_set_m128i(Load64x2(high_a, high_b), Load64x2(low_a, low_b)));
  }

 private:
  static Reg JoinHalves(Reg a) { return _mm256_permute4x64_epi64(a, 0xD8); }
  static int32_t Load32(const uint8_t* p) {
    int32_t value = 0;
    std::memcpy(&value, p, sizeof value);
    return value;
  }
  static __m128i Load64x2(const uint16_t* a, const uint16_t* b) {
    return _mm_unpacklo_epi64(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(a)),
                              _mm_loadl_epi64(reinterpret_cast<const __m128i*>(b)));
  }
};

}  // namespace

template <>
HorizontalKernel<uint8_t> SelectHorizontalAvx2(int32_t taps, int32_t channels) {
  return HorizontalSimd<Avx2, uint8_t>(taps, channels);
}
template <>
HorizontalKernel<uint16_t> SelectHorizontalAvx2(int32_t taps, int32_t channels) {
  return HorizontalSimd<Avx2, uint16_t>(taps, channels);
}
template <>
VerticalRow<uint8_t>* SelectVerticalAvx2(int32_t taps) {
  return VerticalSimd<Avx2, uint8_t>(taps);
}
template <>
VerticalRow<uint16_t>* SelectVerticalAvx2(int32_t taps) {
  return VerticalSimd<Avx2, uint16_t>(taps);
}

}  // namespace ovra
