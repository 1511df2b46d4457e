// SPDX-License-Identifier: MIT
// The two passes of a strong reduction. All sums are exact integers, whatever the tier computes them
// in, so that the order of summation cannot show.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/cpu.h"
#include "resample/reduction_axis.h"

namespace ovra {

// Fractional bits of an intermediate sample. With 16 integer bits, a sign and the kernel's overshoot
// it takes 25 bits, so that a sum of products with weights stays exact in a double (53 bits).
inline constexpr int32_t kReductionIntermediateBits = 7;

// Destination rows that one horizontal call produces.
inline constexpr int32_t kReductionRowGroup = 4;

// What the horizontal pass needs beside its rows.
struct HorizontalReduction {
  const ReductionAxis* axis;
  int32_t destination_width;
  int64_t first_column;  // the source column of the intermediate rows' first pixel
  int64_t columns;       // pixels in an intermediate row
  int32_t channels;
  int32_t max_sample;
  double* scratch;  // kReductionRowGroup * columns * channels numbers for the kernel's own use
};

template <class Sample>
struct ReductionKernels {
  // Weighs `taps.count` rows, from `first_row` on and `stride_bytes` apart, into one intermediate
  // row of `samples` entries: the rounded sum of sample * weight with kReductionIntermediateBits.
  void (*vertical)(const Sample* first_row, std::ptrdiff_t stride_bytes,
                   const ReductionAxis::Taps& taps, std::ptrdiff_t samples, int32_t* intermediate);
  // Weighs the pixels of kReductionRowGroup intermediate rows into as many destination rows. Rows
  // may be named more than once.
  void (*horizontal)(const int32_t* const* intermediate, const HorizontalReduction& job,
                     Sample* const* destination);
};

template <class Sample>
ReductionKernels<Sample> ReductionKernelsPlain();
template <class Sample>
ReductionKernels<Sample> ReductionKernelsSse();
template <class Sample>
ReductionKernels<Sample> ReductionKernelsAvx2();

extern template ReductionKernels<uint8_t> ReductionKernelsPlain();
extern template ReductionKernels<uint16_t> ReductionKernelsPlain();
extern template ReductionKernels<uint8_t> ReductionKernelsSse();
extern template ReductionKernels<uint16_t> ReductionKernelsSse();
extern template ReductionKernels<uint8_t> ReductionKernelsAvx2();
extern template ReductionKernels<uint16_t> ReductionKernelsAvx2();

template <class Sample>
ReductionKernels<Sample> SelectReductionKernels(KernelTier tier) {
  if (tier == KernelTier::kAvx2) return ReductionKernelsAvx2<Sample>();
  if (tier == KernelTier::kSse) return ReductionKernelsSse<Sample>();
  return ReductionKernelsPlain<Sample>();
}

}  // namespace ovra
