// SPDX-License-Identifier: MIT
// The project's own test scene: a landscape above a table of what image processing finds hard.
#pragma once

#include "image.h"

namespace ovra_scene {

// Sky and clouds, hills with grass, faces of many skin tones; below them gradients, gratings from
// coarse to one pixel, a checkerboard, rings, and lettering from large to tiny. Everything scales
// with the size except what is counted in pixels.
ovra_host::Image Scene(int32_t width, int32_t height);

}  // namespace ovra_scene
