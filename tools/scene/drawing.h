// SPDX-License-Identifier: MIT
// A picture as a function: a color for every point, sampled finely enough that edges are smooth.
#pragma once

#include <functional>

#include "image.h"

namespace ovra_scene {

// Linear parts of 0..1.
struct Color {
  double r = 0;
  double g = 0;
  double b = 0;
};

// As written in style sheets, 0xRRGGBB.
Color FromHex(uint32_t rgb);

// t of b and the rest of a; t is held in 0..1.
Color Mix(const Color& a, const Color& b, double t);

double Clamp01(double value);

// 0 below `low`, 1 above `high`, and a smooth step between.
double SmoothStep(double low, double high, double value);

// Repeatable soft noise of 0..1; features are about one unit large.
double Noise(double x, double y);

// 8-bit RGB. The shade is asked at several points a pixel, in pixels from the top left corner.
using Shade = std::function<Color(double x, double y)>;
ovra_host::Image Draw(int32_t width, int32_t height, int32_t samples_a_side, const Shade& shade);

}  // namespace ovra_scene
