// SPDX-License-Identifier: MIT
// Resizing by the best of the library's ways for sizes, channels and turn.
#pragma once

#include "command.h"

namespace ovra_host {

struct ResizePlan {
  Rectangle region;       // of the picture as it is stored
  Size size;              // of the result, after the turn
  int32_t mode = 0;       // of OvraRotateImage, after the resize
  bool fast = false;      // the engine of few taps down to a third
  bool straight = false;  // colors are averaged without regard to alpha

  // Of the result before the turn.
  Size UprightSize() const;

  // How much is left of the larger side.
  double Ratio() const;
};

Image Resized(const Image& source, const ResizePlan& plan, const CommonOptions& common);

}  // namespace ovra_host
