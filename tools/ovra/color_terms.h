// SPDX-License-Identifier: MIT
// Colour matrices for samples that count as 0..1, whatever their depth.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "ovra/color.h"

namespace ovra_host {

// By output channel red, green, blue the weights of
//   r, g, b, 1, r * r, g * g, b * b, r * g, g * b, b * r
using ColorTerms = std::array<std::array<double, 10>, 3>;

// Old photographs' brown.
ColorTerms SepiaTerms();

// 0 takes all colour, 1 changes nothing, more adds. Keeps the luminance.
ColorTerms SaturationTerms(double saturation);

// White balance: a factor for each channel.
ColorTerms GainTerms(const std::array<double, 3>& gains);

// Reads a text file of three lines with 3 or 10 numbers each, separated by blanks or commas; empty
// lines and what follows a # do not count. Throws an Error of one line with the number of the line
// that is wrong, if it is not that there are too few.
ColorTerms ReadColorTerms(const std::string& path);

// The record for the library: pictures of 0..max_sample in and out, of 8 or 16 bits.
OvraColorMatrix MakeColorMatrix(const ColorTerms& terms, uint32_t max_sample);

}  // namespace ovra_host
