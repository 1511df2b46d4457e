// SPDX-License-Identifier: MIT
// The smallest host in C++.
#include <ovra/ovra.hpp>

int main() {
  ovra::Image raw({1, 1}, ovra::Format::Rgb());
  ovra::Image dib({1, 1}, ovra::kDibFormat);
  raw.Row(0)[0] = 1;
  ovra::Raw2Dib(raw, dib).OrThrow();
  return dib.Row(0)[2] == 1 ? 0 : 1;
}
