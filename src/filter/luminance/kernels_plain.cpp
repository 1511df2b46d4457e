// SPDX-License-Identifier: MIT
#include <algorithm>

#include "filter/luminance/kernels.h"

namespace ovra {
namespace {

template <class Sample, LuminanceLayout kLayout>
void Extract(const uint8_t* source, int16_t* luminance, std::ptrdiff_t pixels, int32_t depth_bits) {
  const auto* samples = reinterpret_cast<const Sample*>(source);
  const int32_t max_sample = (1 << depth_bits) - 1;
  for (std::ptrdiff_t i = 0; i < pixels; ++i) {
    int32_t sum = 0;
    for (int channel = 0; channel < std::min(kLayout.channels, 3); ++channel) {
      const int32_t sample = samples[kLayout.channels * i + channel];
      sum += kLayout.weights[channel] * std::min(sample, max_sample);
    }
    luminance[i] = static_cast<int16_t>(sum >> LuminanceShift(depth_bits));
  }
}

template <class Sample, LuminanceLayout kLayout>
void AddDeltas(const uint8_t* source, uint8_t* destination, const int16_t* deltas,
               std::ptrdiff_t pixels, int32_t depth_bits) {
  const auto* in = reinterpret_cast<const Sample*>(source);
  auto* out = reinterpret_cast<Sample*>(destination);
  const int32_t max_sample = (1 << depth_bits) - 1;
  for (std::ptrdiff_t i = 0; i < pixels; ++i) {
    for (int channel = 0; channel < kLayout.channels; ++channel) {
      const std::ptrdiff_t at = kLayout.channels * i + channel;
      out[at] = channel < kLayout.corrected
                    ? static_cast<Sample>(std::clamp(in[at] + deltas[i], 0, max_sample))
                    : in[at];
    }
  }
}

template <class Sample, int kAt>
constexpr LuminanceKernels::OfLayout kOfLayout = {Extract<Sample, kLuminanceLayouts[kAt]>,
                                                  AddDeltas<Sample, kLuminanceLayouts[kAt]>};

}  // namespace

const LuminanceKernels kLuminancePlain = {
    {kOfLayout<uint8_t, 0>, kOfLayout<uint8_t, 1>, kOfLayout<uint8_t, 2>, kOfLayout<uint8_t, 3>,
     kOfLayout<uint8_t, 4>, kOfLayout<uint8_t, 5>},
    {kOfLayout<uint16_t, 0>, kOfLayout<uint16_t, 1>, kOfLayout<uint16_t, 2>, kOfLayout<uint16_t, 3>,
     kOfLayout<uint16_t, 4>, kOfLayout<uint16_t, 5>}};

}  // namespace ovra
