// SPDX-License-Identifier: MIT
// Pictures of 8 and 16 bits a sample in operations that work with 12.
#pragma once

#include "picture_forms.h"

namespace ovra_host {

// Runs an operation on 12 bits over a picture of 8. The result comes back with an ordered dither: what
// was brightened or spread over more tones would show contours in skies when it were rounded alone.
// Samples that the operation leaves alone come back as they were.
Image WidenedToTwelveBits(const Image& source, const ImageOperation& operation);

// Runs an operation that multiplies each pixel by a gain on the upper 12 bits of a picture of 16
// with three channels. The four bits below go through the gain that the pixel got.
Image GainedAtTwelveBits(const Image& source, const ImageOperation& operation);

}  // namespace ovra_host
