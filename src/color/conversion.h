// SPDX-License-Identifier: MIT
// What every colour conversion has: a pair of formats, rules by which they are judged, and a pair
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

// Judges the input, then the output. The first status that is not 0 is returned.
Status CheckFormats(const DecodedFormatPair& formats, const FormatRules& input_rules,
                    const FormatRules& output_rules);

// Decodes both formats, input first, before either is judged.
Status DecodeAndCheckFormats(const FormatPair& codes, const FormatRules& input_rules,
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

// Calls run(const uint8_t* source, uint8_t* destination, std::ptrdiff_t pixels) for every row in
// memory order, or for all rows at once where none has padding, so that what a kernel prepares for
// a run does not count with narrow images. Both images keep the input format's row alignment; the
// output's is not used. Negative sizes have no rows.
template <class Run>
void ForEachRun(const ImagePair& images, const DecodedFormatPair& formats, const Run& run) {
  if (images.width <= 0 || images.height <= 0) return;
  PixelFormat input = formats.input;
  PixelFormat output = formats.output;
  output.alignment_bytes = input.alignment_bytes;
  const std::ptrdiff_t source_stride = RowStride(images.width, input);
  const std::ptrdiff_t destination_stride = RowStride(images.width, output);
  input.alignment_bytes = output.alignment_bytes = 1;
  if (source_stride == RowStride(images.width, input) &&
      destination_stride == RowStride(images.width, output)) {
    run(images.source, images.destination, std::ptrdiff_t{images.width} * images.height);
    return;
  }
  for (std::ptrdiff_t y = 0; y < images.height; ++y) {
    run(images.source + y * source_stride, images.destination + y * destination_stride,
        std::ptrdiff_t{images.width});
  }
}

}  // namespace ovra
