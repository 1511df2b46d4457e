// SPDX-License-Identifier: MIT
// What multi-frequency and tone processing are timed on.
#pragma once

#include <algorithm>
#include <vector>

#include "bench_support.h"
#include "ovra/pixel_format.h"

namespace ovra_bench {

inline constexpr double kTonePixels = double{kWidth} * kHeight;
inline constexpr size_t kToneBytes = size_t{6} * kWidth * kHeight;
inline constexpr OvraPixelFormatCode kRgb12 =
    OvraMakePixelFormat(12, 3, OVRA_MODEL_RGB, 1, OVRA_ROWS_TOP_DOWN);

// Noise of 16 bits would be white nearly everywhere: slopes of 12 bits with some noise.
inline const uint8_t* TonePicture() {
  static std::vector<uint16_t> samples;
  if (samples.empty()) {
    const uint8_t* const noise = Source(kToneBytes);
    samples.resize(kToneBytes / 2);
    for (size_t i = 0; i < samples.size(); ++i) {
      const size_t x = i / 3 % kWidth;
      const size_t y = i / 3 / kWidth;
      const size_t slope = (x + (y / 500 % 2 != 0 ? 2 * y : 0)) % 8192;
      const size_t folded = slope < 4096 ? slope : 8191 - slope;
      samples[i] = static_cast<uint16_t>(std::min<size_t>(folded + noise[i] / 4, 4095));
    }
  }
  return reinterpret_cast<const uint8_t*>(samples.data());
}

}  // namespace ovra_bench
