// SPDX-License-Identifier: MIT
// Fixed-point weights of one axis of a resize, and the source positions that they apply to.
#pragma once

#include <cstdint>

#include "core/work_memory.h"

namespace ovra {

// What one axis is filtered with.
struct AxisFilter {
  const float* table;  // a kernel table
  int32_t taps;
  float stretch;
};

// How one axis of the destination lies on the source: about the middle of the region.
struct AxisGeometry {
  int32_t destination_extent;
  int64_t region_start;  // source row or column in memory order
  int32_t region_extent;
  double scale;  // destination by source
};

// One destination column or row.
struct TapSet {
  // The source column or row on which the taps are centred. Held in 32 bits, so that the largest
  // images keep their positions, and saturated: what lies further out repeats the edge anyway.
  int32_t centre;
  // The sum of the weights modulo 2^32, with which kernels correct sums of offset samples.
  uint32_t weight_sum;
};

// The distance of the first tap to the left of the centre; half of the others lie to its right.
constexpr int32_t TapsBeforeCentre(int32_t taps) {
  return (taps - 1) / 2;
}

// Weights have 10 fractional bits: a set that sums to kUnitWeight has unity gain.
inline constexpr int32_t kWeightBits = 10;
inline constexpr int32_t kUnitWeight = 1 << kWeightBits;

// The weight sets of one axis. The weights are truncated and kept as they are: a set may sum to a
// little less or more than kUnitWeight.
struct AxisWeights {
  int32_t taps = 0;
  int32_t weight_stride = 0;    // weights from set to set; those beyond the taps are 0
  WorkMemory<int16_t> weights;  // in tap order
  WorkMemory<TapSet> sets;

  const int16_t* WeightsOf(int64_t set) const { return weights.data() + set * weight_stride; }
};

// Fills the sets of the axis into the memory that `axis` already holds for them. Everything
// geometric is computed in double precision.
void BuildWeightSets(const AxisGeometry& geometry, const AxisFilter& filter, AxisWeights* axis);

// Weights from set to set for a tap count: vectors of four or eight weights stay whole.
constexpr int32_t WeightStride(int32_t taps) {
  constexpr int32_t kHalfVector = 4;
  constexpr int32_t kVector = 8;
  return taps <= kHalfVector
             ? kHalfVector
             : static_cast<int32_t>((int64_t{taps} + kVector - 1) / kVector * kVector);
}

}  // namespace ovra
