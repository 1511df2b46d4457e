// SPDX-License-Identifier: MIT
#include "twelve_bits.h"

#include <algorithm>
#include <array>

namespace ovra_host {
namespace {

constexpr uint32_t kWorkDepth = 12;
constexpr uint32_t kWorkMax = (1U << kWorkDepth) - 1;
constexpr uint32_t kDitherSide = 8;

// The recursive threshold matrix of B. E. Bayer, An optimum method for two-level rendition of
// continuous-tone pictures, 1973, in values of 0..63.
constexpr std::array<std::array<uint8_t, kDitherSide>, kDitherSide> MakeThresholds() {
  std::array<std::array<uint8_t, kDitherSide>, kDitherSide> thresholds = {};
  for (uint32_t y = 0; y < kDitherSide; ++y) {
    for (uint32_t x = 0; x < kDitherSide; ++x) {
      uint32_t value = 0;
      for (uint32_t bit = 0; bit < 3; ++bit) {
        const uint32_t across = x >> bit & 1;
        const uint32_t down = y >> bit & 1;
        value = value << 2 | (across ^ down) << 1 | down;
      }
      thresholds[y][x] = static_cast<uint8_t>(value);
    }
  }
  return thresholds;
}

// Back to 8 bits. The threshold moves a sample by less than half a step, and by so much less that
// a widened sample, which is off by up to 1/32 of one, always finds back.
void DitherRow(const uint16_t* in, uint8_t* out, int32_t y, size_t samples, uint32_t channels) {
  constexpr auto kThresholds = MakeThresholds();
  constexpr int32_t kHalf = kWorkMax / 2;
  constexpr int32_t kReach = kWorkMax * 29 / 32;
  constexpr int32_t kSteps = kDitherSide * kDitherSide;
  const auto& row = kThresholds[static_cast<uint32_t>(y) % kDitherSide];
  for (size_t i = 0; i < samples; ++i) {
    const int32_t threshold = row[i / channels % kDitherSide];
    const int32_t shift = (2 * threshold + 1 - kSteps) * kReach / (2 * kSteps);
    const int32_t value = in[i] * UINT8_MAX + kHalf + shift;
    out[i] = static_cast<uint8_t>(std::clamp(value, 0, UINT8_MAX * int32_t{kWorkMax}) /
                                  int32_t{kWorkMax});
  }
}

}  // namespace

Image WidenedToTwelveBits(const Image& source, const ImageOperation& operation) {
  const Image wide = operation(WithDepth(source, kWorkDepth));
  Image result(source.width(), source.height(), source.format());
  for (int32_t y = 0; y < source.height(); ++y) {
    DitherRow(wide.Row16(y), result.Row(y), y, source.row_bytes(), source.channels());
  }
  return result;
}

Image GainedAtTwelveBits(const Image& source, const ImageOperation& operation) {
  constexpr uint32_t kLowBits = 4;
  constexpr uint32_t kColors = 3;
  Image upper(source.width(), source.height(), FileFormat(kWorkDepth, kColors));
  for (int32_t y = 0; y < source.height(); ++y) {
    for (size_t i = 0; i < kColors * static_cast<size_t>(source.width()); ++i) {
      upper.Row16(y)[i] = static_cast<uint16_t>(source.Row16(y)[i] >> kLowBits);
    }
  }
  const Image gained = operation(upper);
  Image result = source;
  for (int32_t y = 0; y < source.height(); ++y) {
    const uint16_t* before = upper.Row16(y);
    const uint16_t* after = gained.Row16(y);
    uint16_t* pixel = result.Row16(y);
    for (int32_t x = 0; x < source.width(); ++x, before += kColors, after += kColors) {
      const uint32_t sum = before[0] + before[1] + before[2];
      const uint32_t gained_sum = after[0] + after[1] + after[2];
      for (uint32_t c = 0; c < kColors; ++c, ++pixel) {
        const uint32_t low = *pixel & ((1U << kLowBits) - 1);
        const uint32_t carried = sum == 0 ? low : (low * gained_sum + sum / 2) / sum;
        *pixel =
            static_cast<uint16_t>(std::min((uint32_t{after[c]} << kLowBits) + carried, 65535U));
      }
    }
  }
  return result;
}

}  // namespace ovra_host
