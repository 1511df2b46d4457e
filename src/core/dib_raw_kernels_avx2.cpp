// SPDX-License-Identifier: MIT
#include <immintrin.h>

#include "core/dib_raw_kernels.h"

namespace ovra {

void SwapRedBlueAvx2(const uint8_t* source, uint8_t* destination, std::ptrdiff_t pixels) {
  // Each 128-bit lane takes five pixels, as in the SSE form; the second lane starts 15 bytes after
  // the first. The 16th byte of a lane belongs to the next pixel, which is written again
  // afterwards.
  constexpr std::ptrdiff_t kPixelsPerStep = 10;
  const __m256i swap = _mm256_broadcastsi128_si256(
      _mm_setr_epi8(2, 1, 0, 5, 4, 3, 8, 7, 6, 11, 10, 9, 14, 13, 12, 15));
  std::ptrdiff_t i = 0;
  for (; i + kPixelsPerStep < pixels; i += kPixelsPerStep) {
    const auto* in = reinterpret_cast<const __m128i*>(source + 3 * i);
    const auto* in_next = reinterpret_cast<const __m128i*>(source + 3 * i + 15);
    const __m256i swapped = _mm256_shuffle_epi8(_mm256_loadu2_m128i(in_next, in), swap);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(destination + 3 * i),
                     _mm256_castsi256_si128(swapped));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(destination + 3 * i + 15),
                     _mm256_extracti128_si256(swapped, 1));
  }
  SwapRedBlueSse(source + 3 * i, destination + 3 * i, pixels - i);
}

}  // namespace ovra
