// SPDX-License-Identifier: MIT
// A curve through control points.
#pragma once

#include <string>
#include <vector>

namespace ovra_host {

// Maps 0..1 to 0..1. Constant before the first point and after the last.
class ToneCurve {
 public:
  struct Point {
    double x;
    double y;
  };
  enum class Between {
    kCubic,   // smooth, and between two points never outside their values
    kLinear,  // straight
  };

  // At least two points of 0..1, x increasing; throws Error otherwise.
  explicit ToneCurve(std::vector<Point> points, Between between = Between::kCubic);

  double operator()(double x) const;

 private:
  std::vector<Point> points_;
  std::vector<double> slopes_;  // at the points; empty for straight lines
};

// The points of a text "X:Y,X:Y,...". Throws Error where it is not one.
std::vector<ToneCurve::Point> ParseCurvePoints(const std::string& text);

}  // namespace ovra_host
