// SPDX-License-Identifier: MIT
#include <cstring>

#include "core/row_copy/kernels.h"

namespace ovra {
namespace {

void Copy(const RowMove& move) {
  for (std::ptrdiff_t row = 0; row < move.rows; ++row) {
    uint8_t* const out = move.destination + row * move.destination_stride;
    std::memcpy(out, move.source + row * move.source_stride, static_cast<size_t>(move.pixels));
    std::memset(out + move.pixels, 0, static_cast<size_t>(move.padding));
  }
}

void Fill(const RowFill& fill) {
  for (std::ptrdiff_t row = 0; row < fill.rows; ++row) {
    uint8_t* out = fill.destination + row * fill.stride;
    for (std::ptrdiff_t x = 0; x < fill.pixels; ++x, out += fill.pattern.pixel_bytes) {
      std::memcpy(out, fill.pattern.bytes, static_cast<size_t>(fill.pattern.pixel_bytes));
    }
  }
}

}  // namespace

const RowCopyKernels kRowCopyPlain = {Copy, Fill};

}  // namespace ovra
