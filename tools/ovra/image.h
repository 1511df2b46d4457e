// SPDX-License-Identifier: MIT
// A picture in memory, laid out as the library wants it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "ovra/pixel_format.h"

namespace ovra_host {

// No picture may be larger; files that claim more are refused before memory is asked for.
constexpr int64_t kMaxSide = 1'000'000;
constexpr int64_t kMaxImageBytes = int64_t{1} << 31;

// Owns the pixels. The distance between rows is the one that the format word implies.
class Image {
 public:
  // All samples 0. Throws Error when a side is not in 1..kMaxSide, when the picture would be larger
  // than kMaxImageBytes, and for formats that are not interleaved samples of 8 to 16 bits.
  Image(int64_t width, int64_t height, OvraPixelFormatCode format);

  int32_t width() const { return width_; }
  int32_t height() const { return height_; }
  OvraPixelFormatCode format() const { return format_; }
  uint32_t channels() const { return (format_ >> 4 & 15) + 1; }
  uint32_t depth_bits() const { return (format_ & 15) + 8; }
  uint32_t bytes_per_sample() const { return depth_bits() > 8 ? 2 : 1; }
  uint32_t max_sample() const { return (1U << depth_bits()) - 1; }
  OvraColorModel color_model() const { return static_cast<OvraColorModel>(format_ & 0xFF00); }
  bool bottom_up() const { return (format_ & OVRA_ROWS_BOTTOM_UP) != 0; }

  // Bytes of the pixels of a row, and from one row to the next.
  size_t row_bytes() const { return size_t{bytes_per_sample()} * channels() * Columns(); }
  size_t stride() const { return stride_; }

  uint8_t* data() { return bytes_.data(); }
  const uint8_t* data() const { return bytes_.data(); }
  size_t size_bytes() const { return bytes_.size(); }

  // Row y in memory order. The two-byte form is for depths above 8 bits.
  uint8_t* Row(int32_t y) { return data() + stride_ * static_cast<size_t>(y); }
  const uint8_t* Row(int32_t y) const { return data() + stride_ * static_cast<size_t>(y); }
  uint16_t* Row16(int32_t y) { return reinterpret_cast<uint16_t*>(Row(y)); }
  const uint16_t* Row16(int32_t y) const { return reinterpret_cast<const uint16_t*>(Row(y)); }

 private:
  size_t Columns() const { return static_cast<size_t>(width_); }

  int32_t width_;
  int32_t height_;
  OvraPixelFormatCode format_;
  size_t stride_;
  std::vector<uint8_t> bytes_;
};

// The format in which pictures come from files: grey, RGB or RGBA for 1, 3 or 4 channels of 8 to 16
// bits, top row first, rows without padding.
OvraPixelFormatCode FileFormat(uint32_t depth_bits, uint32_t channels);

}  // namespace ovra_host
