// SPDX-License-Identifier: MIT
// Rows of the grid over space and tone.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/cpu.h"
#include "tone/pyramid/kernels.h"

namespace ovra {

// Nodes stand at the tones 0, 4096 ... 32768.
inline constexpr int kGridNodes = 9;
inline constexpr int kGridTone = 4096;
// The tones above 0 limit the sums of a cell: sum m is that of min(sample, 4096 * (m + 1)).
inline constexpr int kGridSums = 8;

// Adds a row of samples to the sums of the cells that they lie in: cells of 2^cell_bits samples, the
// last one of what is left.
using AddRowToCells = void(const int16_t* samples, std::ptrdiff_t width, int32_t cell_bits,
                           int32_t* sums);

// The nodes of one column of cells at one row of pixels, as a pixel looks them up: the value of node z
// and how much more that of node z + 1 is.
struct GridColumn {
  int16_t values[8];
  int16_t steps[8];
};

// Values of the nodes of a cell, and room for reading a whole vector from the second one on.
struct GridCell {
  int16_t values[kGridNodes + 3];
};

// Columns between two rows of cells: top + (bottom - top) * fraction / 2^(scale + 1), rounded.
using BlendGridRows = void(const GridCell* top, const GridCell* bottom, int32_t fraction,
                           int32_t scale, GridColumn* columns, std::ptrdiff_t count);

// A row of pixels between columns. Pixel x lies between columns i and i + 1 of `columns`, with
// i = (2 x + 1 + 2^scale) / 2^(scale + 1): there is one before the first cell's and one behind the
// last one's. What the nodes say at the pixel's tone, under a limit, is taken from its fine detail.
using SliceGridRow = void(const int16_t* tone, const int16_t* fine_detail,
                          const GridColumn* columns, int32_t scale, const SoftLimit& limit,
                          int16_t* detail, std::ptrdiff_t pixels);

struct ToneGridKernels {
  AddRowToCells* add_row;
  BlendGridRows* blend_rows;
  SliceGridRow* slice_row;
};

extern const ToneGridKernels kToneGridPlain;
extern const ToneGridKernels kToneGridSse;
extern const ToneGridKernels kToneGridAvx2;

}  // namespace ovra
