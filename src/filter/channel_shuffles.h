// SPDX-License-Identifier: MIT
// Between three-byte pixels and separate channels, in registers. For kernel files.
#pragma once

#include "filter/vector_ops.h"

namespace ovra {
namespace {

// Bytes 0, 3, 6 ... of 48 are the first of three results, 1, 4, 7 ... the second.
inline void Deinterleave16(const uint8_t* pixels, __m128i channels[3]) {
  const __m128i first = Sse::Load(pixels);
  const __m128i second = Sse::Load(pixels + 16);
  const __m128i third = Sse::Load(pixels + 32);
  const char z = -1;
  channels[0] = _mm_or_si128(
      _mm_or_si128(
          _mm_shuffle_epi8(first, _mm_setr_epi8(0, 3, 6, 9, 12, 15, z, z, z, z, z, z, z, z, z, z)),
          _mm_shuffle_epi8(second,
                           _mm_setr_epi8(z, z, z, z, z, z, 2, 5, 8, 11, 14, z, z, z, z, z))),
      _mm_shuffle_epi8(third, _mm_setr_epi8(z, z, z, z, z, z, z, z, z, z, z, 1, 4, 7, 10, 13)));
  channels[1] = _mm_or_si128(
      _mm_or_si128(
          _mm_shuffle_epi8(first, _mm_setr_epi8(1, 4, 7, 10, 13, z, z, z, z, z, z, z, z, z, z, z)),
          _mm_shuffle_epi8(second,
                           _mm_setr_epi8(z, z, z, z, z, 0, 3, 6, 9, 12, 15, z, z, z, z, z))),
      _mm_shuffle_epi8(third, _mm_setr_epi8(z, z, z, z, z, z, z, z, z, z, z, 2, 5, 8, 11, 14)));
  channels[2] = _mm_or_si128(
      _mm_or_si128(
          _mm_shuffle_epi8(first, _mm_setr_epi8(2, 5, 8, 11, 14, z, z, z, z, z, z, z, z, z, z, z)),
          _mm_shuffle_epi8(second,
                           _mm_setr_epi8(z, z, z, z, z, 1, 4, 7, 10, 13, z, z, z, z, z, z))),
      _mm_shuffle_epi8(third, _mm_setr_epi8(z, z, z, z, z, z, z, z, z, z, 0, 3, 6, 9, 12, 15)));
}

// 16 bytes as 16-bit samples.
inline void WidenU8(__m128i bytes, __m128i samples[2]) {
  samples[0] = _mm_cvtepu8_epi16(bytes);
  samples[1] = _mm_unpackhi_epi8(bytes, _mm_setzero_si128());
}

#ifdef __AVX2__
inline void WidenU8(__m128i bytes, __m256i samples[1]) {
  samples[0] = _mm256_cvtepu8_epi16(bytes);
}
#endif

// The channels of 16 pixels as 16-bit samples.
template <class V>
struct Pixels16 {
  static constexpr int kRegs = 32 / V::kBytes;

  explicit Pixels16(const uint8_t* pixels) {
    __m128i channels[3];
    Deinterleave16(pixels, channels);
    for (int c = 0; c < 3; ++c) WidenU8(channels[c], samples[c]);
  }

  typename V::Reg samples[3][kRegs];
};

// Bytes of three channels, 16 each, to 16 pixels.
inline void Interleave16(__m128i c0, __m128i c1, __m128i c2, uint8_t* pixels) {
  const char z = -1;
  const __m128i first = _mm_or_si128(
      _mm_or_si128(
          _mm_shuffle_epi8(c0, _mm_setr_epi8(0, z, z, 1, z, z, 2, z, z, 3, z, z, 4, z, z, 5)),
          _mm_shuffle_epi8(c1, _mm_setr_epi8(z, 0, z, z, 1, z, z, 2, z, z, 3, z, z, 4, z, z))),
      _mm_shuffle_epi8(c2, _mm_setr_epi8(z, z, 0, z, z, 1, z, z, 2, z, z, 3, z, z, 4, z)));
  const __m128i second = _mm_or_si128(
      _mm_or_si128(
          _mm_shuffle_epi8(c0, _mm_setr_epi8(z, z, 6, z, z, 7, z, z, 8, z, z, 9, z, z, 10, z)),
          _mm_shuffle_epi8(c1, _mm_setr_epi8(5, z, z, 6, z, z, 7, z, z, 8, z, z, 9, z, z, 10))),
      _mm_shuffle_epi8(c2, _mm_setr_epi8(z, 5, z, z, 6, z, z, 7, z, z, 8, z, z, 9, z, z)));
  const __m128i third = _mm_or_si128(
      _mm_or_si128(
          _mm_shuffle_epi8(c0, _mm_setr_epi8(z, 11, z, z, 12, z, z, 13, z, z, 14, z, z, 15, z, z)),
          _mm_shuffle_epi8(c1, _mm_setr_epi8(z, z, 11, z, z, 12, z, z, 13, z, z, 14, z, z, 15, z))),
      _mm_shuffle_epi8(c2, _mm_setr_epi8(10, z, z, 11, z, z, 12, z, z, 13, z, z, 14, z, z, 15)));
  Sse::Store(pixels, first);
  Sse::Store(pixels + 16, second);
  Sse::Store(pixels + 32, third);
}

// The same from registers whose bytes are ordered as packing orders them.
inline void InterleaveChannels(const __m128i channels[3], uint8_t* pixels) {
  Interleave16(channels[0], channels[1], channels[2], pixels);
}

#ifdef __AVX2__
inline void InterleaveChannels(const __m256i channels[3], uint8_t* pixels) {
  __m256i ordered[3];
  for (int c = 0; c < 3; ++c) ordered[c] = _mm256_permute4x64_epi64(channels[c], 0xD8);
  Interleave16(_mm256_castsi256_si128(ordered[0]), _mm256_castsi256_si128(ordered[1]),
               _mm256_castsi256_si128(ordered[2]), pixels);
  Interleave16(_mm256_extracti128_si256(ordered[0], 1), _mm256_extracti128_si256(ordered[1], 1),
               _mm256_extracti128_si256(ordered[2], 1), pixels + 48);
}
#endif

}  // namespace
}  // namespace ovra
