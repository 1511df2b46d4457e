// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "ovra/pixel_format.h"

namespace ovra {

// How the samples of a pixel of a colour model make its luminance, and which of them a correction
// changes: the first `corrected` of `channels`.
struct LuminanceLayout {
  uint32_t color_model;
  int channels;
  int corrected;
  int weights[3];  // of 64
};

inline constexpr int kLuminanceLayoutCount = 6;
inline constexpr LuminanceLayout kLuminanceLayouts[kLuminanceLayoutCount] = {
    {OVRA_MODEL_GREY, 1, 1, {64, 0, 0}},  {OVRA_MODEL_RGB, 3, 3, {19, 38, 7}},
    {OVRA_MODEL_BGR, 3, 3, {7, 38, 19}},  {OVRA_MODEL_YCC, 3, 1, {64, 0, 0}},
    {OVRA_MODEL_RGBA, 4, 3, {19, 38, 7}}, {OVRA_MODEL_BGRA, 4, 3, {7, 38, 19}},
};

// Where the layout of one of these colour models stands among them.
static constexpr int LuminanceLayoutAt(uint32_t color_model) {
  int at = 0;
  while (kLuminanceLayouts[at].color_model != color_model) ++at;
  return at;
}

}  // namespace ovra
