// SPDX-License-Identifier: MIT
#include "core/composition/kernels.h"

namespace ovra {
namespace {

// At most 257 * 255, so the shifted sum fits a sample without a limit.
template <WeightOf kWeightOf>
uint8_t Blend(uint32_t weight, uint32_t source, uint32_t destination) {
  const uint32_t owner = kWeightOf == WeightOf::kSource ? source : destination;
  const uint32_t other = kWeightOf == WeightOf::kSource ? destination : source;
  return static_cast<uint8_t>(((weight + 1) * owner + (256 - weight) * other) >> 8);
}

template <int kChannels, WeightOf kWeightOf>
void AlphaBlend(const uint8_t* source, uint8_t* destination, std::ptrdiff_t pixels,
                NextRow /*next*/) {
  for (std::ptrdiff_t i = 0; i < pixels; ++i) {
    const uint8_t alpha = source[kChannels];
    for (int c = 0; c < kChannels; ++c) {
      destination[c] = Blend<kWeightOf>(alpha, source[c], destination[c]);
    }
    source += kChannels + 1;
    destination += kChannels;
  }
}

template <WeightOf kWeightOf>
void MaskBlend(const uint8_t* source, const uint8_t* mask, uint8_t* destination,
               std::ptrdiff_t samples, NextRow /*next*/) {
  for (std::ptrdiff_t i = 0; i < samples; ++i) {
    destination[i] = Blend<kWeightOf>(mask[i], source[i], destination[i]);
  }
}

template <WeightOf kWeightOf>
constexpr CompositionKernels::OfWeight kKernels = {
    {AlphaBlend<1, kWeightOf>, AlphaBlend<2, kWeightOf>, AlphaBlend<3, kWeightOf>},
    MaskBlend<kWeightOf>};

}  // namespace

const CompositionKernels kCompositionPlain = {kKernels<WeightOf::kDestination>,
                                              kKernels<WeightOf::kSource>};

}  // namespace ovra
