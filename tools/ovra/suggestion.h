// SPDX-License-Identifier: MIT
// What a mistyped word may have meant.
#pragma once

#include <string>
#include <vector>

namespace ovra_host {

// The word that is nearest by letters typed wrongly, left out or too many; empty when none is near.
std::string NearestWord(const std::string& typed, const std::vector<std::string>& words);

}  // namespace ovra_host
