// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "core/cpu.h"
#include "core/status.h"

namespace ovra {

// The eight mappings of a rectangle onto itself. For a source of W x H pixels, the destination
// pixel in column x of row y, rows counted in memory order, is the source pixel in the column and
// row that stand in brackets.
enum class Orientation {
  kCopy,           // (x, y)
  kQuarterLeft,    // (W - 1 - y, x)
  kHalfTurn,       // (W - 1 - x, H - 1 - y)
  kQuarterRight,   // (y, H - 1 - x)
  kMirror,         // (W - 1 - x, y)
  kAntiTranspose,  // (W - 1 - y, H - 1 - x)
  kFlipVertical,   // (x, H - 1 - y)
  kTranspose,      // (y, x)
};

// Writes a whole destination, row padding as 0, and answers OVRA_OK. Width and height are the
// source's, positive; the rows of both images are a multiple of alignment_bytes apart. Of the source
// only pixels are read. The images do not overlap, except that a copy of an image onto itself
// writes nothing.
using OrientKernel = Status(const uint8_t* source, uint8_t* destination, int32_t width,
                            int32_t height, int32_t channels, int32_t alignment_bytes);

// The kernel of a mapping for samples of 1 or 2 bytes.
OrientKernel* SelectOrientPlain(Orientation orientation, int32_t bytes_per_sample);
OrientKernel* SelectOrientSse(Orientation orientation, int32_t bytes_per_sample);
OrientKernel* SelectOrientAvx2(Orientation orientation, int32_t bytes_per_sample);

inline OrientKernel* SelectOrient(Orientation orientation, int32_t bytes_per_sample,
                                  KernelTier tier) {
  if (tier == KernelTier::kAvx2) return SelectOrientAvx2(orientation, bytes_per_sample);
  if (tier == KernelTier::kSse) return SelectOrientSse(orientation, bytes_per_sample);
  return SelectOrientPlain(orientation, bytes_per_sample);
}

}  // namespace ovra
