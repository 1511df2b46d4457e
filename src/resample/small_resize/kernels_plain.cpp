// SPDX-License-Identifier: MIT
#include <algorithm>

#include "resample/small_resize/kernels.h"

namespace ovra {
namespace {

constexpr int32_t kVerticalShift = kReductionWeightBits - kReductionIntermediateBits;
constexpr int32_t kHorizontalShift = kReductionWeightBits + kReductionIntermediateBits;

template <class Sample>
int64_t SumOf(const WeighedRows<Sample>& rows, std::ptrdiff_t sample) {
  int64_t sum = 0;
  for (int32_t t = 0; t < rows.count; ++t) sum += int64_t{rows.rows[t][sample]} * rows.weights[t];
  return sum;
}

template <class Sample>
void Sum(const WeighedRows<Sample>& rows, std::ptrdiff_t samples, bool begins, int64_t* sums) {
  for (std::ptrdiff_t i = 0; i < samples; ++i) {
    sums[i] = (begins ? 0 : sums[i]) + SumOf(rows, i);
  }
}

template <class Sample>
void Weigh(const WeighedRows<Sample>& rows, std::ptrdiff_t samples, const int64_t* sums,
           int32_t /*weight_sum*/, int32_t* intermediate) {
  constexpr int64_t kHalf = int64_t{1} << (kVerticalShift - 1);
  for (std::ptrdiff_t i = 0; i < samples; ++i) {
    const int64_t sum = (sums == nullptr ? 0 : sums[i]) + SumOf(rows, i);
    intermediate[i] = static_cast<int32_t>((sum + kHalf) >> kVerticalShift);
  }
}

template <class Sample, int kChannels>
void Columns(const int32_t* intermediate, const ReductionColumns& job, Sample* destination) {
  for (int32_t i = 0; i < job.columns; ++i) {
    const int32_t* const pixels = intermediate + std::ptrdiff_t{job.first[i]} * kChannels;
    const int32_t* const weights = job.weights + i * job.weight_stride;
    for (int c = 0; c < kChannels; ++c) {
      int64_t sum = int64_t{1} << (kHorizontalShift - 1);
      for (std::ptrdiff_t t = 0; t < job.count[i]; ++t) {
        sum += int64_t{pixels[t * kChannels + c]} * weights[t];
      }
      *destination++ =
          static_cast<Sample>(std::clamp<int64_t>(sum >> kHorizontalShift, 0, job.max_sample));
    }
  }
}

template <class Sample>
constexpr ReductionKernelsOf<Sample> kKernels = {
    Sum<Sample>, Weigh<Sample>, {Columns<Sample, 1>, Columns<Sample, 3>, Columns<Sample, 4>}};

}  // namespace

const ReductionKernels kReductionPlain = {kKernels<uint8_t>, kKernels<uint16_t>, {}};

}  // namespace ovra
