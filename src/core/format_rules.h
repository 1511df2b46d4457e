// SPDX-License-Identifier: MIT
// What an operation accepts of an image's format, as data, and the one check that reads it.
#pragma once

#include <cstdint>

#include "core/pixel_format.h"
#include "core/status.h"

namespace ovra {

// A set of numbers from 0 to 63.
class NumberSet {
 public:
  template <class... Number>
  static constexpr NumberSet Of(Number... numbers) {
    return NumberSet(((uint64_t{1} << numbers) | ...));
  }
  static constexpr NumberSet Between(uint32_t first, uint32_t last) {
    uint64_t bits = 0;
    for (uint32_t n = first; n <= last; ++n) bits |= uint64_t{1} << n;
    return NumberSet(bits);
  }
  constexpr bool Contains(uint32_t number) const { return (bits_ >> number & 1) != 0; }

 private:
  explicit constexpr NumberSet(uint64_t bits) : bits_(bits) {}
  uint64_t bits_;
};

// The fields in the order in which they are checked, each with the status of its refusal. Every
// operation wants interleaved samples.
struct FormatRules {
  NumberSet channels;
  Status channels_refused;
  NumberSet depths_bits;
  Status depth_refused;
  bool (*accepts_model)(const PixelFormat& format);
  Status model_refused;
  Status arrangement_refused;
};

// Whether a decoded format is accepted.
Status CheckFormat(const PixelFormat& format, const FormatRules& rules);

// Decodes a format word, whose own statuses come first, and checks what it says.
Status DecodeAndCheckFormat(PixelFormatCode code, const FormatRules& rules, PixelFormat* format);

// For FormatRules::accepts_model.
bool ModelFitsChannels(const PixelFormat& format);
bool IsRgbBgrOrYcc(const PixelFormat& format);

}  // namespace ovra
