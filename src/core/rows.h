// SPDX-License-Identifier: MIT
// From a base pointer and a byte stride to typed rows. Kernels see what comes out of here: typed
// pointers and counts, never strides or format words.
#pragma once

#include <cstddef>
#include <cstdint>

namespace ovra {

// Row `row` in memory order. Two-byte samples need a base at an even address.
template <class Sample>
Sample* RowAt(uint8_t* base, std::ptrdiff_t stride_bytes, std::ptrdiff_t row) {
  return reinterpret_cast<Sample*>(base + stride_bytes * row);
}

template <class Sample>
const Sample* RowAt(const uint8_t* base, std::ptrdiff_t stride_bytes, std::ptrdiff_t row) {
  return reinterpret_cast<const Sample*>(base + stride_bytes * row);
}

// Whether an image of so many bytes and rows is written round the cache. A large one has left it by
// the time it is read again, and its lines need not be read in order to be written, which is a third
// of the traffic; a small one loses by it. Measured with 32 MiB of cache, which a picture and its
// copy nearly fill.
inline bool WritesRoundCache(int64_t row_bytes, int64_t rows) {
  constexpr int64_t kLeastBytes = int64_t{12} << 20;
  return row_bytes * rows >= kLeastBytes;
}

}  // namespace ovra
