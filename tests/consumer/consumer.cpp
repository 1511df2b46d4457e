// SPDX-License-Identifier: MIT
// The smallest host in C++.
#include <ovra/ovra.h>

#include <array>

int main() {
  const std::array<uint8_t, 4> dib = {3, 2, 1, 0};
  std::array<uint8_t, 3> raw{};
  OvraDib2Raw(dib.data(), raw.data(), 1, 1);
  return raw == std::array<uint8_t, 3>{1, 2, 3} ? 0 : 1;
}
