// SPDX-License-Identifier: MIT
// Three-channel pictures by the depths of source and destination, for conversions of colour. Noise
// as source: every look-up goes elsewhere, which photographs do not ask for.
#pragma once

#include <string>

#include "bench_support.h"
#include "color/conversion.h"

namespace ovra_bench {

struct DepthPair {
  uint32_t input;
  uint32_t output;

  ovra::FormatPair Formats(uint32_t row_alignment = 1) const {
    return {OvraMakePixelFormat(input, 3, OVRA_MODEL_RGB, row_alignment, OVRA_ROWS_TOP_DOWN),
            OvraMakePixelFormat(output, 3, OVRA_MODEL_RGB, 1, OVRA_ROWS_TOP_DOWN)};
  }
  size_t InputBytes() const { return size_t{3} * kWidth * kHeight * (input > 8 ? 2 : 1); }
  size_t OutputBytes() const { return size_t{3} * kWidth * kHeight * (output > 8 ? 2 : 1); }
  std::string Name() const { return std::to_string(input) + "to" + std::to_string(output); }
  ovra::ImagePair Images() const {
    return {Source(InputBytes()), Destination(OutputBytes()), kWidth, kHeight};
  }
};

inline constexpr DepthPair kDepthPairs[] = {{8, 8}, {8, 16}, {16, 8}, {16, 16}};

// Narrow pictures show what is done for each row. They are small enough for the cache, and their rows
// are padded to 4 bytes where the width is odd.
inline constexpr int32_t kNarrowPixels = 1 << 18;
inline constexpr int32_t kNarrowWidths[] = {64, 65, 256, 257, 4096};

inline ovra::ImagePair NarrowImages(int32_t width) {
  const size_t bytes = size_t{4} * kNarrowPixels;
  return {Source(bytes), Destination(bytes), width, kNarrowPixels / width};
}

inline ovra::FormatPair NarrowFormats(int32_t width) {
  return DepthPair{8, 8}.Formats(width % 2 == 0 ? 1 : 4);
}

// Calls add(name, width, pixels) for each width.
template <class Add>
void ForNarrowWidths(const std::string& name, const Add& add) {
  for (const int32_t width : kNarrowWidths) {
    add(name + "/8to8_width" + std::to_string(width) + (width % 2 == 0 ? "" : "_padded"), width,
        double{1} * width * (kNarrowPixels / width));
  }
}

}  // namespace ovra_bench
