// SPDX-License-Identifier: MIT
// What every colour conversion has: a pair of formats, rules by which it accepts them, and a pair
// of images.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/format_rules.h"
#include "core/pixel_format.h"
#include "core/status.h"

namespace ovra {

// The format words of a conversion. Compared as whole words, ignored bits included.
struct FormatPair {
  PixelFormatCode input = 0;
  PixelFormatCode output = 0;

  bool operator==(const FormatPair&) const = default;
};

struct DecodedFormatPair {
  PixelFormat input;
  PixelFormat output;
};

// A model for FormatRules::accepts_model.
bool IsFourChannelCmyk(const PixelFormat& format);

// Decodes both formats, input first, then judges the input, then the output. The first status that
// is not 0 is returned.
Status AcceptFormats(const FormatPair& codes, const FormatRules& input_rules,
                     const FormatRules& output_rules, DecodedFormatPair* formats);

// The images of one conversion, of equal size.
struct ImagePair {
  const uint8_t* source;
  uint8_t* destination;
  int32_t width;
  int32_t height;

  bool HasNull() const { return source == nullptr || destination == nullptr; }
  bool HasZeroSide() const { return width == 0 || height == 0; }
};

// Calls row(const uint8_t* source, uint8_t* destination) for every row in memory order. Both images
// keep the input format's row alignment; the output's is not used. Negative sizes have no rows.
template <class Row>
void ForEachRow(const ImagePair& images, const DecodedFormatPair& formats, const Row& row) {
  if (images.width <= 0) return;
  PixelFormat output = formats.output;
  output.alignment_bytes = formats.input.alignment_bytes;
  const std::ptrdiff_t source_stride = RowStride(images.width, formats.input);
  const std::ptrdiff_t destination_stride = RowStride(images.width, output);
  for (std::ptrdiff_t y = 0; y < images.height; ++y) {
    row(images.source + y * source_stride, images.destination + y * destination_stride);
  }
}

// Calls visit.operator()<In, Out>() with the sample types of formats of at most 16 bits.
template <class Visit>
void WithSampleTypes(const DecodedFormatPair& formats, const Visit& visit) {
  const bool wide_output = formats.output.depth_bits > 8;
  if (formats.input.depth_bits > 8) {
    wide_output ? visit.template operator()<uint16_t, uint16_t>()
                : visit.template operator()<uint16_t, uint8_t>();
  } else {
    wide_output ? visit.template operator()<uint8_t, uint16_t>()
                : visit.template operator()<uint8_t, uint8_t>();
  }
}

}  // namespace ovra
