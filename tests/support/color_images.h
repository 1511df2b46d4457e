// SPDX-License-Identifier: MIT
// Images for the tests of colour conversions.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "ovra/pixel_format.h"
#include "support/guarded_buffer.h"
#include "support/random.h"

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

// A format word of three channels.
inline OvraPixelFormatCode ColorFormat(uint32_t depth_bits, OvraColorModel model = OVRA_MODEL_RGB,
                                       uint32_t alignment = 1) {
  return OvraMakePixelFormat(depth_bits, 3, model, alignment, OVRA_ROWS_TOP_DOWN);
}

// A source and a destination of random size, alignment, colour model and, as `round` counts on, all
// four pairs of sample types. Source samples reach beyond their depth; the buffers end at the last
// sample; the destination holds GuardedBuffer::kFill. Its alignment field is one that must not
// count.
struct RandomColorImages {
  RandomColorImages(Random& random, int round)
      : model(static_cast<OvraColorModel>(RandomInt(random, 1, 3) << 8)),
        width(RandomInt(random, 1, 70)),
        height(RandomInt(random, 1, 3)),
        in{3 * static_cast<size_t>(width), static_cast<size_t>(height),
           static_cast<uint32_t>(round % 2 ? 8 : RandomInt(random, 9, 16)),
           size_t{1} << RandomInt(random, 0, 2)},
        out{in.samples, in.height,
            static_cast<uint32_t>(round % 4 < 2 ? 8 : RandomInt(random, 9, 16)), in.alignment},
        in_format(ColorFormat(in.depth_bits, model, static_cast<uint32_t>(in.alignment))),
        out_format(
            ColorFormat(out.depth_bits, OVRA_MODEL_YCC, static_cast<uint32_t>(4 / in.alignment))),
        source(in.UnpaddedSize()),
        destination(out.UnpaddedSize()) {
    for (uint8_t& byte : source) byte = static_cast<uint8_t>(random() >> 8);
  }

  uint32_t SourceSample(size_t row, size_t sample) const {
    return in.At(source.data(), row, sample);
  }

  OvraColorModel model;
  int32_t width;
  int32_t height;
  RowLayout in;
  RowLayout out;
  OvraPixelFormatCode in_format;
  OvraPixelFormatCode out_format;
  GuardedBuffer source;
  GuardedBuffer destination;
};

}  // namespace ovra_test
