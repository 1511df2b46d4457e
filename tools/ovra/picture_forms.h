// SPDX-License-Identifier: MIT
// Forms of a picture that an operation of the library needs, and the way back from them.
#pragma once

#include <functional>

#include "image.h"

namespace ovra_host {

using ImageOperation = std::function<Image(const Image&)>;

// Runs an operation on three channels over a picture of any: alpha is put aside and put back, grey
// stands in all three. kGrey takes the first channel of what came of grey; kColor all three, for
// operations that may give color to greys. The operation keeps size and depth.
enum class GreyBecomes { kGrey, kColor };
Image OnThreeChannels(const Image& source, GreyBecomes grey, const ImageOperation& operation);

// Copies one channel to another, in pictures of one depth and size.
void CopyChannel(const Image& from, uint32_t from_channel, Image* to, uint32_t to_channel);

// Runs an operation on 8 bits a sample over a picture of 8 or 16. Of 16-bit samples the change is
// added to the sample, so that what the operation leaves alone keeps all its bits.
Image OnEightBits(const Image& source, const ImageOperation& operation);

// Samples of another depth: upper bits are repeated below, or rounded away.
Image WithDepth(const Image& source, uint32_t depth_bits);
void ConvertDepth(const uint8_t* from, uint32_t from_bits, uint8_t* to, uint32_t to_bits,
                  size_t samples);

}  // namespace ovra_host
