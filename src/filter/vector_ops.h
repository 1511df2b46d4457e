// SPDX-License-Identifier: MIT
// The vector instructions that the filter kernels share, one class for each register width. For
// kernel files compiled with a tier's flags; SSE4.1 is enough for Sse, Avx2 exists where AVX2 does.
//
// Packing and unpacking act within lanes of 128 bits, as the instructions do: an unpacking undoes
// the packing of two registers, whatever their width.
#pragma once

#include <immintrin.h>

#include <cstddef>
#include <cstdint>

namespace ovra {
namespace {

struct Sse {
  using Reg = __m128i;
  static constexpr std::ptrdiff_t kBytes = 16;

  static Reg Load(const void* p) { return _mm_loadu_si128(static_cast<const Reg*>(p)); }
  static void Store(void* p, Reg a) { _mm_storeu_si128(static_cast<Reg*>(p), a); }
  // As many bytes as there are 16-bit lanes; stored bytes saturate.
  static Reg LoadBytes(const void* p) {
    return _mm_cvtepu8_epi16(_mm_loadl_epi64(static_cast<const __m128i*>(p)));
  }
  static void StoreBytes(void* p, Reg a) {
    _mm_storel_epi64(static_cast<__m128i*>(p), _mm_packus_epi16(a, a));
  }
  // 16 bytes, the same in all lanes.
  static Reg LoadLanes(const void* p) { return Load(p); }

  static Reg Zero() { return _mm_setzero_si128(); }
  static Reg Set8(int32_t v) { return _mm_set1_epi8(static_cast<char>(v)); }
  static Reg Set16(int32_t v) { return _mm_set1_epi16(static_cast<int16_t>(v)); }
  static Reg Set32(int32_t v) { return _mm_set1_epi32(v); }

  static Reg And(Reg a, Reg b) { return _mm_and_si128(a, b); }
  static Reg AndNot(Reg a, Reg b) { return _mm_andnot_si128(a, b); }  // b without a
  static Reg Xor(Reg a, Reg b) { return _mm_xor_si128(a, b); }

  static Reg Shuffle8(Reg bytes, Reg order) { return _mm_shuffle_epi8(bytes, order); }
  static Reg SaturatedAddU8(Reg a, Reg b) { return _mm_adds_epu8(a, b); }
  static Reg SaturatedSubU8(Reg a, Reg b) { return _mm_subs_epu8(a, b); }
  static Reg AverageU8(Reg a, Reg b) { return _mm_avg_epu8(a, b); }
  static Reg UnpackLow8(Reg a, Reg b) { return _mm_unpacklo_epi8(a, b); }
  static Reg UnpackHigh8(Reg a, Reg b) { return _mm_unpackhi_epi8(a, b); }

  static Reg Add16(Reg a, Reg b) { return _mm_add_epi16(a, b); }
  static Reg Sub16(Reg a, Reg b) { return _mm_sub_epi16(a, b); }
  static Reg Min16(Reg a, Reg b) { return _mm_min_epi16(a, b); }
  static Reg Max16(Reg a, Reg b) { return _mm_max_epi16(a, b); }
  static Reg MinU16(Reg a, Reg b) { return _mm_min_epu16(a, b); }
  static Reg MaxU16(Reg a, Reg b) { return _mm_max_epu16(a, b); }
  static Reg Equal16(Reg a, Reg b) { return _mm_cmpeq_epi16(a, b); }
  static Reg Abs16(Reg a) { return _mm_abs_epi16(a); }
  static Reg MulHigh16(Reg a, Reg b) { return _mm_mulhi_epi16(a, b); }
  static Reg MulHighU16(Reg a, Reg b) { return _mm_mulhi_epu16(a, b); }
  static Reg MulLow16(Reg a, Reg b) { return _mm_mullo_epi16(a, b); }
  static Reg MulAdd16(Reg a, Reg b) { return _mm_madd_epi16(a, b); }
  static Reg ShiftRightU16(Reg a, int n) { return _mm_srli_epi16(a, n); }
  static Reg ShiftRight16(Reg a, int n) { return _mm_srai_epi16(a, n); }
  static Reg PackU16(Reg a, Reg b) { return _mm_packus_epi16(a, b); }
  static Reg UnpackLow16(Reg a, Reg b) { return _mm_unpacklo_epi16(a, b); }
  static Reg UnpackHigh16(Reg a, Reg b) { return _mm_unpackhi_epi16(a, b); }

  static Reg Add32(Reg a, Reg b) { return _mm_add_epi32(a, b); }
  static Reg ShiftLeft32(Reg a, int n) { return _mm_slli_epi32(a, n); }
  static Reg ShiftRight32(Reg a, int n) { return _mm_srai_epi32(a, n); }
  static Reg PackS32(Reg a, Reg b) { return _mm_packs_epi32(a, b); }
};

#ifdef __AVX2__
struct Avx2 {
  using Reg = __m256i;
  static constexpr std::ptrdiff_t kBytes = 32;

  static Reg Load(const void* p) { return _mm256_loadu_si256(static_cast<const Reg*>(p)); }
  static void Store(void* p, Reg a) { _mm256_storeu_si256(static_cast<Reg*>(p), a); }
  static Reg LoadBytes(const void* p) { return _mm256_cvtepu8_epi16(Sse::Load(p)); }
  static void StoreBytes(void* p, Reg a) {
    Sse::Store(p, _mm_packus_epi16(_mm256_castsi256_si128(a), _mm256_extracti128_si256(a, 1)));
  }
  static Reg LoadLanes(const void* p) { return _mm256_broadcastsi128_si256(Sse::Load(p)); }

  static Reg Zero() { return _mm256_setzero_si256(); }
  static Reg Set8(int32_t v) { return _mm256_set1_epi8(static_cast<char>(v)); }
  static Reg Set16(int32_t v) { return _mm256_set1_epi16(static_cast<int16_t>(v)); }
  static Reg Set32(int32_t v) { return _mm256_set1_epi32(v); }

  static Reg And(Reg a, Reg b) { return _mm256_and_si256(a, b); }
  static Reg AndNot(Reg a, Reg b) { return _mm256_andnot_si256(a, b); }  // b without a
  static Reg Xor(Reg a, Reg b) { return _mm256_xor_si256(a, b); }

  static Reg Shuffle8(Reg bytes, Reg order) { return _mm256_shuffle_epi8(bytes, order); }
  static Reg SaturatedAddU8(Reg a, Reg b) { return _mm256_adds_epu8(a, b); }
  static Reg SaturatedSubU8(Reg a, Reg b) { return _mm256_subs_epu8(a, b); }
  static Reg AverageU8(Reg a, Reg b) { return _mm256_avg_epu8(a, b); }
  static Reg UnpackLow8(Reg a, Reg b) { return _mm256_unpacklo_epi8(a, b); }
  static Reg UnpackHigh8(Reg a, Reg b) { return _mm256_unpackhi_epi8(a, b); }

  static Reg Add16(Reg a, Reg b) { return _mm256_add_epi16(a, b); }
  static Reg Sub16(Reg a, Reg b) { return _mm256_sub_epi16(a, b); }
  static Reg Min16(Reg a, Reg b) { return _mm256_min_epi16(a, b); }
  static Reg Max16(Reg a, Reg b) { return _mm256_max_epi16(a, b); }
  static Reg MinU16(Reg a, Reg b) { return _mm256_min_epu16(a, b); }
  static Reg MaxU16(Reg a, Reg b) { return _mm256_max_epu16(a, b); }
  static Reg Equal16(Reg a, Reg b) { return _mm256_cmpeq_epi16(a, b); }
  static Reg Abs16(Reg a) { return _mm256_abs_epi16(a); }
  static Reg MulHigh16(Reg a, Reg b) { return _mm256_mulhi_epi16(a, b); }
  static Reg MulHighU16(Reg a, Reg b) { return _mm256_mulhi_epu16(a, b); }
  static Reg MulLow16(Reg a, Reg b) { return _mm256_mullo_epi16(a, b); }
  static Reg MulAdd16(Reg a, Reg b) { return _mm256_madd_epi16(a, b); }
  static Reg ShiftRightU16(Reg a, int n) { return _mm256_srli_epi16(a, n); }
  static Reg ShiftRight16(Reg a, int n) { return _mm256_srai_epi16(a, n); }
  static Reg PackU16(Reg a, Reg b) { return _mm256_packus_epi16(a, b); }
  static Reg UnpackLow16(Reg a, Reg b) { return _mm256_unpacklo_epi16(a, b); }
  static Reg UnpackHigh16(Reg a, Reg b) { return _mm256_unpackhi_epi16(a, b); }

  static Reg Add32(Reg a, Reg b) { return _mm256_add_epi32(a, b); }
  static Reg ShiftLeft32(Reg a, int n) { return _mm256_slli_epi32(a, n); }
  static Reg ShiftRight32(Reg a, int n) { return _mm256_srai_epi32(a, n); }
  static Reg PackS32(Reg a, Reg b) { return _mm256_packs_epi32(a, b); }
};
#endif

}  // namespace
}  // namespace ovra
