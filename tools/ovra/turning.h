// SPDX-License-Identifier: MIT
// Arithmetic of the eight modes of OvraRotateImage, for work that turns on the
// way.
#pragma once

#include "command.h"

namespace ovra_host {

// Whether a mode exchanges width and height.
constexpr bool ExchangesSides(int32_t mode) {
  return mode % 2 != 0;
}
Size TurnedSize(Size size, int32_t mode);

// Where a part of a picture of this size lies after the turn.
Rectangle TurnedPart(const Rectangle& part, Size picture, int32_t mode);

// The mode that undoes a mode, and the one that does two in turn.
int32_t InverseMode(int32_t mode);
int32_t JoinedModes(int32_t first, int32_t second);

}  // namespace ovra_host
