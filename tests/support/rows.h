// SPDX-License-Identifier: MIT
// Images of padded rows in test buffers.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace ovra_test {

// Rows of `samples` samples that start at multiples of `alignment` bytes.
struct RowLayout {
  size_t samples;
  size_t height;
  uint32_t depth_bits;
  size_t alignment;

  size_t SampleBytes() const { return depth_bits == 8 ? 1 : 2; }
  size_t RowBytes() const { return samples * SampleBytes(); }
  size_t Stride() const { return (RowBytes() + alignment - 1) / alignment * alignment; }
  size_t Size() const { return Stride() * height; }
  // Up to the last sample, without the last row's padding.
  size_t UnpaddedSize() const { return Stride() * (height - 1) + RowBytes(); }

  uint32_t At(const uint8_t* image, size_t row, size_t sample) const {
    const uint8_t* const place = image + Stride() * row + SampleBytes() * sample;
    if (depth_bits == 8) return *place;
    uint16_t value;
    std::memcpy(&value, place, sizeof value);
    return value;
  }

  void Set(uint8_t* image, size_t row, size_t sample, uint32_t value) const {
    uint8_t* const place = image + Stride() * row + SampleBytes() * sample;
    const auto wide = static_cast<uint16_t>(value);
    if (depth_bits == 8) {
      *place = static_cast<uint8_t>(value);
    } else {
      std::memcpy(place, &wide, sizeof wide);
    }
  }
};

}  // namespace ovra_test
