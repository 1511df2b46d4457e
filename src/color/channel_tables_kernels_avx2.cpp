// SPDX-License-Identifier: MIT
#include <immintrin.h>

#include "color/channel_tables_kernels.h"

namespace ovra {
namespace {

// The look-up is a tree: a byte shuffle picks from one of 16 table rows by the low four bits of the
// index, blends choose between rows by one further bit each. A blend looks at the top bit of every
// byte.
struct IndexBits {
  __m256i bit4;
  __m256i bit5;
  __m256i bit6;
};

inline __m256i LookUpRow(const uint8_t* row, __m256i index) {
  const auto* entries = reinterpret_cast<const __m128i*>(row);
  return _mm256_shuffle_epi8(_mm256_broadcastsi128_si256(_mm_load_si128(entries)), index);
}

inline __m256i LookUpTwoRows(const uint8_t* rows, __m256i index, const IndexBits& bits) {
  return _mm256_blendv_epi8(LookUpRow(rows, index), LookUpRow(rows + 16, index), bits.bit4);
}

inline __m256i LookUpFourRows(const uint8_t* rows, __m256i index, const IndexBits& bits) {
  return _mm256_blendv_epi8(LookUpTwoRows(rows, index, bits), LookUpTwoRows(rows + 32, index, bits),
                            bits.bit5);
}

// Entries 0..127; 0 for an index that has its top bit set, as the shuffle does it.
inline __m256i LookUpHalf(const uint8_t* half, __m256i index, const IndexBits& bits) {
  return _mm256_blendv_epi8(LookUpFourRows(half, index, bits),
                            LookUpFourRows(half + 64, index, bits), bits.bit6);
}

inline __m256i LookUp(const uint8_t* table, __m256i index) {
  // The shifts carry bits into the next byte, but only below its top bit.
  const IndexBits bits = {_mm256_slli_epi16(index, 3), _mm256_slli_epi16(index, 2),
                          _mm256_slli_epi16(index, 1)};
  const __m256i flipped = _mm256_xor_si256(index, _mm256_set1_epi8(-128));
  return _mm256_or_si256(LookUpHalf(table, index, bits), LookUpHalf(table + 128, flipped, bits));
}

// a where p % 3 == 0, b where p % 3 == 1, c where p % 3 == 2, p being the place of a byte.
inline __m256i Interleave(__m256i a, __m256i b, __m256i c) {
  const __m256i take_b = _mm256_setr_epi8(0, -1, 0, 0, -1, 0, 0, -1, 0, 0, -1, 0, 0, -1, 0, 0,  //
                                          -1, 0, 0, -1, 0, 0, -1, 0, 0, -1, 0, 0, -1, 0, 0, -1);
  const __m256i take_c = _mm256_setr_epi8(0, 0, -1, 0, 0, -1, 0, 0, -1, 0, 0, -1, 0, 0, -1, 0,  //
                                          0, -1, 0, 0, -1, 0, 0, -1, 0, 0, -1, 0, 0, -1, 0, 0);
  return _mm256_blendv_epi8(_mm256_blendv_epi8(a, b, take_b), c, take_c);
}

}  // namespace

void MapBytesAvx2(const uint8_t* source, uint8_t* destination, std::ptrdiff_t pixels,
                  const SampleTables& tables) {
  constexpr std::ptrdiff_t kPixelsPerStep = 32;
  std::ptrdiff_t i = 0;
  for (; i + kPixelsPerStep <= pixels; i += kPixelsPerStep) {
    const auto* in = reinterpret_cast<const __m256i*>(source + 3 * i);
    auto* out = reinterpret_cast<__m256i*>(destination + 3 * i);
    const __m256i a = _mm256_loadu_si256(in);
    const __m256i b = _mm256_loadu_si256(in + 1);
    const __m256i c = _mm256_loadu_si256(in + 2);
    // The three vectors begin with channels 0, 2 and 1. So the bytes of one channel lie in places
    // of their own: they gather in one vector without moving, and go back in the same way.
    const __m256i channel0 = LookUp(tables.bytes[0], Interleave(a, b, c));
    const __m256i channel1 = LookUp(tables.bytes[1], Interleave(c, a, b));
    const __m256i channel2 = LookUp(tables.bytes[2], Interleave(b, c, a));
    _mm256_storeu_si256(out, Interleave(channel0, channel1, channel2));
    _mm256_storeu_si256(out + 1, Interleave(channel2, channel0, channel1));
    _mm256_storeu_si256(out + 2, Interleave(channel1, channel2, channel0));
  }
  MapChannelsPlain(source + 3 * i, destination + 3 * i, pixels - i, tables);
}

}  // namespace ovra
