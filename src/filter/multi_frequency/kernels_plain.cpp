// SPDX-License-Identifier: MIT
#include <algorithm>

#include "filter/multi_frequency/kernels.h"
#include "tone/pyramid/expand.h"

namespace ovra {
namespace {

constexpr int32_t kMaxChange = 32767;
constexpr int32_t kKeptHigher = 1 << 15;

template <class Sample, LuminanceLayout kLayout>
void Brightness(const uint8_t* source, int16_t* brightness, std::ptrdiff_t pixels,
                int32_t depth_bits) {
  const auto* samples = reinterpret_cast<const Sample*>(source);
  const int32_t max_sample = (1 << depth_bits) - 1;
  const int32_t shift = BrightnessShift(depth_bits);
  for (std::ptrdiff_t i = 0; i < pixels; ++i) {
    int32_t sum = 0;
    for (int c = 0; c < std::min(kLayout.channels, 3); ++c) {
      const int32_t sample = samples[kLayout.channels * i + c];
      sum += kLayout.weights[c] * std::min(sample, max_sample);
    }
    brightness[i] = static_cast<int16_t>(shift < 0 ? sum << -shift : sum >> shift);
  }
}

int32_t ChangeAt(const BandRow& row, std::ptrdiff_t i, const BandResponse& band) {
  const int32_t d = row.level[i] - ExpandedAt<int16_t>(row.coarse, i);
  const int32_t x = ExpandedAt<uint16_t>(row.coarse_changes, i) - kKeptHigher;
  const int32_t m = std::clamp<int32_t>(d, -band.noise, band.noise);
  const int32_t e = std::clamp<int32_t>(d, -band.limit, band.limit);
  const int32_t response = (band.gain * (e - m) - band.damping * m + 4096) >> 13;
  return std::clamp(x + response, -kMaxChange, kMaxChange);
}

void Respond(const BandRow& row, const BandResponse& band, int16_t* changes, std::ptrdiff_t count) {
  for (std::ptrdiff_t i = 0; i < count; ++i) {
    changes[i] = static_cast<int16_t>(ChangeAt(row, i, band) + kKeptHigher);
  }
}

int32_t InSampleUnits(int32_t change, int32_t depth_bits) {
  if (depth_bits == 16) return 2 * change;
  if (depth_bits == 15) return change;
  return (change + (1 << (14 - depth_bits))) >> (15 - depth_bits);
}

template <class Sample, LuminanceLayout kLayout>
void Change(const uint8_t* source, const BandRow& row, const BandResponse& band,
            uint8_t* destination, const RowSpan& pixels, const PixelRows& rows) {
  const auto* in = reinterpret_cast<const Sample*>(source);
  auto* out = reinterpret_cast<Sample*>(destination);
  const int32_t max_sample = (1 << rows.depth_bits) - 1;
  for (std::ptrdiff_t i = pixels.first; i < pixels.end; ++i) {
    const int32_t change = InSampleUnits(ChangeAt(row, i, band), rows.depth_bits);
    for (int c = 0; c < kLayout.channels; ++c) {
      const std::ptrdiff_t at = kLayout.channels * i + c;
      out[at] = c < kLayout.corrected
                    ? static_cast<Sample>(std::clamp(in[at] + change, 0, max_sample))
                    : in[at];
    }
  }
}

template <class Sample, int kAt>
constexpr MultiFrequencyKernels::OfLayout kOfLayout = {Brightness<Sample, kLuminanceLayouts[kAt]>,
                                                       Change<Sample, kLuminanceLayouts[kAt]>};

}  // namespace

const MultiFrequencyKernels kMultiFrequencyPlain = {
    Respond,
    {kOfLayout<uint8_t, 0>, kOfLayout<uint8_t, 1>, kOfLayout<uint8_t, 2>, kOfLayout<uint8_t, 3>,
     kOfLayout<uint8_t, 4>, kOfLayout<uint8_t, 5>},
    {kOfLayout<uint16_t, 0>, kOfLayout<uint16_t, 1>, kOfLayout<uint16_t, 2>, kOfLayout<uint16_t, 3>,
     kOfLayout<uint16_t, 4>, kOfLayout<uint16_t, 5>}};

}  // namespace ovra
