// SPDX-License-Identifier: MIT
#include "drawing.h"

#include <cmath>

namespace ovra_scene {
namespace {

// A fixed random number of 0..1 for each point of a grid.
double GridNoise(int64_t x, int64_t y) {
  auto bits = static_cast<uint32_t>(x) * 0x8DA6B343U ^ static_cast<uint32_t>(y) * 0xD8163841U;
  bits = (bits ^ bits >> 13) * 0x85EBCA6BU;
  bits = (bits ^ bits >> 16) * 0xC2B2AE35U;
  return (bits >> 8) / double{1 << 24};
}

uint8_t ToByte(double value) {
  return static_cast<uint8_t>(std::lround(255 * Clamp01(value)));
}

}  // namespace

Color FromHex(uint32_t rgb) {
  return {(rgb >> 16 & 255) / 255.0, (rgb >> 8 & 255) / 255.0, (rgb & 255) / 255.0};
}

Color Mix(const Color& a, const Color& b, double t) {
  const double part = Clamp01(t);
  return {a.r + part * (b.r - a.r), a.g + part * (b.g - a.g), a.b + part * (b.b - a.b)};
}

double Clamp01(double value) {
  return value < 0 ? 0 : value > 1 ? 1 : value;
}

double SmoothStep(double low, double high, double value) {
  const double t = Clamp01((value - low) / (high - low));
  return t * t * (3 - 2 * t);
}

double Noise(double x, double y) {
  const double column = std::floor(x);
  const double row = std::floor(y);
  const auto i = static_cast<int64_t>(column);
  const auto j = static_cast<int64_t>(row);
  const double u = SmoothStep(0, 1, x - column);
  const double v = SmoothStep(0, 1, y - row);
  const double top = std::lerp(GridNoise(i, j), GridNoise(i + 1, j), u);
  const double bottom = std::lerp(GridNoise(i, j + 1), GridNoise(i + 1, j + 1), u);
  return std::lerp(top, bottom, v);
}

ovra_host::Image Draw(int32_t width, int32_t height, int32_t samples_a_side, const Shade& shade) {
  ovra_host::Image image(width, height, ovra_host::FileFormat(8, 3));
  const double samples = samples_a_side * samples_a_side;
  for (int32_t y = 0; y < height; ++y) {
    uint8_t* pixel = image.Row(y);
    for (int32_t x = 0; x < width; ++x) {
      Color sum;
      for (int32_t j = 0; j < samples_a_side; ++j) {
        for (int32_t i = 0; i < samples_a_side; ++i) {
          const Color color = shade(x + (i + 0.5) / samples_a_side, y + (j + 0.5) / samples_a_side);
          sum = {sum.r + color.r, sum.g + color.g, sum.b + color.b};
        }
      }
      *pixel++ = ToByte(sum.r / samples);
      *pixel++ = ToByte(sum.g / samples);
      *pixel++ = ToByte(sum.b / samples);
    }
  }
  return image;
}

}  // namespace ovra_scene
