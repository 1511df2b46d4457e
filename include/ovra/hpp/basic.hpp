// SPDX-License-Identifier: MIT
// Composition, bitmap rows, turns and canvases in C++. What each operation does and answers stands in
// ovra/basic.h and ovra/geometry.h.
#ifndef OVRA_HPP_BASIC_HPP
#define OVRA_HPP_BASIC_HPP

#include <vector>

#include "ovra/basic.h"
#include "ovra/geometry.h"
#include "ovra/hpp/image.hpp"

namespace ovra {

inline Status CompositeImage(MutableView destination, View source, int32_t x, int32_t y,
                             OvraBlendMode mode = OVRA_BLEND_WEIGHT_OF_SOURCE) {
  return OvraCompositeImage(destination.data(), destination.width(), destination.height(),
                            destination.format().code(), source.data(), source.width(),
                            source.height(), source.format().code(), x, y,
                            static_cast<uint8_t>(mode));
}

inline Status CompositeImageWithMaskBlending(MutableView destination, View source, View mask,
                                             int32_t x, int32_t y,
                                             OvraBlendMode mode = OVRA_BLEND_WEIGHT_OF_SOURCE) {
  if (!detail::Alike(source, mask) || source.format() != destination.format()) {
    return Status::kMismatch;
  }
  return OvraCompositeImageWithMaskBlending(
      destination.data(), destination.width(), destination.height(), source.data(), mask.data(),
      source.width(), source.height(), source.format().code(), x, y, static_cast<uint8_t>(mode));
}

// The format of a device-independent bitmap's rows.
inline constexpr Format kDibFormat(8, 3, OVRA_MODEL_BGR, 4, OVRA_ROWS_BOTTOM_UP);

// dib: kDibFormat; raw: Format::Rgb().
inline Status Dib2Raw(View dib, MutableView raw) {
  if (dib.format() != kDibFormat || raw.format() != Format::Rgb() || dib.size() != raw.size()) {
    return Status::kMismatch;
  }
  OvraDib2Raw(dib.data(), raw.data(), detail::Unsigned(dib.width()),
              detail::Unsigned(dib.height()));
  return Status();
}

inline Status Raw2Dib(View raw, MutableView dib) {
  if (dib.format() != kDibFormat || raw.format() != Format::Rgb() || dib.size() != raw.size()) {
    return Status::kMismatch;
  }
  OvraRaw2Dib(raw.data(), dib.data(), detail::Unsigned(dib.width()),
              detail::Unsigned(dib.height()));
  return Status();
}

// The size of a picture after a turn.
inline constexpr Size Turned(Size size, OvraRotation rotation) {
  return rotation % 2 != 0 ? Size{size.height, size.width} : size;
}

inline Status RotateImage(View source, MutableView destination, OvraRotation rotation) {
  if (destination.size() != Turned(source.size(), rotation) ||
      destination.format() != source.format()) {
    return Status::kMismatch;
  }
  return OvraRotateImage(source.data(), destination.data(), source.width(), source.height(),
                         source.format().code(), rotation);
}

namespace detail {

constexpr size_t Channels(Format format) {
  constexpr uint32_t kChannelField = 0xF0;
  constexpr uint32_t kChannelShift = 4;
  return ((format.code() & kChannelField) >> kChannelShift) + 1;
}

}  // namespace detail

// fill: one value for each channel. See ovra/geometry.h for the two bytes that may be cleared behind
// the destination; an Image has room for them.
inline Status ExtrapolateImage(View source, MutableView destination, int32_t offset_x,
                               int32_t offset_y, const std::vector<uint16_t>& fill) {
  if (destination.format() != source.format() || fill.size() < detail::Channels(source.format())) {
    return Status::kMismatch;
  }
  return OvraExtrapolateImage(source.data(), detail::Unsigned(source.width()),
                              detail::Unsigned(source.height()), destination.data(),
                              detail::Unsigned(destination.width()),
                              detail::Unsigned(destination.height()), source.format().code(),
                              offset_x, offset_y, fill.data());
}

// angle: tenths of a degree, counter-clockwise. fill: one value for each channel; none repeats the
// picture's edges.
inline Status FreeTrimming(View source, MutableView destination, int32_t x, int32_t y,
                           int32_t angle, const std::vector<uint16_t>& fill = {}) {
  if (destination.format() != source.format() ||
      (!fill.empty() && fill.size() < detail::Channels(source.format()))) {
    return Status::kMismatch;
  }
  return OvraFreeTrimming(source.data(), source.width(), source.height(), destination.data(),
                          destination.width(), destination.height(), source.format().code(), x, y,
                          angle, fill.empty() ? nullptr : fill.data());
}

}  // namespace ovra

#endif  // OVRA_HPP_BASIC_HPP
