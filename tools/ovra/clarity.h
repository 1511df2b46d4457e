// SPDX-License-Identifier: MIT
// Sliders of multi-frequency processing, and the parameters of the library that they mean.
#pragma once

#include "image.h"
#include "ovra/filter.h"

namespace ovra_host {

// Each 0..1: nothing to full strength.
struct ClaritySliders {
  double detail = 0;     // fine texture
  double clarity = 0;    // contrast of shapes
  double soft_skin = 0;  // less contrast between pores and features
  double denoise = 0;    // takes noise away
  double flatten = 0;    // gentler light, same detail
};

// For a picture of this size. `noise` is the standard deviation of its noise as a share of the range:
// what lies within it is not enlarged, and is what denoise takes away.
OvraMultiFrequencyParams ClarityParams(const ClaritySliders& sliders, int32_t width, int32_t height,
                                       double noise);

// The standard deviation of a picture's noise as a share of the range, told from the median of what a
// small mask finds that is blind to slopes (J. Immerkaer, Fast noise variance estimation, 1996): edges
// and texture are above the median as long as half of the picture is smooth.
double EstimateNoise(const Image& image);

}  // namespace ovra_host
