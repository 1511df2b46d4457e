// SPDX-License-Identifier: MIT
#include <algorithm>

#include "core/wrapping.h"
#include "resample/resize/kernels.h"

namespace ovra {
namespace {

template <class Sample>
Intermediate<Sample> FinishHorizontal(uint32_t sum) {
  const auto rounded = static_cast<int32_t>(WrappingSum(sum, kHorizontalRounding));
  return static_cast<Intermediate<Sample>>(rounded >> kHorizontalShift);
}

template <class Sample>
Sample FinishVertical(uint32_t sum, int32_t max_sample) {
  const auto rounded = static_cast<int32_t>(WrappingSum(sum, kVerticalRounding));
  return static_cast<Sample>(std::clamp(rounded >> kVerticalShift, 0, max_sample));
}

template <class Sample, int kChannels, bool kClamp>
void Columns(const HorizontalPass& pass, int32_t begin, int32_t end, const Sample* source,
             Intermediate<Sample>* out) {
  for (int32_t i = begin; i < end; ++i) {
    const int64_t first = int64_t{pass.sets[i].centre} - pass.taps_before_centre;
    const int16_t* const weights = pass.weights + std::ptrdiff_t{i} * pass.weight_stride;
    uint32_t sums[kChannels] = {};
    for (int32_t k = 0; k < pass.taps; ++k) {
      const int64_t column =
          kClamp ? std::clamp<int64_t>(first + k, 0, pass.source_width - 1) : first + k;
      const Sample* const pixel = source + static_cast<std::ptrdiff_t>(column) * kChannels;
      for (int c = 0; c < kChannels; ++c) {
        sums[c] = WrappingSum(sums[c], WrappingProduct(pixel[c], weights[k]));
      }
    }
    for (int c = 0; c < kChannels; ++c) {
      out[std::ptrdiff_t{i} * kChannels + c] = FinishHorizontal<Sample>(sums[c]);
    }
  }
}

template <class Sample, int kChannels>
void HorizontalRowPlain(const HorizontalPass& pass, const Sample* source,
                        Intermediate<Sample>* out) {
  Columns<Sample, kChannels, true>(pass, 0, pass.inner_begin, source, out);
  Columns<Sample, kChannels, false>(pass, pass.inner_begin, pass.inner_end, source, out);
  Columns<Sample, kChannels, true>(pass, pass.inner_end, pass.destination_width, source, out);
}

// Slots and weights are in tap order.
template <class Sample>
void CombineRows(const VerticalPass<Sample>& pass, int32_t taps, const int32_t* slots,
                 const int32_t* weights, Sample* destination) {
  for (std::ptrdiff_t i = 0; i < pass.samples; ++i) {
    uint32_t sum = 0;
    for (int32_t k = 0; k < taps; ++k) {
      const auto sample = pass.ring[slots[k] * pass.row_spacing + i];
      sum = WrappingSum(sum, WrappingProduct(sample, weights[k]));
    }
    destination[i] = FinishVertical<Sample>(sum, pass.max_sample);
  }
}

template <class Sample>
void ListTaps(const VerticalPass<Sample>& pass, int32_t* slots, int32_t* weights) {
  int32_t slot = pass.oldest;
  for (int32_t k = 0; k < pass.taps; ++k) {
    slots[k] = slot;
    weights[k] = pass.weights[k];
    slot = slot + 1 == pass.taps ? 0 : slot + 1;
  }
}

template <class Sample, int kTaps>
void VerticalRowPlain(const VerticalPass<Sample>& pass, Sample* destination) {
  int32_t slots[kTaps];
  int32_t weights[kTaps];
  ListTaps(pass, slots, weights);
  CombineRows(pass, kTaps, slots, weights, destination);
}

template <class Sample>
void VerticalRowAnyTaps(const VerticalPass<Sample>& pass, int32_t* slots, int32_t* weights,
                        Sample* destination) {
  ListTaps(pass, slots, weights);
  CombineRows(pass, pass.taps, slots, weights, destination);
}

template <class Sample>
constexpr ResizeKernelsOf<Sample> MakeKernels() {
  ResizeKernelsOf<Sample> kernels = {};
  for (auto& of_taps : kernels.horizontal) {
    of_taps[kOneChannel] = {HorizontalRowPlain<Sample, 1>, 0};
    of_taps[kThreeChannels] = {HorizontalRowPlain<Sample, 3>, 0};
    of_taps[kFourChannels] = {HorizontalRowPlain<Sample, 4>, 0};
  }
  kernels.clamped[kOneChannel] = Columns<Sample, 1, true>;
  kernels.clamped[kThreeChannels] = Columns<Sample, 3, true>;
  kernels.clamped[kFourChannels] = Columns<Sample, 4, true>;
  kernels.vertical[kTaps4] = VerticalRowPlain<Sample, 4>;
  kernels.vertical[kTaps5] = VerticalRowPlain<Sample, 5>;
  kernels.vertical[kTaps6] = VerticalRowPlain<Sample, 6>;
  kernels.vertical[kTaps7] = VerticalRowPlain<Sample, 7>;
  kernels.vertical[kTaps8] = VerticalRowPlain<Sample, 8>;
  kernels.vertical[kTaps16] = VerticalRowPlain<Sample, 16>;
  kernels.vertical_of_any_taps = VerticalRowAnyTaps<Sample>;
  return kernels;
}

}  // namespace

const ResizeKernels kResizePlain = {MakeKernels<uint8_t>(), MakeKernels<uint16_t>(), {}};

}  // namespace ovra
