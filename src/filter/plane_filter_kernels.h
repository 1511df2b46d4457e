// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/cpu.h"

namespace ovra {

struct PlaneKernel {
  const int32_t* weights;
  // Weights 2i and 2i + 1 as the low and the high half of word i, a missing one 0. Null when a
  // weight does not fit 16 bits.
  const int32_t* weight_pairs;
  std::ptrdiff_t taps;
  int32_t sum;  // of the weights, modulo 2^32
};

// Weights with this sum are applied with a shift.
inline constexpr int32_t kPlaneUnitSum = 128;

// The word of weight_pairs for two weights.
constexpr int32_t WeightPair(int32_t first, int32_t second) {
  return static_cast<int32_t>((static_cast<uint32_t>(first) & 0xFFFF) |
                              static_cast<uint32_t>(second) << 16);
}

// The sum of weights[k] * rows[k][x] over the taps, modulo 2^32.
int32_t WeightedSum(const int16_t* const* rows, const PlaneKernel& kernel, std::ptrdiff_t x);

// Forms output[x], for x below `width`, from the sum of weights[k] * rows[k][x] over the taps. The
// output overlaps no row; rows may overlap each other.
using CombineRowsKernel = void(const int16_t* const* rows, const PlaneKernel& kernel,
                               int16_t* output, std::ptrdiff_t width);

CombineRowsKernel CombineRowsZero;  // for weights that sum to zero or less

CombineRowsKernel CombineRowsShiftPlain;   // to kPlaneUnitSum
CombineRowsKernel CombineRowsDividePlain;  // to another positive number

// These need weight_pairs.
CombineRowsKernel CombineRowsShiftSse;
CombineRowsKernel CombineRowsShiftAvx2;
CombineRowsKernel CombineRowsDivideSse;
CombineRowsKernel CombineRowsDivideAvx2;

CombineRowsKernel CombineRowsThreeTapsSse;  // for the weights 32, 64, 32
CombineRowsKernel CombineRowsThreeTapsAvx2;

CombineRowsKernel* SelectCombineRows(const PlaneKernel& kernel, KernelTier tier);

}  // namespace ovra
