// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>

#include "compare.h"

namespace compare {
namespace {

constexpr size_t kCacheLine = 64;

}  // namespace

Picture::Picture(int width, int height, int channels, int depth_bits, size_t row_alignment)
    : width_(width), height_(height), channels_(channels), depth_bits_(depth_bits) {
  stride_ = (row_bytes() + row_alignment - 1) / row_alignment * row_alignment;
  block_.resize(bytes() + 2 * kCacheLine);
  const auto address = reinterpret_cast<uintptr_t>(block_.data());
  data_ = block_.data() + (kCacheLine - address % kCacheLine) % kCacheLine;
}

OvraPixelFormatCode Picture::format() const {
  const OvraColorModel model = channels_ == 1   ? OVRA_MODEL_GREY
                               : channels_ == 3 ? OVRA_MODEL_RGB
                                                : OVRA_MODEL_RGBA;
  return OvraMakePixelFormat(static_cast<uint32_t>(depth_bits_), static_cast<uint32_t>(channels_),
                             model, 1, OVRA_ROWS_TOP_DOWN);
}

Picture Scene(int width, int height, int channels, int depth_bits) {
  Picture picture(width, height, channels, depth_bits);
  const double max = std::pow(2.0, depth_bits) - 1;
  uint32_t noise = 1;
  size_t i = 0;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const double u = static_cast<double>(x) / width;
      const double v = static_cast<double>(y) / height;
      const double hill = 0.5 + 0.3 * std::sin(5 * u + 3 * v) * std::cos(4 * v - 2 * u);
      const double edge = std::fmod(7 * u + 4 * v, 1.0) < 0.5 ? 0.1 : -0.1;
      const double texture = 0.05 * std::sin(0.35 * x) * std::sin(0.29 * y);
      for (int c = 0; c < channels; ++c, ++i) {
        noise = noise * 1664525u + 1013904223u;
        const double grain = (static_cast<double>(noise >> 16) / 65536 - 0.5) * 0.02;
        const double tone = hill + (c == 1 ? edge : -0.5 * edge) + texture + grain + 0.05 * c;
        const auto sample = static_cast<uint32_t>(std::clamp(tone, 0.0, 1.0) * max + 0.5);
        if (picture.sample_bytes() == 1) {
          picture.data()[i] = static_cast<uint8_t>(sample);
        } else {
          picture.words()[i] = static_cast<uint16_t>(sample);
        }
      }
    }
  }
  return picture;
}

int WidthOf(double megapixels) {
  constexpr int kUnit = 48;  // so that all sizes that are made of it are whole
  return static_cast<int>(std::sqrt(1.5e6 * megapixels) / kUnit + 0.5) * kUnit;
}

std::string CaseName(const std::string& operation, int channels, int depth_bits,
                     double megapixels) {
  const char* const model = channels == 1 ? "grey" : channels == 3 ? "RGB" : "RGBA";
  return operation + "/" + std::to_string(depth_bits) + "-bit " + model + "/" +
         std::to_string(static_cast<int>(megapixels + 0.5)) + " MP";
}

}  // namespace compare
