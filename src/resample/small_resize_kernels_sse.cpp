// SPDX-License-Identifier: MIT
#include "resample/small_resize_kernels_simd.h"

namespace ovra {
namespace {

struct Vector128 {
  using Int = __m128i;
  static constexpr std::ptrdiff_t kLanes16 = 8;

  static Int Zero() { return _mm_setzero_si128(); }
  static Int Broadcast(int32_t value) { return _mm_set1_epi32(value); }
  static Int Add(Int a, Int b) { return _mm_add_epi32(a, b); }
  static Int And(Int a, Int b) { return _mm_and_si128(a, b); }
  static Int MultiplyAddPairs(Int a, Int b) { return _mm_madd_epi16(a, b); }
  static Int InterleaveNear(Int a, Int b) { return _mm_unpacklo_epi16(a, b); }
  static Int InterleaveFar(Int a, Int b) { return _mm_unpackhi_epi16(a, b); }
  template <int kBits>
  static Int ShiftRight(Int a) {
    return _mm_srai_epi32(a, kBits);
  }
  template <int kBits>
  static Int ShiftLeft(Int a) {
    return _mm_slli_epi32(a, kBits);
  }

  static Int LoadSigned(const uint8_t* samples) {
    return _mm_cvtepu8_epi16(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(samples)));
  }
  static Int LoadSigned(const uint16_t* samples) {
    return _mm_xor_si128(_mm_loadu_si128(reinterpret_cast<const __m128i*>(samples)),
                         _mm_set1_epi16(INT16_MIN));
  }
  static void StoreInterleaved(int32_t* out, Int near, Int far) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out), near);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out + 4), far);
  }

  struct Double4 {
    __m128d low;
    __m128d high;
  };
  static Double4 BroadcastDouble(double value) { return {_mm_set1_pd(value), _mm_set1_pd(value)}; }
  static Double4 MultiplyAdd(const Double4& sum, const double* values, const Double4& factor) {
    return {_mm_add_pd(sum.low, _mm_mul_pd(_mm_load_pd(values), factor.low)),
            _mm_add_pd(sum.high, _mm_mul_pd(_mm_load_pd(values + 2), factor.high))};
  }
  static void StoreAsDoubles(double* out, __m128i values) {
    _mm_store_pd(out, _mm_cvtepi32_pd(values));
    _mm_store_pd(out + 2, _mm_cvtepi32_pd(_mm_unpackhi_epi64(values, values)));
  }
  static void StoreClamped(int32_t* out, const Double4& sum, double scale, double max) {
    const auto clamp = [&](__m128d part) {
      const __m128d scaled = _mm_mul_pd(part, _mm_set1_pd(scale));
      return _mm_cvttpd_epi32(_mm_max_pd(_mm_min_pd(scaled, _mm_set1_pd(max)), _mm_setzero_pd()));
    };
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out),
                     _mm_unpacklo_epi64(clamp(sum.low), clamp(sum.high)));
  }
};

}  // namespace

template <class Sample>
ReductionKernels<Sample> ReductionKernelsSse() {
  return {Vertical<Vector128, Sample>, Horizontal<Vector128, Sample>};
}

template ReductionKernels<uint8_t> ReductionKernelsSse();
template ReductionKernels<uint16_t> ReductionKernelsSse();

}  // namespace ovra
