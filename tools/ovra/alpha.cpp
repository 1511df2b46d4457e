// SPDX-License-Identifier: MIT
#include "alpha.h"

#include <algorithm>

namespace ovra_host {
namespace {

constexpr uint32_t kMax = 65535;
constexpr uint32_t kChannels = 4;
constexpr uint32_t kAlpha = 3;
constexpr uint32_t kWideStep = 257;  // from 8 to 16 bits

template <class Sample>
void Multiply(const Sample* in, uint32_t factor, uint16_t* out, int32_t pixels) {
  for (int32_t x = 0; x < pixels; ++x, in += kChannels, out += kChannels) {
    const uint32_t alpha = in[kAlpha] * factor;
    for (uint32_t c = 0; c < kAlpha; ++c) {
      out[c] = static_cast<uint16_t>((uint64_t{in[c]} * factor * alpha + kMax / 2) / kMax);
    }
    out[kAlpha] = static_cast<uint16_t>(alpha);
  }
}

template <class Sample>
void Divide(const uint16_t* in, uint32_t factor, Sample* out, int32_t pixels) {
  const auto narrow = [factor](uint64_t value) {
    return static_cast<Sample>((std::min<uint64_t>(value, kMax) + factor / 2) / factor);
  };
  for (int32_t x = 0; x < pixels; ++x, in += kChannels, out += kChannels) {
    const uint64_t alpha = in[kAlpha];
    for (uint32_t c = 0; c < kAlpha; ++c) {
      out[c] = alpha == 0 ? Sample{0} : narrow((in[c] * uint64_t{kMax} + alpha / 2) / alpha);
    }
    out[kAlpha] = narrow(alpha);
  }
}

}  // namespace

void MultiplyRow(const uint8_t* row, uint32_t depth_bits, uint16_t* multiplied, int32_t pixels) {
  if (depth_bits == 8) {
    Multiply(row, kWideStep, multiplied, pixels);
  } else {
    Multiply(reinterpret_cast<const uint16_t*>(row), 1, multiplied, pixels);
  }
}

void DivideRow(const uint16_t* multiplied, uint32_t depth_bits, uint8_t* row, int32_t pixels) {
  if (depth_bits == 8) {
    Divide(multiplied, kWideStep, row, pixels);
  } else {
    Divide(multiplied, 1, reinterpret_cast<uint16_t*>(row), pixels);
  }
}

bool IsOpaque(const Image& image) {
  if (image.channels() != kChannels) return true;
  for (int32_t y = 0; y < image.height(); ++y) {
    for (int32_t x = 0; x < image.width(); ++x) {
      const size_t i = static_cast<size_t>(x) * kChannels + kAlpha;
      const uint32_t alpha = image.depth_bits() == 8 ? image.Row(y)[i] : image.Row16(y)[i];
      if (alpha != image.max_sample()) return false;
    }
  }
  return true;
}

Image Multiplied(const Image& image) {
  Image result(image.width(), image.height(), FileFormat(16, kChannels));
  for (int32_t y = 0; y < image.height(); ++y) {
    MultiplyRow(image.Row(y), image.depth_bits(), result.Row16(y), image.width());
  }
  return result;
}

Image Divided(const Image& multiplied, uint32_t depth_bits) {
  Image result(multiplied.width(), multiplied.height(), FileFormat(depth_bits, kChannels));
  for (int32_t y = 0; y < multiplied.height(); ++y) {
    DivideRow(multiplied.Row16(y), depth_bits, result.Row(y), multiplied.width());
  }
  return result;
}

}  // namespace ovra_host
