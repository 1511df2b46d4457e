// SPDX-License-Identifier: MIT
// Pictures of 16-bit samples.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numeric>
#include <vector>

#include "ovra/pixel_format.h"
#include "support/random.h"

namespace ovra_test {

// Packed rows of `channels` samples.
struct Picture16 {
  uint32_t width = 0;
  uint32_t height = 0;
  uint32_t depth_bits = 12;
  uint32_t channels = 3;
  OvraColorModel model = OVRA_MODEL_RGB;
  std::vector<uint16_t> samples;

  Picture16(uint32_t columns, uint32_t rows, uint32_t depth, uint32_t channel_count = 3,
            OvraColorModel color_model = OVRA_MODEL_RGB)
      : width(columns),
        height(rows),
        depth_bits(depth),
        channels(channel_count),
        model(color_model),
        samples(size_t{columns} * rows * channel_count) {}

  bool operator==(const Picture16&) const = default;

  uint32_t MaxSample() const { return (uint32_t{1} << depth_bits) - 1; }
  OvraPixelFormatCode Format() const {
    return OvraMakePixelFormat(depth_bits, channels, model, 1, OVRA_ROWS_TOP_DOWN);
  }
  const uint8_t* Bytes() const { return reinterpret_cast<const uint8_t*>(samples.data()); }
  uint8_t* Bytes() { return reinterpret_cast<uint8_t*>(samples.data()); }

  uint16_t& At(uint32_t x, uint32_t y, uint32_t channel = 0) {
    return samples[(size_t{y} * width + x) * channels + channel];
  }

  uint16_t At(uint32_t x, uint32_t y, uint32_t channel = 0) const {
    return samples[(size_t{y} * width + x) * channels + channel];
  }

  // Each pixel grey, of the value that `value` gives for its column and row.
  template <class Value>
  Picture16& FillGrey(const Value& value) {
    for (uint32_t y = 0; y < height; ++y) {
      for (uint32_t x = 0; x < width; ++x) {
        std::fill_n(&At(x, y), channels, static_cast<uint16_t>(value(x, y)));
      }
    }
    return *this;
  }
};

// Random samples, many of them 0 or the greatest one.
inline Picture16 Noise(uint32_t width, uint32_t height, uint32_t depth_bits, uint32_t channels = 1,
                       OvraColorModel model = OVRA_MODEL_GREY) {
  Picture16 picture(width, height, depth_bits, channels, model);
  Random random(depth_bits + channels);
  uint16_t* const begin = picture.samples.data();
  FillSamples(random, begin, begin + picture.samples.size(), picture.MaxSample());
  return picture;
}

// A slope and a cross slope with an edge between them, in colours and with noise; 83 x 61.
inline Picture16 AnchorPicture(uint32_t depth_bits) {
  Picture16 picture(83, 61, depth_bits);
  for (uint32_t i = 0; i < picture.samples.size(); ++i) {
    const uint32_t x = i / 3 % 83;
    const uint32_t y = i / 3 / 83;
    const uint32_t noise = i * 2654435761U >> 26;
    const uint32_t sample = (x < 40 ? 300 + 20 * x : 3000 - 30 * y) + 150 * (i % 3) + 4 * noise;
    picture.samples[i] = static_cast<uint16_t>(std::min(sample, 4095U) >> (12 - depth_bits));
  }
  return picture;
}

// Grey with white noise of this standard deviation, in codes.
inline Picture16 NoisyGrey(uint32_t side, uint32_t depth_bits, double grey, double deviation) {
  Random random(1);
  const auto reach = static_cast<int32_t>(std::lround(std::sqrt(3.0) * deviation));
  const auto middle = static_cast<int32_t>(std::lround(grey));
  return Picture16(side, side, depth_bits).FillGrey([&](uint32_t, uint32_t) {
    return middle + RandomInt(random, -reach, reach);
  });
}

// The standard deviation of all samples.
inline double DeviationOf(const std::vector<uint16_t>& samples) {
  const double count = static_cast<double>(samples.size());
  const double mean = std::accumulate(samples.begin(), samples.end(), 0.0) / count;
  double squares = 0;
  for (const uint16_t sample : samples) squares += (sample - mean) * (sample - mean);
  return std::sqrt(squares / count);
}

// FNV-1a of 32 bits.
inline uint32_t Fnv1a(const uint8_t* bytes, size_t size) {
  uint32_t hash = 2166136261U;
  for (size_t i = 0; i < size; ++i) hash = (hash ^ bytes[i]) * 16777619U;
  return hash;
}

inline uint32_t Fnv1a(const Picture16& picture) {
  return Fnv1a(picture.Bytes(), 2 * picture.samples.size());
}

}  // namespace ovra_test
