// SPDX-License-Identifier: MIT
#include "back_light.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "drawing.h"

namespace ovra_scene {
namespace {

constexpr int32_t kSamplesASide = 3;

struct Branch {
  double x0, y0, x1, y1;
  double thickness;
};

// A tree that grows from (x, y), each branch into two thinner ones.
void Grow(std::vector<Branch>* tree, double x, double y, double angle, double length,
          double thickness, int levels) {
  const double x1 = x + length * std::cos(angle);
  const double y1 = y - length * std::sin(angle);
  tree->push_back({x, y, x1, y1, thickness});
  if (levels == 0) return;
  const double bend = 0.35 + 0.25 * Noise(x1 * 31, y1 * 17);
  Grow(tree, x1, y1, angle + bend, length * 0.76, thickness * 0.66, levels - 1);
  Grow(tree, x1, y1, angle - bend * 0.9, length * 0.8, thickness * 0.66, levels - 1);
}

std::vector<Branch> MakeTree() {
  std::vector<Branch> tree;
  Grow(&tree, 0.16, 1.0, 1.45, 0.3, 0.022, 6);
  return tree;
}

// Whether a point lies on a branch, with the coordinates of a picture of height 1.
bool OnTree(const std::vector<Branch>& tree, double x, double y) {
  for (const Branch& branch : tree) {
    const double reach = branch.thickness;
    if (x < std::min(branch.x0, branch.x1) - reach || x > std::max(branch.x0, branch.x1) + reach ||
        y < std::min(branch.y0, branch.y1) - reach || y > std::max(branch.y0, branch.y1) + reach) {
      continue;
    }
    const double dx = branch.x1 - branch.x0;
    const double dy = branch.y1 - branch.y0;
    const double along =
        Clamp01(((x - branch.x0) * dx + (y - branch.y0) * dy) / (dx * dx + dy * dy));
    const double away = std::hypot(x - branch.x0 - along * dx, y - branch.y0 - along * dy);
    if (away < branch.thickness * (1 - 0.3 * along)) return true;
  }
  return false;
}

// The sky is brightest at the sun, near the horizon; the sea mirrors it.
Color Distance(double x, double y) {
  const double sun = std::hypot(x - 1.05, (y - 0.4) * 1.3);
  if (y > 0.52) {
    const double waves = Noise(x * 30 / (y - 0.47), y * 400) * 0.35;
    const double glitter = std::exp(-std::abs(x - 1.05) * 5) * (0.5 + waves);
    return Mix(FromHex(0x5F8FB0), FromHex(0xFFF6DC), glitter);
  }
  double clouds = 0;
  for (double scale = 4, weight = 0.5; scale < 70; scale *= 2, weight /= 2) {
    clouds += weight * Noise(x * scale, y * scale * 2.5);
  }
  const Color sky = Mix(FromHex(0x7FB4E8), FromHex(0xFDF3DC), SmoothStep(0, 0.52, y));
  const Color clouded = Mix(sky, FromHex(0xFFFFFF), SmoothStep(0.5, 0.75, clouds) * 0.7);
  return Mix(clouded, FromHex(0xFFFEF6), std::exp(-sun * 5));
}

struct Ball {
  double x, y, radius;
  uint32_t color;
};

constexpr std::array<Ball, 8> kBalls = {{{0.42, 0.86, 0.06, 0xC81E1E},
                                         {0.55, 0.88, 0.055, 0xE08A18},
                                         {0.67, 0.87, 0.05, 0x3F8F2F},
                                         {0.78, 0.88, 0.045, 0x2B4FB8},
                                         {0.90, 0.80, 0.075, 0xE9BC9A},
                                         {1.07, 0.80, 0.075, 0xA66E46},
                                         {1.24, 0.80, 0.075, 0x744A2F},
                                         {0.30, 0.89, 0.045, 0x9B1F6F}}};

// In the shade everything has a twelfth of the light.
constexpr double kShade = 0.085;

Color Shaded(const Color& color, double light) {
  const auto encode = [light](double part) {  // light is linear, samples are not
    return std::pow(std::pow(part, 2.2) * kShade * light, 1 / 2.2);
  };
  return {encode(color.r), encode(color.g), encode(color.b)};
}

bool Foreground(double x, double y, Color* color) {
  for (const Ball& ball : kBalls) {
    const double dx = (x - ball.x) / ball.radius;
    const double dy = (y - ball.y) / ball.radius;
    if (dx * dx + dy * dy > 1) continue;
    const double dz = std::sqrt(1 - dx * dx - dy * dy);
    *color = Shaded(FromHex(ball.color), 0.5 + 0.7 * Clamp01(dz * 0.6 - 0.4 * dy));
    return true;
  }
  if (y < 0.84 + 0.004 * Noise(x * 20, 1)) return false;
  const double planks = std::abs(std::fmod(x * 9 + 0.2 * y, 1.0) - 0.5) < 0.02 ? 0.35 : 1;
  const Color wood = Mix(FromHex(0x8A6A4A), FromHex(0xB8946A), Noise(x * 160, y * 12));
  *color = Shaded(wood, planks);
  return true;
}

// Grain of a sensor: the same amount of light everywhere, so that it shows in the dark.
Color WithGrain(const Color& color, double x, double y) {
  const double grain = (Noise(x * 1.7, y * 1.7) + Noise(x * 1.3 + 500, y * 1.3) - 1) * 0.016;
  return {Clamp01(color.r + grain), Clamp01(color.g + grain), Clamp01(color.b + grain)};
}

}  // namespace

ovra_host::Image BackLight(int32_t width, int32_t height) {
  const std::vector<Branch> tree = MakeTree();
  return Draw(width, height, kSamplesASide, [&tree, height](double px, double py) {
    const double x = px / height;
    const double y = py / height;
    Color color;
    if (!Foreground(x, y, &color)) {
      color = OnTree(tree, x, y)
                  ? Shaded(Mix(FromHex(0x5A4636), FromHex(0x8A7460), Noise(x * 90, y * 40)), 1)
                  : Distance(x, y);
    }
    return WithGrain(color, px, py);
  });
}

}  // namespace ovra_scene
