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

// What the environment has under this name, or `otherwise`.
inline uint32_t NumberOf(const char* name, uint32_t otherwise) {
  const char* const text = std::getenv(name);
  return text == nullptr ? otherwise : static_cast<uint32_t>(std::strtoul(text, nullptr, 10));
}

// `usual` seeds, or as many as OVRA_SEEDS says; where OVRA_ROUND has a number, as many others.
inline Seeds SeedsOf(uint32_t usual) {
  const uint32_t count = NumberOf("OVRA_SEEDS", usual);
  const uint32_t first = NumberOf("OVRA_ROUND", 0) * count;
  return {first, first + count};
}

}  // namespace ovra_test
