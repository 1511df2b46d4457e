// SPDX-License-Identifier: MIT
#include <algorithm>

#include "core/rows.h"
#include "resample/small_resize_kernels.h"

namespace ovra {
namespace {

constexpr int32_t kVerticalShift = kReductionWeightBits - kReductionIntermediateBits;
constexpr int32_t kHorizontalShift = kReductionWeightBits + kReductionIntermediateBits;

template <class Sample>
void Vertical(const Sample* first_row, std::ptrdiff_t stride_bytes, const ReductionAxis::Taps& taps,
              std::ptrdiff_t samples, int32_t* intermediate) {
  const auto* base = reinterpret_cast<const uint8_t*>(first_row);
  for (std::ptrdiff_t i = 0; i < samples; ++i) {
    int64_t sum = 0;
    for (int32_t t = 0; t < taps.count; ++t) {
      sum += int64_t{RowAt<Sample>(base, stride_bytes, t)[i]} * taps.weights[t];
    }
    intermediate[i] =
        static_cast<int32_t>((sum + (int64_t{1} << (kVerticalShift - 1))) >> kVerticalShift);
  }
}

template <class Sample>
void HorizontalRow(const int32_t* intermediate, const HorizontalReduction& job,
                   Sample* destination) {
  for (int32_t i = 0; i < job.destination_width; ++i) {
    const ReductionAxis::Taps taps = (*job.axis)[i];
    const int32_t* const pixels = intermediate + (taps.first - job.first_column) * job.channels;
    for (int32_t c = 0; c < job.channels; ++c) {
      int64_t sum = int64_t{1} << (kHorizontalShift - 1);
      for (int32_t t = 0; t < taps.count; ++t) {
        sum += int64_t{pixels[t * job.channels + c]} * taps.weights[t];
      }
      *destination++ =
          static_cast<Sample>(std::clamp<int64_t>(sum >> kHorizontalShift, 0, job.max_sample));
    }
  }
}

template <class Sample>
void Horizontal(const int32_t* const* intermediate, const HorizontalReduction& job,
                Sample* const* destination) {
  for (int32_t row = 0; row < kReductionRowGroup; ++row) {
    HorizontalRow(intermediate[row], job, destination[row]);
  }
}

}  // namespace

template <class Sample>
ReductionKernels<Sample> ReductionKernelsPlain() {
  return {Vertical<Sample>, Horizontal<Sample>};
}

template ReductionKernels<uint8_t> ReductionKernelsPlain();
template ReductionKernels<uint16_t> ReductionKernelsPlain();

}  // namespace ovra
