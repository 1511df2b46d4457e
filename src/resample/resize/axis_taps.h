// SPDX-License-Identifier: MIT
// Fixed-point weights of one axis of a resize, and the source positions that they apply to.
#pragma once

#include <cstdint>

#include "resample/resize_plan.h"

namespace ovra {

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

// Room for the weights of one set: vectors of four or eight weights stay whole.
constexpr int32_t WeightStride(int32_t taps) {
  constexpr int32_t kHalfVector = 4;
  constexpr int32_t kVector = 8;
  return taps <= kHalfVector
             ? kHalfVector
             : static_cast<int32_t>((int64_t{taps} + kVector - 1) / kVector * kVector);
}

// The tap sets of one axis, each made when it is asked for. Everything geometric is computed in
// double precision. The table must live as long as this.
class AxisTaps {
 public:
  AxisTaps() = default;
  AxisTaps(const AxisGeometry& geometry, const float* table, KernelSupport support);

  int32_t CentreOf(int32_t i) const;

  // Before the first position.
  static constexpr double kNoFraction = -1.0;

  // How far position i lies to the right of its centre, on which alone its weights depend.
  double FractionOf(int32_t i) const;

  // Writes the weights of positions with this fraction in tap order, WeightStride of them; those beyond
  // the taps are 0. The others are truncated and kept as they are: a set may sum to a little less or
  // more than kUnitWeight. Answers their sum.
  uint32_t FillWeights(double fraction, int16_t* weights) const;

 private:
  double PositionOf(int32_t i) const;
  double KernelAt(double distance) const;

  const float* table_ = nullptr;
  double table_step_ = 0.0;  // table entries for a tap distance of one
  int32_t taps_ = 0;
  int32_t half_extent_ = 0;
  double phase_ = 0.0;
  double step_ = 0.0;  // from one destination position to the next, in the source
  double centre_ = 0.0;
};

}  // namespace ovra
