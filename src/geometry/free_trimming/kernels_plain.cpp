// SPDX-License-Identifier: MIT
#include <algorithm>

#include "geometry/free_trimming/kernels.h"

namespace ovra {
namespace {

template <class Sample>
Sample SampleAt(const uint8_t* row, std::ptrdiff_t sample) {
  return reinterpret_cast<const Sample*>(row)[sample];
}

// The sums across of deep samples need 39 bits.
template <class Sample>
struct AcrossSum;
template <>
struct AcrossSum<uint8_t> {
  using Type = int32_t;
};
template <>
struct AcrossSum<uint16_t> {
  using Type = int64_t;
};

template <class Sample, int kChannels>
void TrimPixel(const uint8_t* first, std::ptrdiff_t stride, const int16_t* across,
               const int16_t* down, int32_t max_sample, Sample* destination) {
  using Sum = typename AcrossSum<Sample>::Type;
  Sum sums[kChannels];
  std::fill_n(sums, kChannels, Sum{1} << (kAcrossShift - 1));
  for (int m = 0; m < kLanczosTaps; ++m) {
    for (int c = 0; c < kChannels; ++c) {
      int32_t sum = 1 << (kDownShift - 1);
      for (int n = 0; n < kLanczosTaps; ++n) {
        sum += SampleAt<Sample>(first + n * stride, m * kChannels + c) * down[n];
      }
      sums[c] += Sum{sum >> kDownShift} * across[m];
    }
  }
  for (int c = 0; c < kChannels; ++c) {
    destination[c] = static_cast<Sample>(std::clamp<Sum>(sums[c] >> kAcrossShift, 0, max_sample));
  }
}

template <class Sample, int kChannels>
void Trim(const TrimmingRow& row, std::ptrdiff_t count, int32_t max_sample, uint8_t* destination) {
  constexpr std::ptrdiff_t kPixelBytes = kChannels * sizeof(Sample);
  auto* out = reinterpret_cast<Sample*>(destination);
  for (std::ptrdiff_t i = 0; i < count; ++i, out += kChannels) {
    const int64_t u = RoundedPosition(row.u + i * row.u_step);
    const int64_t v = RoundedPosition(row.v + i * row.v_step);
    const auto column = static_cast<std::ptrdiff_t>(u >> kPhaseBits) - 2;
    const auto line = static_cast<std::ptrdiff_t>(v >> kPhaseBits) - 2;
    TrimPixel<Sample, kChannels>(row.source + line * row.stride + column * kPixelBytes, row.stride,
                                 kLanczosWeights.sets[u & (kLanczosPhases - 1)],
                                 kLanczosWeights.sets[v & (kLanczosPhases - 1)], max_sample, out);
  }
}

}  // namespace

const TrimmingKernels kTrimmingPlain = {
    {Trim<uint8_t, 1>, nullptr, Trim<uint8_t, 3>, Trim<uint8_t, 4>},
    {Trim<uint16_t, 1>, nullptr, Trim<uint16_t, 3>, Trim<uint16_t, 4>}};

}  // namespace ovra
