// SPDX-License-Identifier: MIT
// Pixels moved one by one: the definition of both movers of rotation, which the accelerated ones use
// for what does not fill a vector.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace ovra {
namespace {

template <int kPixelBytes>
void ReversePixels(const uint8_t* source, uint8_t* destination, std::ptrdiff_t pixels) {
  for (std::ptrdiff_t x = 0; x < pixels; ++x) {
    std::memcpy(destination + x * kPixelBytes, source + (pixels - 1 - x) * kPixelBytes,
                kPixelBytes);
  }
}

template <int kPixelBytes>
void TransposePixels(const uint8_t* source, std::ptrdiff_t source_stride, uint8_t* destination,
                     std::ptrdiff_t destination_stride, std::ptrdiff_t rows,
                     std::ptrdiff_t columns) {
  for (std::ptrdiff_t column = 0; column < columns; ++column) {
    for (std::ptrdiff_t row = 0; row < rows; ++row) {
      std::memcpy(destination + column * destination_stride + row * kPixelBytes,
                  source + row * source_stride + column * kPixelBytes, kPixelBytes);
    }
  }
}

}  // namespace
}  // namespace ovra
