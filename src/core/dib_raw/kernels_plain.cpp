// SPDX-License-Identifier: MIT
#include <cstring>

#include "core/dib_raw/kernels.h"

namespace ovra {
namespace {

void SwapRedBlue(const RowMove& move) {
  for (std::ptrdiff_t row = 0; row < move.rows; ++row) {
    const uint8_t* const in = move.source + row * move.source_stride;
    uint8_t* const out = move.destination + row * move.destination_stride;
    for (std::ptrdiff_t i = 0; i < move.pixels; ++i) {
      out[3 * i + 0] = in[3 * i + 2];
      out[3 * i + 1] = in[3 * i + 1];
      out[3 * i + 2] = in[3 * i + 0];
    }
    std::memset(out + 3 * move.pixels, 0, static_cast<size_t>(move.padding));
  }
}

}  // namespace

const DibRawKernels kDibRawPlain = {SwapRedBlue};

}  // namespace ovra
