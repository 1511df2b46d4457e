// SPDX-License-Identifier: MIT
// Rotation by quarter turns and mirroring, with the tier of kernels as an argument, and the way in
// which other operations write their rows turned.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/cpu.h"
#include "core/pixel_format.h"
#include "core/status.h"
#include "geometry/rotation/kernels.h"

namespace ovra {

// One of the eight mappings of a rectangle onto itself, in terms of rows and columns in memory. The
// pixel in column x and row y of a source of W x H pixels goes to place W - 1 - x or x among the
// columns and H - 1 - y or y among the rows; transposed, columns and rows change parts.
struct Orientation {
  bool transposed = false;
  bool columns_reversed = false;
  bool rows_reversed = false;
};

// The mapping that has the effect of an OvraRotation on the picture as seen.
Orientation OrientationOf(int32_t mode, bool bottom_up);

// An image to be written from the rows of a source, in its own row stride. Transposed, it has as many
// columns as the source has rows.
struct OrientedImage {
  uint8_t* base;
  std::ptrdiff_t stride;
  Orientation orientation;
  std::ptrdiff_t source_width;
  std::ptrdiff_t source_height;
  std::ptrdiff_t pixel_bytes;
  bool streaming = false;  // whether rows that are not transposed are written round the cache
};

// Writes `count` source rows from number `first` on, which stand at `rows`, to their places. Padding
// is set to 0: that of the rows written, or, transposed, that of all rows together with the last
// column. Transposing is fast with block_rows of the tier's kernels at a time.
void OrientRows(const uint8_t* rows, std::ptrdiff_t rows_stride, std::ptrdiff_t first,
                std::ptrdiff_t count, const OrientedImage& image, KernelTier tier);

const RotationKernels& RotationKernelsOf(KernelTier tier);

// Decodes a format word and answers whether rotation takes images of it.
Status ValidateRotationFormat(PixelFormatCode code, PixelFormat* format);

Status RotateImage(const uint8_t* source, uint8_t* destination, int32_t width, int32_t height,
                   PixelFormatCode code, int32_t mode, KernelTier tier);

}  // namespace ovra
