// SPDX-License-Identifier: MIT
#include "tone_curve.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "error.h"

namespace ovra_host {
namespace {

bool IsFraction(double value) {
  return value >= 0 && value <= 1;
}

// Slopes that keep each piece between its two points: a weighted harmonic mean of the slopes of the
// neighbouring pieces, and 0 where they turn (F. N. Fritsch and J. Butland, 1984).
std::vector<double> MonotoneSlopes(const std::vector<ToneCurve::Point>& points) {
  const size_t pieces = points.size() - 1;
  const auto width = [&](size_t i) { return points[i + 1].x - points[i].x; };
  const auto secant = [&](size_t i) { return (points[i + 1].y - points[i].y) / width(i); };
  std::vector<double> slopes(points.size());
  slopes.front() = secant(0);
  slopes.back() = secant(pieces - 1);
  for (size_t i = 1; i < pieces; ++i) {
    const double before = secant(i - 1);
    const double after = secant(i);
    if (before * after <= 0) continue;
    const double weight_before = 2 * width(i) + width(i - 1);
    const double weight_after = width(i) + 2 * width(i - 1);
    slopes[i] = (weight_before + weight_after) / (weight_before / before + weight_after / after);
  }
  return slopes;
}

}  // namespace

ToneCurve::ToneCurve(std::vector<Point> points, Between between) : points_(std::move(points)) {
  if (points_.size() < 2) throw Error("a curve needs two points or more");
  for (size_t i = 0; i < points_.size(); ++i) {
    if (!IsFraction(points_[i].x) || !IsFraction(points_[i].y)) {
      throw Error("points of a curve are within 0..1");
    }
    if (i > 0 && points_[i].x <= points_[i - 1].x) {
      throw Error("points of a curve go from left to right");
    }
  }
  if (between == Between::kCubic) slopes_ = MonotoneSlopes(points_);
}

double ToneCurve::operator()(double x) const {
  if (x <= points_.front().x) return points_.front().y;
  if (x >= points_.back().x) return points_.back().y;
  const auto after = std::upper_bound(points_.begin(), points_.end(), x,
                                      [](double value, const Point& p) { return value < p.x; });
  const auto i = static_cast<size_t>(after - points_.begin()) - 1;
  const Point& a = points_[i];
  const Point& b = points_[i + 1];
  const double width = b.x - a.x;
  const double t = (x - a.x) / width;
  if (slopes_.empty()) return a.y + t * (b.y - a.y);
  // Cubic Hermite form.
  const double u = 1 - t;
  const double from_values = u * u * (1 + 2 * t) * a.y + t * t * (1 + 2 * u) * b.y;
  return from_values + width * t * u * (u * slopes_[i] - t * slopes_[i + 1]);
}

std::vector<ToneCurve::Point> ParseCurvePoints(const std::string& text) {
  std::vector<ToneCurve::Point> points;
  const char* position = text.data();
  const char* const end = position + text.size();
  const auto number = [&](char separator, double* value) {
    const auto [next, error] = std::from_chars(position, end, *value);
    if (error != std::errc()) return false;
    position = next;
    if (position == end) return true;
    return *position++ == separator && position != end;
  };
  do {
    ToneCurve::Point point;
    const bool has_x = number(':', &point.x) && position != end;
    if (!has_x || !number(',', &point.y)) {
      throw Error("\"" + text + "\" is not X:Y,X:Y,...");
    }
    points.push_back(point);
  } while (position != end);
  return points;
}

}  // namespace ovra_host
