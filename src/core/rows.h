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

}  // namespace ovra
