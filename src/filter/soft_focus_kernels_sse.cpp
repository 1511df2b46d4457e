// SPDX-License-Identifier: MIT
#include "filter/soft_focus_simd.h"

namespace ovra {
namespace {

// Transposes 16 x 16 bytes. Four rounds, each of which joins the elements of registers that are
// eight apart: after them the bits of row and column numbers have changed places.
void Transpose(__m128i block[16]) {
  for (int round = 0; round < 4; ++round) {
    __m128i joined[16];
    for (int i = 0; i < 8; ++i) {
      joined[2 * i] = _mm_unpacklo_epi8(block[i], block[i + 8]);
      joined[2 * i + 1] = _mm_unpackhi_epi8(block[i], block[i + 8]);
    }
    for (int i = 0; i < 16; ++i) block[i] = joined[i];
  }
}

}  // namespace

void FilterSoftFocusLinesSse(const SoftFocusRecursion& recursion, const SoftFocusLines& lines,
                             uint32_t* work) {
  FilterLines<Sse>(recursion, lines, work);
}

void GatherSoftFocusRowsSse(const uint8_t* const* rows, uint8_t* lines, std::ptrdiff_t bytes) {
  static_assert(kSoftFocusRows == 16);
  std::ptrdiff_t i = 0;
  for (; i + 16 <= bytes; i += 16) {
    __m128i block[16];
    for (int k = 0; k < 16; ++k) block[k] = Sse::Load(rows[k] + i);
    Transpose(block);
    for (int k = 0; k < 16; ++k) Sse::Store(lines + 16 * (i + k), block[k]);
  }
  const uint8_t* rest[16];
  for (int k = 0; k < 16; ++k) rest[k] = rows[k] + i;
  GatherSoftFocusRowsPlain(rest, lines + 16 * i, bytes - i);
}

void ScatterSoftFocusRowsSse(const uint8_t* lines, uint8_t* const* rows, std::ptrdiff_t bytes) {
  std::ptrdiff_t i = 0;
  for (; i + 16 <= bytes; i += 16) {
    __m128i block[16];
    for (int k = 0; k < 16; ++k) block[k] = Sse::Load(lines + 16 * (i + k));
    Transpose(block);
    for (int k = 0; k < 16; ++k) Sse::Store(rows[k] + i, block[k]);
  }
  uint8_t* rest[16];
  for (int k = 0; k < 16; ++k) rest[k] = rows[k] + i;
  ScatterSoftFocusRowsPlain(lines + 16 * i, rest, bytes - i);
}

void MixSoftFocusRowSse(const uint8_t* source, const uint8_t* blurred, uint8_t* destination,
                        std::ptrdiff_t bytes, uint32_t share) {
  MixRow<Sse>(source, blurred, destination, bytes, share);
}

}  // namespace ovra
