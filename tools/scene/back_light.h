// SPDX-License-Identifier: MIT
// A scene of wide range, for what lifts shadows and holds highlights.
#pragma once

#include "image.h"

namespace ovra_scene {

// A terrace in the shade of a tree, with fruit and faces, before a bright sky over the sea: fine
// branches against the light, saturated colors in the dark, and grain as sensors have it.
ovra_host::Image BackLight(int32_t width, int32_t height);

}  // namespace ovra_scene
