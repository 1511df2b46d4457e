// SPDX-License-Identifier: MIT
#include "scene.h"

#include <array>
#include <cmath>
#include <numbers>

#include "drawing.h"
#include "lettering.h"

namespace ovra_scene {
namespace {

constexpr int32_t kSamplesASide = 3;
constexpr double kPi = std::numbers::pi;

// The landscape takes the upper part; the charts stand in three columns below.
constexpr double kLandscapeShare = 0.62;

const Color kInk = FromHex(0x1B1B1F);
const Color kPaper = FromHex(0xF7F4EC);

// Coordinates of the landscape and of each chart run from 0 to 1; aspect is width / height.

Color Sky(double u, double v, double aspect) {
  const Color sky = Mix(FromHex(0x3D7CC9), FromHex(0xD9E8F2), v / 0.62);
  double clouds = 0;
  double weight = 0.5;
  for (double scale = 5; scale < 90; scale *= 2, weight /= 2) {
    clouds += weight * Noise(u * aspect * scale, v * scale * 2.2);
  }
  const Color with_clouds = Mix(sky, FromHex(0xFFFFFF), SmoothStep(0.48, 0.8, clouds) * 0.9);
  const double sun = std::hypot((u - 0.84) * aspect, v - 0.2);
  const Color glow = Mix(with_clouds, FromHex(0xFFF3C4), 0.8 * std::exp(-sun * 9));
  return Mix(glow, FromHex(0xFFFDF2), SmoothStep(0.066, 0.06, sun));
}

// Grass, darker in the hollows, of blades that are finer the farther away.
Color Meadow(double u, double v, double aspect) {
  const double depth = 1 / (v - 0.5);
  const double blades = Noise(u * aspect * 70 * depth, v * 130 * depth);
  const Color grass = Mix(FromHex(0x3F6B2A), FromHex(0x9DBB57), blades);
  return Mix(FromHex(0x86A56B), grass, SmoothStep(0.6, 0.8, v));
}

Color Landscape(double u, double v, double aspect) {
  const double mountains =
      0.5 + 0.10 * Noise(u * 7 + 3, 0.5) + 0.05 * Noise(u * 31, 7.5) + 0.012 * Noise(u * 160, 3.5);
  const double meadow = 0.64 + 0.02 * std::sin(7 * u + 1);
  if (v > meadow) return Meadow(u, v, aspect);
  if (v > mountains) {
    const double rock = Noise(u * aspect * 40, v * 55);
    return Mix(Mix(FromHex(0x6C7C93), FromHex(0x48586E), rock), FromHex(0xA9BFC9),
               SmoothStep(0.5, 0.66, v) * 0.7);
  }
  return Sky(u, v, aspect);
}

// Balls of skin tones, lit from the upper left, in a row at the lower edge of the landscape.
bool Faces(double u, double v, double aspect, Color* color) {
  static const std::array<Color, 6> kTones = {FromHex(0xF6DCCB), FromHex(0xE9BC9A),
                                              FromHex(0xCF9668), FromHex(0xA66E46),
                                              FromHex(0x744A2F), FromHex(0x46301F)};
  constexpr double kRadius = 0.085;
  constexpr double kFirst = 0.07;
  const double pitch = 0.5 / static_cast<double>(kTones.size());
  for (size_t i = 0; i < kTones.size(); ++i) {
    const double dx = (u - kFirst - pitch * static_cast<double>(i)) * aspect / kRadius;
    const double dy = (v - 0.85) / kRadius;
    const double squared = dx * dx + dy * dy;
    if (squared > 1) continue;
    const double dz = std::sqrt(1 - squared);
    const double light = Clamp01(-0.45 * dx - 0.55 * dy + 0.7 * dz);
    const Color shadow = Mix(kTones[i], FromHex(0x2A1512), 0.62);
    *color = Mix(Mix(shadow, kTones[i], 0.25 + 0.75 * light), FromHex(0xFFFFFF),
                 0.5 * std::pow(light, 40));
    return true;
  }
  return false;
}

// Ramps: grey, red, green, blue, and a hue band.
Color Gradients(double u, double v) {
  const int band = static_cast<int>(v * 5);
  switch (band) {
    case 0:
      return {u, u, u};
    case 1:
      return {u, 0.1, 0.1};
    case 2:
      return {0.1, u, 0.1};
    case 3:
      return {0.1, 0.1, u};
    default:
      return {0.5 + 0.5 * std::cos(2 * kPi * u), 0.5 + 0.5 * std::cos(2 * kPi * (u - 1.0 / 3)),
              0.5 + 0.5 * std::cos(2 * kPi * (u - 2.0 / 3))};
  }
}

// Counted in pixels from the corner of the chart: gratings of 8 to 1 pixels a bar along the top,
// checkers of 1 and 2 pixels, and rings.
Color Patterns(double x, double y, double width, double height) {
  const double u = x / width;
  const double v = y / height;
  const auto column = static_cast<int64_t>(x);
  const auto row = static_cast<int64_t>(y);
  if (v < 0.3) {
    const int64_t bar = int64_t{8} >> static_cast<int>(u * 4);
    return column / bar % 2 == 0 ? kInk : kPaper;
  }
  if (v < 0.42) return (column / 2 + row / 2) % 2 == 0 ? kInk : kPaper;
  if (v < 0.54) return (column + row) % 2 == 0 ? kInk : kPaper;
  // Rings as fine as one and a half pixels at the sides.
  const double dx = std::floor(x) + 0.5 - width / 2;
  const double dy = std::floor(y) + 0.5 - height * 0.77;
  const double ring = 0.5 + 0.5 * std::cos(2 * kPi / 3 / width * (dx * dx + dy * dy));
  return Mix(kInk, kPaper, ring);
}

// Lines of lettering, each smaller than the one above, over a fan of thin lines.
Color Lettering(double u, double v, double aspect) {
  constexpr double kStroke = 0.075;  // half its width, in heights of a letter
  constexpr double kFanTop = 0.64;
  if (v > kFanTop) {
    const double angle = std::atan2(v - 1, (u - 0.5) * aspect);
    return std::cos(angle * 72) > 0.6 ? kInk : kPaper;
  }
  double top = 0.06;
  for (double height = 0.15; height > 0.012; height *= 0.64) {
    const double inside = (v - top) / height;
    if (inside > -0.2 && inside < 1.2) {
      const double across = (u - 0.04) * aspect / height;
      return DistanceToText("OVRABASE", across, inside) < kStroke ? kInk : kPaper;
    }
    top += height * 1.5;
  }
  return kPaper;
}

}  // namespace

ovra_host::Image Scene(int32_t width, int32_t height) {
  const double landscape = std::floor(height * kLandscapeShare);
  const double chart_width = std::ceil(width / 3.0);
  const double chart_height = height - landscape;
  return Draw(width, height, kSamplesASide, [=](double x, double y) {
    if (y < landscape) {
      const double aspect = width / landscape;
      Color face;
      if (Faces(x / width, y / landscape, aspect, &face)) return face;
      return Landscape(x / width, y / landscape, aspect);
    }
    const double chart = std::floor(x / chart_width);
    const double across = x - chart * chart_width;
    const double down = y - landscape;
    if (chart == 0) return Gradients(across / chart_width, down / chart_height);
    if (chart == 1) return Patterns(across, down, chart_width, chart_height);
    return Lettering(across / chart_width, down / chart_height, chart_width / chart_height);
  });
}

}  // namespace ovra_scene
