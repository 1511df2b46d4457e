// SPDX-License-Identifier: MIT
#include <algorithm>

#include "resample/resize_kernels.h"

namespace ovra {
namespace {

// A product modulo 2^32.
uint32_t WrappingProduct(int32_t a, int32_t b) {
  return static_cast<uint32_t>(a) * static_cast<uint32_t>(b);
}

template <class Sample>
Intermediate<Sample> FinishHorizontal(uint32_t sum) {
  const auto rounded = static_cast<int32_t>(sum + kHorizontalRounding);
  return static_cast<Intermediate<Sample>>(rounded >> kHorizontalShift);
}

template <class Sample>
Sample FinishVertical(uint32_t sum, int32_t max_sample) {
  const auto rounded = static_cast<int32_t>(sum + kVerticalRounding);
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
      for (int c = 0; c < kChannels; ++c) sums[c] += WrappingProduct(pixel[c], weights[k]);
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
      sum += WrappingProduct(pass.ring[slots[k] * pass.row_spacing + i], weights[k]);
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

}  // namespace

template <class Sample>
void HorizontalColumnsClamped(const HorizontalPass& pass, int32_t begin, int32_t end,
                              const Sample* source, Intermediate<Sample>* out) {
  switch (pass.channels) {
    case 1:
      return Columns<Sample, 1, true>(pass, begin, end, source, out);
    case 3:
      return Columns<Sample, 3, true>(pass, begin, end, source, out);
    default:
      return Columns<Sample, 4, true>(pass, begin, end, source, out);
  }
}

template <class Sample>
void VerticalRowGeneric(const VerticalPass<Sample>& pass, int32_t* slots, int32_t* weights,
                        Sample* destination) {
  ListTaps(pass, slots, weights);
  CombineRows(pass, pass.taps, slots, weights, destination);
}

template <class Sample>
HorizontalKernel<Sample> SelectHorizontalPlain(int32_t taps, int32_t channels) {
  switch (channels) {
    case 1:
      return {HorizontalRowPlain<Sample, 1>, taps};
    case 3:
      return {HorizontalRowPlain<Sample, 3>, taps};
    default:
      return {HorizontalRowPlain<Sample, 4>, taps};
  }
}

template <class Sample>
VerticalRow<Sample>* SelectVerticalPlain(int32_t taps) {
  switch (taps) {
    case 4:
      return VerticalRowPlain<Sample, 4>;
    case 5:
      return VerticalRowPlain<Sample, 5>;
    case 6:
      return VerticalRowPlain<Sample, 6>;
    case 7:
      return VerticalRowPlain<Sample, 7>;
    case 8:
      return VerticalRowPlain<Sample, 8>;
    case 16:
      return VerticalRowPlain<Sample, 16>;
    default:
      return nullptr;
  }
}

template void HorizontalColumnsClamped(const HorizontalPass&, int32_t, int32_t, const uint8_t*,
                                       int16_t*);
template void HorizontalColumnsClamped(const HorizontalPass&, int32_t, int32_t, const uint16_t*,
                                       int32_t*);
template void VerticalRowGeneric(const VerticalPass<uint8_t>&, int32_t*, int32_t*, uint8_t*);
template void VerticalRowGeneric(const VerticalPass<uint16_t>&, int32_t*, int32_t*, uint16_t*);
template HorizontalKernel<uint8_t> SelectHorizontalPlain(int32_t, int32_t);
template HorizontalKernel<uint16_t> SelectHorizontalPlain(int32_t, int32_t);
template VerticalRow<uint8_t>* SelectVerticalPlain(int32_t);
template VerticalRow<uint16_t>* SelectVerticalPlain(int32_t);

}  // namespace ovra
