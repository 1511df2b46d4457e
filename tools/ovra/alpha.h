// SPDX-License-Identifier: MIT
// Colours multiplied by alpha, the form in which pixels may be averaged: what
// is transparent has no color to give.
#pragma once

#include "image.h"

namespace ovra_host {

// Rows of RGBA. The multiplied form has 16 bits a sample whatever the depth of
// the other one, so that dark edges come back as they were.
void MultiplyRow(const uint8_t* row, uint32_t depth_bits, uint16_t* multiplied, int32_t pixels);
void DivideRow(const uint16_t* multiplied, uint32_t depth_bits, uint8_t* row, int32_t pixels);

// Whole pictures. A picture that is opaque everywhere needs no multiplying.
bool IsOpaque(const Image& image);
Image Multiplied(const Image& image);
Image Divided(const Image& multiplied, uint32_t depth_bits);

}  // namespace ovra_host
