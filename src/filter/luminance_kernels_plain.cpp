// SPDX-License-Identifier: MIT
#include <algorithm>

#include "filter/luminance_kernels.h"
#include "ovra/pixel_format.h"

namespace ovra {
namespace {

constexpr int32_t kWorkingDepthBits = 10;
constexpr int32_t kWeightBits = 6;  // the weights sum to 64

template <LuminanceLayout kLayout>
int32_t Luminance(const int32_t* samples, int32_t depth_bits) {
  if constexpr (kLayout.IsWeighted()) {
    const int32_t sum = kLayout.weights[0] * samples[0] + kLayout.weights[1] * samples[1] +
                        kLayout.weights[2] * samples[2];
    return sum >> (depth_bits + kWeightBits - kWorkingDepthBits);
  } else {
    if (depth_bits <= kWorkingDepthBits) return samples[0] << (kWorkingDepthBits - depth_bits);
    return samples[0] >> (depth_bits - kWorkingDepthBits);
  }
}

template <class Sample, LuminanceLayout kLayout>
void Extract(const uint8_t* source, int16_t* luminance, std::ptrdiff_t pixels, int32_t depth_bits) {
  constexpr int kChannelsRead = kLayout.IsWeighted() ? 3 : 1;
  const auto* samples = reinterpret_cast<const Sample*>(source);
  const int32_t max_sample = (1 << depth_bits) - 1;
  for (std::ptrdiff_t i = 0; i < pixels; ++i) {
    int32_t limited[kChannelsRead];
    for (int channel = 0; channel < kChannelsRead; ++channel) {
      limited[channel] = std::min<int32_t>(samples[kLayout.channels * i + channel], max_sample);
    }
    luminance[i] = static_cast<int16_t>(Luminance<kLayout>(limited, depth_bits));
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

template <class Sample>
LuminanceKernels KernelsOf(uint32_t color_model) {
  switch (color_model) {
    case OVRA_MODEL_RGB:
      return {Extract<Sample, kRgbLayout>, AddDeltas<Sample, kRgbLayout>};
    case OVRA_MODEL_BGR:
      return {Extract<Sample, kBgrLayout>, AddDeltas<Sample, kBgrLayout>};
    case OVRA_MODEL_YCC:
      return {Extract<Sample, kYccLayout>, AddDeltas<Sample, kYccLayout>};
    case OVRA_MODEL_RGBA:
      return {Extract<Sample, kRgbaLayout>, AddDeltas<Sample, kRgbaLayout>};
    case OVRA_MODEL_BGRA:
      return {Extract<Sample, kBgraLayout>, AddDeltas<Sample, kBgraLayout>};
    default:
      return {Extract<Sample, kGreyLayout>, AddDeltas<Sample, kGreyLayout>};
  }
}

}  // namespace

LuminanceKernels LuminanceKernelsPlain(uint32_t color_model, int32_t depth_bits) {
  return depth_bits == 8 ? KernelsOf<uint8_t>(color_model) : KernelsOf<uint16_t>(color_model);
}

}  // namespace ovra
