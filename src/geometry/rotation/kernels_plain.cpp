// SPDX-License-Identifier: MIT
#include <cstring>

#include "geometry/rotation/kernels.h"

namespace ovra {
namespace {

// So many source rows stay in the cache while each destination row gets a run of whole lines.
constexpr std::ptrdiff_t kBlockRows = 64;

template <int kPixelBytes>
void Reverse(const RowMove& move) {
  for (std::ptrdiff_t row = 0; row < move.rows; ++row) {
    const uint8_t* const in = move.source + row * move.source_stride;
    uint8_t* const out = move.destination + row * move.destination_stride;
    for (std::ptrdiff_t x = 0; x < move.pixels; ++x) {
      std::memcpy(out + x * kPixelBytes, in + (move.pixels - 1 - x) * kPixelBytes, kPixelBytes);
    }
    std::memset(out + move.pixels * kPixelBytes, 0, static_cast<size_t>(move.padding));
  }
}

template <int kPixelBytes>
void Transpose(const uint8_t* source, std::ptrdiff_t source_stride, uint8_t* destination,
               std::ptrdiff_t destination_stride, std::ptrdiff_t rows, std::ptrdiff_t columns,
               bool /*streaming*/) {
  for (std::ptrdiff_t column = 0; column < columns; ++column) {
    for (std::ptrdiff_t row = 0; row < rows; ++row) {
      std::memcpy(destination + column * destination_stride + row * kPixelBytes,
                  source + row * source_stride + column * kPixelBytes, kPixelBytes);
    }
  }
}

}  // namespace

const RotationKernels kRotationPlain = {
    kBlockRows,
    {nullptr, Reverse<1>, Reverse<2>, Reverse<3>, Reverse<4>, nullptr, Reverse<6>, nullptr,
     Reverse<8>},
    {nullptr, Transpose<1>, Transpose<2>, Transpose<3>, Transpose<4>, nullptr, Transpose<6>,
     nullptr, Transpose<8>},
};

}  // namespace ovra
