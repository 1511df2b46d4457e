// SPDX-License-Identifier: MIT
// Pictures of one thing each, for looking at a single property.
#pragma once

#include "image.h"

namespace ovra_scene {

// Rings whose frequency grows with the distance from the middle, up to one half cycle a pixel at
// the middle of the sides. Sampled at the pixel centres, as it is meant to be.
ovra_host::Image ZonePlate(int32_t width, int32_t height);

// Black to white from left to right; the lower half in sixteen steps.
ovra_host::Image GreyRamp(int32_t width, int32_t height);

// A dark grey and, right of the middle, a light one.
ovra_host::Image StepEdge(int32_t width, int32_t height);

// Hue by angle and saturation by distance, on grey.
ovra_host::Image HueCircle(int32_t width, int32_t height);

// The hue circle with alpha: opaque in the middle, fading out to its rim.
ovra_host::Image HueSpot(int32_t width, int32_t height);

}  // namespace ovra_scene
