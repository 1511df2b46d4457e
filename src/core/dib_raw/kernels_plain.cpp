// SPDX-License-Identifier: MIT
#include "core/dib_raw/kernels.h"

namespace ovra {
namespace {

void SwapRedBlue(const uint8_t* source, uint8_t* destination, std::ptrdiff_t pixels) {
  for (std::ptrdiff_t i = 0; i < pixels; ++i) {
    destination[3 * i + 0] = source[3 * i + 2];
    destination[3 * i + 1] = source[3 * i + 1];
    destination[3 * i + 2] = source[3 * i + 0];
  }
}

}  // namespace

const DibRawKernels kDibRawPlain = {SwapRedBlue};

}  // namespace ovra
