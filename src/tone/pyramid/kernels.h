// SPDX-License-Identifier: MIT
// Rows of pyramids: P. J. Burt and E. H. Adelson, The Laplacian pyramid as a compact image code, 1983.
//
// A working sample is a brightness of 15 bits, 0..32767, or a difference of two of them. Changes are
// differences that are kept 2^15 higher, as words without sign from 1 on. Kernels may read and write some samples before and behind a row: see WorkRows, which is what they write to.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/cpu.h"

namespace ovra {

// A difference d held to half of `reach`, without a corner: with a = min(|d|, reach) and T = reach / 2
// the outcome is a - a^2 / (4 T) under the sign of d. `factor` / 2^15 is about 2^14 / (T * 2^shift).
struct SoftLimit {
  int16_t reach;
  int16_t shift;
  int16_t factor;
};

// Samples or pixels of a row, from the first to before the last.
struct RowSpan {
  std::ptrdiff_t first;
  std::ptrdiff_t end;
};

// Halves a row of 2 * count samples or one less, whose ends are held two samples far.
using ReduceAlongRow = void(const int16_t* row, int16_t* output, std::ptrdiff_t count);

// Halves columns: one row from five.
using ReduceAcrossRows = void(const int16_t* const* rows, int16_t* output, std::ptrdiff_t count);

// Doubles columns, from the rows above, at and below: the even row at the middle one, or the odd one
// between it and the one below.
using ExpandAcrossRows = void(const int16_t* const* rows, bool is_odd, int16_t* output,
                              std::ptrdiff_t count);

// Doubles a row of `count` samples whose ends are held.
using ExpandAlongRow = void(const int16_t* row, int16_t* output, std::ptrdiff_t count);

// A row `eighths` of the way from one row to another.
using EnlargeAcrossRows = void(const int16_t* from, const int16_t* to, int32_t eighths,
                               int16_t* output, std::ptrdiff_t count);

// detail = the limited difference of value and base; rest = value - detail.
using LimitDetailRow = void(const int16_t* value, const int16_t* base, const SoftLimit& limit,
                            int16_t* detail, int16_t* rest, std::ptrdiff_t count);

struct PyramidKernels {
  ReduceAlongRow* reduce_along;
  ReduceAcrossRows* reduce_across;
  ExpandAcrossRows* expand_across;
  ExpandAcrossRows* expand_changes_across;
  ExpandAlongRow* expand_along;
  EnlargeAcrossRows* enlarge_across;
  LimitDetailRow* limit_detail;
};

extern const PyramidKernels kPyramidPlain;
extern const PyramidKernels kPyramidSse;
extern const PyramidKernels kPyramidAvx2;

}  // namespace ovra
