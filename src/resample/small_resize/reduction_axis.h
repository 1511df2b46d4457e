// SPDX-License-Identifier: MIT
// Which source samples make one destination sample of a strong reduction, and with which weights.
#pragma once

#include <cstdint>

#include "core/work_memory.h"

namespace ovra {

// Fractional bits of a reduction weight. Weights are small where many samples are averaged: 22 bits
// leave 15 significant ones to a kernel stretched over 500 samples, and a 16-bit sample times a
// weight of up to 2 still fits 39 bits.
inline constexpr int32_t kReductionWeightBits = 22;
inline constexpr int32_t kReductionUnity = int32_t{1} << kReductionWeightBits;

// A kernel whose absolute values sum to more than this many times their sum is none that can reduce
// a picture; the bound keeps every weight below 2, so that the upper 16 of 24 bits hold its sign.
inline constexpr double kMaxReductionGain = 1.9;

// 8-bit samples need no more than 14 of these bits, and the others are 0, unless there are so many taps
// that they get only few bits each: weights are signed words then, times 1 << kWordLowBits.
inline constexpr int32_t kWordLowBits = 8;
inline constexpr int32_t kMaxWordTaps = 512;

// How one axis of the destination lies on the source: 1 / scale apart about the region's centre.
struct ReductionGeometry {
  int32_t destination_size;
  int32_t source_size;
  int64_t region_start;
  int32_t region_size;
  double scale;
};

// The weight sets of one axis, each made when it is asked for. Taps that would lie outside the
// source are folded onto its first or last sample, which repeats the edge.
class ReductionAxis {
 public:
  ReductionAxis() = default;
  ReductionAxis(const ReductionGeometry& geometry, const float* kernel_table, int32_t depth_bits);

  // Samples within the reach of the kernel, but no more than there are after folding.
  int32_t MaxTaps() const { return max_taps_; }

  // Whether weights are words times 1 << kWordLowBits.
  bool HasWords() const { return low_bits_ == kWordLowBits; }

  // The source samples under the kernel of destination sample i.
  int32_t First(int32_t i) const;
  int32_t Last(int32_t i) const;

  // Writes the weights of First(i) to Last(i) and fills up to MaxTaps with 0. Answers the sum, which
  // is kReductionUnity, or 0 where all are 0.
  int32_t Fill(int32_t i, int32_t* weights) const;

 private:
  struct KernelSums;

  double PositionOf(int32_t i) const;
  void AddValues(int64_t sample, int32_t count, double position, double* values,
                 KernelSums* sums) const;
  int32_t Clamp(double sample) const;

  const float* kernel_table_ = nullptr;
  int32_t source_size_ = 0;
  int32_t max_taps_ = 0;
  int32_t low_bits_ = 0;
  double half_span_ = 0.0;  // between the middles of the first and the middle destination sample
  double step_ = 0.0;
  double centre_ = 0.0;
  double tap_scale_ = 1.0;
  double reach_ = 0.0;
};

}  // namespace ovra
