// SPDX-License-Identifier: MIT
// Weights and response curves for the unsharp masks.
#pragma once

#include <cstdint>
#include <vector>

#include "image.h"
#include "ovra/filter.h"

namespace ovra_host {

using Weights = std::vector<int32_t>;
using Curve = std::vector<OvraResponsePoint>;

// What the weights of a blur sum to.
constexpr int32_t kWeightSum = 128;

// The blur radius that suits a picture which is looked at as a whole: the larger it is, the more it
// is reduced on the way to the eye.
double RadiusForSize(int32_t width, int32_t height);

// A bell curve of this standard deviation in pixels, as far as its weights are not 0. They sum to
// kWeightSum, and there is an odd number of them, not more than the luminance mask takes.
Weights BellWeights(double radius);

// How strongly the mask acts by brightness and by difference, as the library proposes.
struct DefaultCurves {
  Curve levels;
  Curve differences;
};

DefaultCurves MakeDefaultCurves();

// The differences for a band of the double mask, which is scaled by amount times the curve: those on
// which the default curve does not act are to keep their size.
Curve DefaultBandDifferences(double amount);

struct ResponseTables {
  std::vector<int16_t> level;
  std::vector<int16_t> difference;
};

ResponseTables MakeResponseTables(OvraPixelFormatCode format, const Curve& levels,
                                  const Curve& differences);

// Throw Error where corrections of this strength could leave the range of the library's numbers.
void CheckMaskStrength(const ResponseTables& tables, double amount, uint32_t depth_bits);
void CheckBandStrength(const ResponseTables& tables, double amount);

// The picture with the 14 bits a sample that the mask takes at most, from 16.
Image WithFourteenBits(const Image& image);

// Adds to a picture of 16 bits what the mask has changed in its form of 14 bits, so that samples
// that have not changed keep all their bits.
void AddChange(const Image& before, const Image& after, Image* image);

}  // namespace ovra_host
