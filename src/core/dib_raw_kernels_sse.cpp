// SPDX-License-Identifier: MIT
#include <smmintrin.h>

#include "core/dib_raw_kernels.h"

namespace ovra {

void SwapRedBlueSse(const uint8_t* source, uint8_t* destination, std::ptrdiff_t pixels) {
  // Five pixels a step: the 16th byte is the first of the next pixel, which is written in its old
  // place and overwritten by the next step. Hence one pixel more must follow.
  constexpr std::ptrdiff_t kPixelsPerStep = 5;
  const __m128i swap = _mm_setr_epi8(2, 1, 0, 5, 4, 3, 8, 7, 6, 11, 10, 9, 14, 13, 12, 15);
  std::ptrdiff_t i = 0;
  for (; i + kPixelsPerStep < pixels; i += kPixelsPerStep) {
    const __m128i in = _mm_loadu_si128(reinterpret_cast<const __m128i*>(source + 3 * i));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(destination + 3 * i), _mm_shuffle_epi8(in, swap));
  }
  SwapRedBluePlain(source + 3 * i, destination + 3 * i, pixels - i);
}

}  // namespace ovra
