// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/row_move.h"

namespace ovra {

// Copies pixel `column` of source row `row` to pixel `row` of destination row `column`. Strides are
// in bytes and may be negative. The images do not overlap; only their pixels are read and written,
// round the cache where `streaming` asks for it.
using TransposeBlock = void(const uint8_t* source, std::ptrdiff_t source_stride,
                            uint8_t* destination, std::ptrdiff_t destination_stride,
                            std::ptrdiff_t rows, std::ptrdiff_t columns, bool streaming);

// The movers of one tier: of rows whose pixels are reversed, and of blocks. A pixel is moved as a
// unit, so only its size in bytes matters, which is the index: 1, 2, 3, 4, 6 or 8. The others are
// null.
struct RotationKernels {
  static constexpr int kMaxPixelBytes = 8;

  // The rows that transpose_block is best given at a time.
  std::ptrdiff_t block_rows;
  MoveRows* reverse[kMaxPixelBytes + 1];
  TransposeBlock* transpose_block[kMaxPixelBytes + 1];
};

extern const RotationKernels kRotationPlain;
extern const RotationKernels kRotationSse;
extern const RotationKernels kRotationAvx2;

}  // namespace ovra
