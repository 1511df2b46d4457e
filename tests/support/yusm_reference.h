// SPDX-License-Identifier: MIT
// The luminance unsharp mask from its definition: whole planes, one pixel after the other.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "ovra/filter.h"
#include "support/random.h"

namespace ovra_test {

struct YUsmCase {
  uint32_t width;
  uint32_t height;
  uint32_t depth_bits;
  OvraColorModel model;
  uint32_t alignment;
  std::vector<int32_t> weights;
  float amount;
  std::array<int16_t, OVRA_LEVEL_TABLE_SIZE> level;
  std::array<int16_t, OVRA_DIFFERENCE_TABLE_SIZE> difference;

  uint32_t Channels() const;
  size_t SampleBytes() const { return depth_bits == 8 ? 1 : 2; }
  size_t Stride() const;
  OvraPixelFormatCode Format() const;
  int32_t TapCount() const { return static_cast<int32_t>(weights.size()); }
  std::string Describe() const;
};

// Small images of every format; weights that make sense, the special sets, and extreme ones.
YUsmCase RandomYUsmCase(Random& random);

// Samples of the whole depth, now and then above it. The image ends at its last pixel: its last row
// has no padding.
std::vector<uint8_t> RandomYUsmImage(const YUsmCase& test, Random& random);

// Whether this byte of the image belongs to a pixel and not to row padding.
bool IsPixelByte(const YUsmCase& test, size_t at);

// The bytes that the mask makes of the source; padding as in the source.
std::vector<uint8_t> ReferenceYUsm(const YUsmCase& test, const std::vector<uint8_t>& source);

}  // namespace ovra_test
