// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/cpu.h"

namespace ovra {

struct PlaneKernel {
  const int32_t* weights;
  std::ptrdiff_t taps;
  int32_t sum;  // of the weights, modulo 2^32
};

// Weights with this sum are applied with a shift.
inline constexpr int32_t kPlaneUnitSum = 128;

// Forms output[x], for x below `width`, from the sum of weights[k] * rows[k][x] over the taps. The
// output overlaps no row; rows may overlap each other.
using CombineRowsKernel = void(const int16_t* const* rows, const PlaneKernel& kernel,
                               int16_t* output, std::ptrdiff_t width);

CombineRowsKernel CombineRowsShiftPlain;   // for weights that sum to kPlaneUnitSum
CombineRowsKernel CombineRowsDividePlain;  // to another positive number
CombineRowsKernel CombineRowsZero;         // to zero or less

inline CombineRowsKernel* SelectCombineRows(const PlaneKernel& kernel, KernelTier /*tier*/) {
  if (kernel.sum <= 0) return CombineRowsZero;
  return kernel.sum == kPlaneUnitSum ? CombineRowsShiftPlain : CombineRowsDividePlain;
}

}  // namespace ovra
