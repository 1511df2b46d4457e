// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/cpu.h"
#include "core/row_move.h"

namespace ovra {

// Rows of one pixel over and over.
struct RowFill {
  static constexpr std::ptrdiff_t kMaxPixelBytes = 8;

  uint8_t* destination;
  std::ptrdiff_t stride;
  std::ptrdiff_t pixels;  // of a row
  std::ptrdiff_t rows;
  const void* pixel;
  std::ptrdiff_t pixel_bytes;
  bool streaming;  // whether writing goes round the cache
};

using FillRows = void(const RowFill& fill);

// Rows as they are, as pixels of one byte, and rows of one pixel.
struct RowCopyKernels {
  MoveRows* copy;
  FillRows* fill;
};

extern const RowCopyKernels kRowCopyPlain;
extern const RowCopyKernels kRowCopySse;
extern const RowCopyKernels kRowCopyAvx2;

inline const RowCopyKernels& RowCopyKernelsOf(KernelTier tier) {
  return ForTier(tier, kRowCopyPlain, kRowCopySse, kRowCopyAvx2);
}

}  // namespace ovra
