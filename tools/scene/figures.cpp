// SPDX-License-Identifier: MIT
#include "figures.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "drawing.h"

namespace ovra_scene {
namespace {

constexpr int32_t kSteps = 16;
constexpr int32_t kCentreOnly = 1;
constexpr int32_t kSmoothEdges = 3;

Color Grey(double value) {
  return {value, value, value};
}

// A fully saturated color; hue in turns.
Color Hue(double hue) {
  const auto part = [hue](double phase) {
    const double position = hue + phase - std::floor(hue + phase);
    return Clamp01(std::abs(6 * position - 3) - 1);
  };
  return {part(0), part(2.0 / 3), part(1.0 / 3)};
}

double CircleRadius(int32_t width, int32_t height) {
  return 0.47 * std::min(width, height);
}

}  // namespace

ovra_host::Image ZonePlate(int32_t width, int32_t height) {
  // The phase k r^2 / 2 has the frequency k r / (2 pi), which is 1/2 at the nearest side.
  const double k = 2 * std::numbers::pi / std::min(width, height);
  return Draw(width, height, kCentreOnly, [=](double x, double y) {
    const double dx = x - width / 2.0;
    const double dy = y - height / 2.0;
    return Grey(0.5 + 0.5 * std::cos(k * (dx * dx + dy * dy) / 2));
  });
}

ovra_host::Image GreyRamp(int32_t width, int32_t height) {
  return Draw(width, height, kCentreOnly, [=](double x, double y) {
    const double value = (x - 0.5) / std::max(1, width - 1);
    const double step = std::floor(x * kSteps / width) / (kSteps - 1);
    return Grey(y < height / 2.0 ? value : step);
  });
}

ovra_host::Image StepEdge(int32_t width, int32_t height) {
  constexpr double kDark = 0.2;
  constexpr double kLight = 0.8;
  return Draw(width, height, kCentreOnly,
              [=](double x, double) { return Grey(x < width / 2.0 ? kDark : kLight); });
}

ovra_host::Image HueCircle(int32_t width, int32_t height) {
  const double radius = CircleRadius(width, height);
  return Draw(width, height, kSmoothEdges, [=](double x, double y) {
    const double dx = x - width / 2.0;
    const double dy = height / 2.0 - y;
    const double saturation = std::hypot(dx, dy) / radius;
    if (saturation > 1) return Grey(0.5);
    const double hue = std::atan2(dy, dx) / (2 * std::numbers::pi);
    return Mix(Grey(1), Hue(hue), saturation);
  });
}

ovra_host::Image HueSpot(int32_t width, int32_t height) {
  const ovra_host::Image colors = HueCircle(width, height);
  const double radius = CircleRadius(width, height);
  ovra_host::Image spot(width, height, ovra_host::FileFormat(8, 4));
  for (int32_t y = 0; y < height; ++y) {
    const uint8_t* color = colors.Row(y);
    uint8_t* pixel = spot.Row(y);
    for (int32_t x = 0; x < width; ++x, color += 3, pixel += 4) {
      std::copy_n(color, 3, pixel);
      const double distance = std::hypot(x + 0.5 - width / 2.0, y + 0.5 - height / 2.0);
      pixel[3] = static_cast<uint8_t>(std::lround(255 * SmoothStep(1, 0.5, distance / radius)));
    }
  }
  return spot;
}

}  // namespace ovra_scene
