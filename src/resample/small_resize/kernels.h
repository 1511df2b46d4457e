// SPDX-License-Identifier: MIT
// The two passes of a strong reduction. All sums are exact integers, whatever the tier computes them
// in, so that the order of summation cannot show.
#pragma once

#include <cstddef>
#include <cstdint>

#include "resample/small_resize/reduction_axis.h"

namespace ovra {

// Fractional bits of an intermediate sample. With 16 integer bits, a sign and the kernel's overshoot
// it takes 25 bits, so that a sum of products with weights stays exact in a double (53 bits).
inline constexpr int32_t kReductionIntermediateBits = 7;

// So many rows are summed at once at most.
inline constexpr int32_t kMaxReductionRows = 64;

// Rows under one stretched kernel, and the weight of each.
template <class Sample>
struct WeighedRows {
  const Sample* const* rows;
  const int32_t* weights;
  int32_t count;  // up to kMaxReductionRows
};

// A tier keeps the sums of a row as it likes, in this many elements more than the row has samples.
inline constexpr std::ptrdiff_t kSpareReductionSums = 64;

// Adds rows to sums of `samples` samples, or begins the sums with them.
template <class Sample>
using SumRows = void(const WeighedRows<Sample>& rows, std::ptrdiff_t samples, bool begins,
                     int64_t* sums);

// Adds the last rows of a kernel, whose weights sum to `weight_sum`, to what was summed (null:
// nothing yet) and gives the rounded sums of sample * weight with kReductionIntermediateBits.
template <class Sample>
using WeighRows = void(const WeighedRows<Sample>& rows, std::ptrdiff_t samples, const int64_t* sums,
                       int32_t weight_sum, int32_t* intermediate);

// The columns of a reduction.
struct ReductionColumns {
  const int32_t* first;  // pixel of the intermediate row under the first tap of each column
  const int32_t* count;  // of taps
  const int32_t* weights;
  const double* weights_as_double;  // the same numbers
  std::ptrdiff_t weight_stride;  // a multiple of kReductionWeightStep; from `count` on they are 0
  int32_t columns;
  std::ptrdiff_t intermediate_samples;
  int32_t max_sample;
  double* scratch;  // intermediate_samples numbers for the kernel's own use, and a step more
};

inline constexpr int32_t kReductionWeightStep = 4;

// Weighs the pixels of an intermediate row into a destination row.
template <class Sample>
using WeighColumns = void(const int32_t* intermediate, const ReductionColumns& job,
                          Sample* destination);

template <class Sample>
struct ReductionKernelsOf {
  SumRows<Sample>* sum_rows;
  WeighRows<Sample>* weigh_rows;
  WeighColumns<Sample>* weigh_columns[3];  // for one, three and four channels

  WeighColumns<Sample>* WeighColumnsOf(uint32_t channels) const {
    return weigh_columns[channels == 1 ? 0 : channels - 2];
  }
};

// 8-bit samples, all rows at hand: pairs of rows meet the words of their weights.
struct WeighedByteRows {
  int32_t pairs;
  int32_t weights[kMaxReductionRows / 2];  // of a pair, the first in the lower 16 bits
  const uint8_t* rows[kMaxReductionRows];
};

// Where the source goes on: to be asked for while the processor multiplies.
struct SourceAhead {
  const uint8_t* begin;
  std::ptrdiff_t bytes;
};

// The rounded sums with kReductionIntermediateBits, less this, are signed words: the kernel's gain
// leaves them between -0.45 and 1.45 times the range of samples.
inline constexpr int32_t kByteIntermediateOffset = 1 << 14;

using WeighByteRows = void(const WeighedByteRows& rows, std::ptrdiff_t samples,
                           const SourceAhead& ahead, int16_t* intermediate);

// Takes the channels of an intermediate row apart.
using SplitIntermediate = void(const int16_t* intermediate, std::ptrdiff_t pixels, int16_t* planes,
                               std::ptrdiff_t spacing);

// Sums of products of intermediate words and weights, which the kernel's gain keeps within 32 bits.
inline constexpr std::ptrdiff_t kByteColumnStep = 16;    // taps
inline constexpr std::ptrdiff_t kByteColumnsAtOnce = 4;  // of one channel
inline constexpr int32_t kByteColumnShift =
    kReductionWeightBits - kWordLowBits + kReductionIntermediateBits;
inline constexpr int32_t kByteColumnRounding = 1 << (kByteColumnShift - 1);

struct ByteReductionColumns {
  const int16_t* planes;  // may be read as far as a column's taps reach
  std::ptrdiff_t plane_spacing;
  const int32_t* first;    // pixel under the first tap of each column
  const int16_t* weights;  // of each column as many as `taps`
  std::ptrdiff_t taps;     // of every column: a multiple of kByteColumnStep
  const int32_t* offsets;  // of each column's sum: rounding, and what samples lack
  int32_t columns;
};

using WeighByteColumns = void(const ByteReductionColumns& job, uint8_t* destination);

struct ByteReductionKernels {
  std::ptrdiff_t min_samples;  // of a row
  WeighByteRows* weigh_rows;
  SplitIntermediate* split[2];         // for three and four channels
  WeighByteColumns* weigh_columns[3];  // for one, three and four channels
};

// The kernels of one tier.
struct ReductionKernels {
  ReductionKernelsOf<uint8_t> of_bytes;
  ReductionKernelsOf<uint16_t> of_words;
  ByteReductionKernels bytes;  // all 0 in a tier without

  // Inlined always: a tier may not leave a copy of it to others.
  template <class Sample>
  [[gnu::always_inline]] const ReductionKernelsOf<Sample>& Of() const {
    if constexpr (sizeof(Sample) == 1) {
      return of_bytes;
    } else {
      return of_words;
    }
  }
};

extern const ReductionKernels kReductionPlain;
extern const ReductionKernels kReductionSse;
extern const ReductionKernels kReductionAvx2;

}  // namespace ovra
