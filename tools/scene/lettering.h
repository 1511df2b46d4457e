// SPDX-License-Identifier: MIT
// Letters as strokes, for edges like those of text.
#pragma once

#include <string_view>

namespace ovra_scene {

// How far a point is from the nearest stroke of a line of capital letters, in heights of a letter.
// The line begins at (0, 0), top left; letters are 0.6 wide and 0.85 apart. Of the alphabet it
// knows A, B, E, O, R, S and V.
double DistanceToText(std::string_view text, double x, double y);

}  // namespace ovra_scene
