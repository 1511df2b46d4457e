// SPDX-License-Identifier: MIT
// The kernels of a tier, for registers of any width. Included by one kernel file a tier.
#pragma once

#include "resample/resize/byte_columns_vector.h"
#include "resample/resize/horizontal_vector.h"
#include "resample/resize/vertical_vector.h"

namespace ovra {
namespace {

// Other tap counts than those with a form of their own: the plain horizontal pass.
template <class Sample, int kChannelForm>
void PlainHorizontalRow(const HorizontalPass& pass, const Sample* source,
                        Intermediate<Sample>* out) {
  kResizePlain.Of<Sample>().horizontal[kAnyTaps][kChannelForm].run(pass, source, out);
}

// An odd tap count takes one tap more in the horizontal pass, of weight 0.
template <class V, class Sample, int kTaps>
constexpr void SetKernelsOfTaps(int form, ResizeKernelsOf<Sample>* kernels) {
  constexpr int kPairs = (kTaps + 1) / 2;
  using Grey = GreyColumns<V, Sample, kPairs>;
  using Three = PixelColumns<V, Sample, 3, kPairs>;
  using Four = PixelColumns<V, Sample, 4, kPairs>;
  kernels->horizontal[form][kOneChannel] = {HorizontalRowVector<Grey, Sample, 1>,
                                            Grey::kPixelsRead};
  kernels->horizontal[form][kThreeChannels] = {HorizontalRowVector<Three, Sample, 3>,
                                               Three::Loads::kPixelsRead};
  kernels->horizontal[form][kFourChannels] = {HorizontalRowVector<Four, Sample, 4>,
                                              Four::Loads::kPixelsRead};
  kernels->vertical[form] = VerticalRowVector<V, Sample, kTaps>;
}

template <class V, class Sample>
constexpr ResizeKernelsOf<Sample> MakeKernels() {
  ResizeKernelsOf<Sample> kernels = {};
  SetKernelsOfTaps<V, Sample, 4>(kTaps4, &kernels);
  SetKernelsOfTaps<V, Sample, 5>(kTaps5, &kernels);
  SetKernelsOfTaps<V, Sample, 6>(kTaps6, &kernels);
  SetKernelsOfTaps<V, Sample, 7>(kTaps7, &kernels);
  SetKernelsOfTaps<V, Sample, 8>(kTaps8, &kernels);
  SetKernelsOfTaps<V, Sample, 16>(kTaps16, &kernels);
  kernels.horizontal[kAnyTaps][kOneChannel] = {PlainHorizontalRow<Sample, kOneChannel>, 0};
  kernels.horizontal[kAnyTaps][kThreeChannels] = {PlainHorizontalRow<Sample, kThreeChannels>, 0};
  kernels.horizontal[kAnyTaps][kFourChannels] = {PlainHorizontalRow<Sample, kFourChannels>, 0};
  kernels.vertical[kAnyTaps] = VerticalRowVector<V, Sample, 0>;
  return kernels;
}

template <class V>
constexpr ResizeKernels kResizeOf = {MakeKernels<V, uint8_t>(), MakeKernels<V, uint16_t>(),
                                     kByteColumnsOf<V>};

}  // namespace
}  // namespace ovra
