// SPDX-License-Identifier: MIT
#include "resample/small_resize_kernels_simd.h"

namespace ovra {
namespace {

struct Vector256 {
  using Int = __m256i;
  static constexpr std::ptrdiff_t kLanes16 = 16;

  static Int Zero() { return _mm256_setzero_si256(); }
  static Int Broadcast(int32_t value) { return _mm256_set1_epi32(value); }
  static Int Add(Int a, Int b) { return _mm256_add_epi32(a, b); }
  static Int And(Int a, Int b) { return _mm256_and_si256(a, b); }
  static Int MultiplyAddPairs(Int a, Int b) { return _mm256_madd_epi16(a, b); }
  // In each 128-bit half: near holds samples 0..3 | 8..11, far 4..7 | 12..15.
  static Int InterleaveNear(Int a, Int b) { return _mm256_unpacklo_epi16(a, b); }
  static Int InterleaveFar(Int a, Int b) { return _mm256_unpackhi_epi16(a, b); }
  template <int kBits>
  static Int ShiftRight(Int a) {
    return _mm256_srai_epi32(a, kBits);
  }
  template <int kBits>
  static Int ShiftLeft(Int a) {
    return _mm256_slli_epi32(a, kBits);
  }

  static Int LoadSigned(const uint8_t* samples) {
    return _mm256_cvtepu8_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(samples)));
  }
  static Int LoadSigned(const uint16_t* samples) {
    return _mm256_xor_si256(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(samples)),
                            _mm256_set1_epi16(INT16_MIN));
  }
  static void StoreInterleaved(int32_t* out, Int near, Int far) {
    constexpr int kLowHalves = 0x20;
    constexpr int kHighHalves = 0x31;
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(out),
                        _mm256_permute2x128_si256(near, far, kLowHalves));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + 8),
                        _mm256_permute2x128_si256(near, far, kHighHalves));
  }

  using Double4 = __m256d;
  static Double4 BroadcastDouble(double value) { return _mm256_set1_pd(value); }
  static Double4 MultiplyAdd(Double4 sum, const double* values, Double4 factor) {
    return _mm256_add_pd(sum, _mm256_mul_pd(_mm256_load_pd(values), factor));
  }
  static void StoreAsDoubles(double* out, __m128i values) {
    _mm256_store_pd(out, _mm256_cvtepi32_pd(values));
  }
  static void StoreClamped(int32_t* out, Double4 sum, double scale, double max) {
    const __m256d scaled = _mm256_mul_pd(sum, _mm256_set1_pd(scale));
    const __m256d clamped =
        _mm256_max_pd(_mm256_min_pd(scaled, _mm256_set1_pd(max)), _mm256_setzero_pd());
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm256_cvttpd_epi32(clamped));
  }
};

}  // namespace

template <class Sample>
ReductionKernels<Sample> ReductionKernelsAvx2() {
  return {Vertical<Vector256, Sample>, Horizontal<Vector256, Sample>};
}

template ReductionKernels<uint8_t> ReductionKernelsAvx2();
template ReductionKernels<uint16_t> ReductionKernelsAvx2();

}  // namespace ovra
