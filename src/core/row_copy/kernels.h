// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "core/cpu.h"
#include "core/row_move.h"

namespace ovra {

// A cache line of one pixel over and over, from any byte of the pixel on.
struct PixelPattern {
  static constexpr std::ptrdiff_t kLineBytes = 64;
  static constexpr std::ptrdiff_t kMaxPixelBytes = 8;

  PixelPattern(const void* pixel, std::ptrdiff_t size) : pixel_bytes(size) {
    for (std::ptrdiff_t i = 0; i < kLineBytes + kMaxPixelBytes; i += size) {
      std::memcpy(bytes + i, pixel, static_cast<size_t>(size));
    }
  }

  std::ptrdiff_t pixel_bytes;
  uint8_t bytes[kLineBytes + 2 * kMaxPixelBytes];
};

// Rows of one pixel over and over.
struct RowFill {
  uint8_t* destination;
  std::ptrdiff_t stride;
  std::ptrdiff_t pixels;  // of a row
  std::ptrdiff_t rows;
  const PixelPattern& pattern;
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
