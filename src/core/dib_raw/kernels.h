// SPDX-License-Identifier: MIT
#pragma once

#include "core/row_move.h"

namespace ovra {

// The rows are of three-byte pixels, of which the first and the third byte are exchanged.
struct DibRawKernels {
  MoveRows* swap_red_blue;
};

extern const DibRawKernels kDibRawPlain;
extern const DibRawKernels kDibRawSse;
extern const DibRawKernels kDibRawAvx2;

}  // namespace ovra
