// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

namespace ovra {

struct PlaneKernel {
  const int32_t* weights;
  // Weights 2i and 2i + 1 as the low and the high half of word i, a missing one 0. Null when a
  // weight does not fit 16 bits.
  const int32_t* weight_pairs;
  std::ptrdiff_t taps;
  int32_t sum;        // of the weights, modulo 2^32
  double reciprocal;  // of the sum, where that is positive
};

// Weights with this sum are applied with a shift.
inline constexpr int kPlaneUnitBits = 7;
inline constexpr int32_t kPlaneUnitSum = 1 << kPlaneUnitBits;

// The sum of weights[k] * rows[k][x] over the taps, modulo 2^32.
int32_t WeightedSum(const int16_t* const* rows, const PlaneKernel& kernel, std::ptrdiff_t x);

// Forms output[x], for x below `width`, from the sum of weights[k] * rows[k][x] over the taps. The
// output overlaps no row; rows may overlap each other.
using CombineRowsKernel = void(const int16_t* const* rows, const PlaneKernel& kernel,
                               int16_t* output, std::ptrdiff_t width);

CombineRowsKernel CombineRowsZero;  // for weights that sum to zero or less, in every tier

// Half of the unit, times this, fits 16 bits.
inline constexpr int32_t kMaxMeanSample = 1023;

// The vector forms need weight_pairs.
struct PlaneFilterKernels {
  CombineRowsKernel* shift;       // for weights that sum to kPlaneUnitSum
  CombineRowsKernel* mirrored;    // the same, where IsMirroredMean and samples are below 2^13
  CombineRowsKernel* luminance;   // the same, where samples are 0..kMaxMeanSample
  CombineRowsKernel* divide;      // to another positive number
  CombineRowsKernel* three_taps;  // for the weights 32, 64, 32
};

extern const PlaneFilterKernels kPlaneFilterPlain;
extern const PlaneFilterKernels kPlaneFilterSse;
extern const PlaneFilterKernels kPlaneFilterAvx2;

}  // namespace ovra
