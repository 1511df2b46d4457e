// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

namespace ovra {

// Copies `pixels` three-byte pixels with the first and the third byte of each exchanged. The rows
// do not overlap; exactly 3 * pixels bytes are read and written.
using SwapRedBlueRow = void(const uint8_t* source, uint8_t* destination, std::ptrdiff_t pixels);

struct DibRawKernels {
  SwapRedBlueRow* swap_red_blue;
};

extern const DibRawKernels kDibRawPlain;
extern const DibRawKernels kDibRawSse;
extern const DibRawKernels kDibRawAvx2;

}  // namespace ovra
