// SPDX-License-Identifier: MIT
// Colours as they are written on the command line.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace ovra_host {

// "N" or "N,N,N" in samples of this depth, a name as white, or #RRGGBB or #RGB of sRGB. The result has
// one sample a channel; a picture with alpha that is given three is opaque there. Throws Error, which
// begins with the name of the option, where a value is beyond the range or the count does not fit.
std::vector<uint16_t> ParseColor(const std::string& option, const std::string& text,
                                 uint32_t depth_bits, uint32_t channels);

// What may stand for a colour, for --help.
constexpr char kColorForms[] = "N,N,N|#RRGGBB|NAME";

}  // namespace ovra_host
