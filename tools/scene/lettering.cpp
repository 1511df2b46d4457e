// SPDX-License-Identifier: MIT
#include "lettering.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace ovra_scene {
namespace {

constexpr double kPitch = 0.85;

struct Point {
  double x;
  double y;
};

// A letter is one line without lifting the pen; corners that are cut stand for bows.
using Stroke = std::vector<Point>;

const Stroke& StrokeOf(char letter) {
  static const Stroke kA = {{0, 1}, {0.3, 0}, {0.6, 1}, {0.49, 0.64}, {0.11, 0.64}};
  static const Stroke kB = {{0, 0.48},    {0.42, 0.48}, {0.6, 0.62}, {0.6, 0.86},
                            {0.42, 1},    {0, 1},       {0, 0},      {0.4, 0},
                            {0.55, 0.12}, {0.55, 0.36}, {0.42, 0.48}};
  static const Stroke kE = {{0.58, 1}, {0, 1}, {0, 0.48}, {0.48, 0.48},
                            {0, 0.48}, {0, 0}, {0.58, 0}};
  static const Stroke kO = {{0.18, 0}, {0.42, 0}, {0.6, 0.2}, {0.6, 0.8}, {0.42, 1},
                            {0.18, 1}, {0, 0.8},  {0, 0.2},   {0.18, 0}};
  static const Stroke kR = {{0, 1},       {0, 0},    {0.42, 0},    {0.6, 0.14}, {0.6, 0.4},
                            {0.42, 0.54}, {0, 0.54}, {0.32, 0.54}, {0.6, 1}};
  static const Stroke kS = {{0.58, 0.14}, {0.42, 0},    {0.16, 0},    {0, 0.14},
                            {0, 0.34},    {0.16, 0.47}, {0.44, 0.53}, {0.6, 0.66},
                            {0.6, 0.86},  {0.44, 1},    {0.16, 1},    {0, 0.86}};
  static const Stroke kV = {{0, 0}, {0.3, 1}, {0.6, 0}};
  static const Stroke kNone = {{-1000, -1000}, {-1000, -1000}};
  switch (letter) {
    case 'A':
      return kA;
    case 'B':
      return kB;
    case 'E':
      return kE;
    case 'O':
      return kO;
    case 'R':
      return kR;
    case 'S':
      return kS;
    case 'V':
      return kV;
    default:
      return kNone;
  }
}

double DistanceToSegment(const Point& a, const Point& b, double x, double y) {
  const double dx = b.x - a.x;
  const double dy = b.y - a.y;
  const double length_squared = dx * dx + dy * dy;
  const double along = length_squared == 0 ? 0 : ((x - a.x) * dx + (y - a.y) * dy) / length_squared;
  const double t = std::clamp(along, 0.0, 1.0);
  return std::hypot(x - a.x - t * dx, y - a.y - t * dy);
}

}  // namespace

double DistanceToText(std::string_view text, double x, double y) {
  // Only the letter at this place and its neighbours can be near.
  const auto place = static_cast<int>(std::floor(x / kPitch));
  double nearest = kPitch;
  for (int i = std::max(0, place - 1); i <= place + 1 && i < static_cast<int>(text.size()); ++i) {
    const Stroke& stroke = StrokeOf(text[static_cast<size_t>(i)]);
    for (size_t k = 0; k + 1 < stroke.size(); ++k) {
      nearest = std::min(nearest, DistanceToSegment(stroke[k], stroke[k + 1], x - i * kPitch, y));
    }
  }
  return nearest;
}

}  // namespace ovra_scene
