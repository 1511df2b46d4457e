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

// The weight sets of one axis, one for each destination sample. Taps that would lie outside the
// source are folded onto its first or last sample, which repeats the edge.
class ReductionAxis {
 public:
  // Taps of one destination sample: `count` consecutive source samples from `first` on.
  struct Taps {
    int64_t first;
    int32_t count;
    const int32_t* weights;           // sum to kReductionUnity, or are all 0
    const double* weights_as_double;  // the same numbers
  };

  // Destination samples lie `1 / scale` apart about the region's centre. False without memory.
  [[nodiscard]] bool Build(int32_t destination_size, int32_t source_size, int64_t region_start,
                           int32_t region_size, double scale, const float* kernel_table);

  Taps operator[](int32_t i) const;

  // The source samples that any tap reads: [First(), Last()].
  int64_t First() const { return first_sample_; }
  int64_t Last() const { return last_sample_; }

 private:
  void BuildSet(int32_t i, double position, double tap_scale, int32_t source_size,
                const float* kernel_table);

  WorkMemory<int64_t> first_;
  WorkMemory<int32_t> count_;
  WorkMemory<int32_t> weights_;
  WorkMemory<double> weights_as_double_;
  int64_t max_taps_ = 0;
  int64_t first_sample_ = 0;
  int64_t last_sample_ = 0;
};

}  // namespace ovra
