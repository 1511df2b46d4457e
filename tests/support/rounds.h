// SPDX-License-Identifier: MIT
// Other seeds than the usual ones, so that a test that draws can go on for hours.
#pragma once

#include <cstdint>
#include <cstdlib>

namespace ovra_test {

struct Seeds {
  uint32_t begin;
  uint32_t end;
};

// `usual` seeds; where OVRA_ROUND has a number, as many others.
inline Seeds SeedsOf(uint32_t usual) {
  const char* const round = std::getenv("OVRA_ROUND");
  const auto first =
      round == nullptr ? 0 : static_cast<uint32_t>(std::strtoul(round, nullptr, 10)) * usual;
  return {first, first + usual};
}

}  // namespace ovra_test
