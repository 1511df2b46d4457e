// SPDX-License-Identifier: MIT
#include "turning.h"

#include "ovra/geometry.h"

namespace ovra_host {
namespace {

bool SamePlace(const Rectangle& a, const Rectangle& b) {
  return a.position.x == b.position.x && a.position.y == b.position.y;
}

}  // namespace

Size TurnedSize(Size size, int32_t mode) {
  return ExchangesSides(mode) ? Size{size.height, size.width} : size;
}

Rectangle TurnedPart(const Rectangle& part, Size picture, int32_t mode) {
  const int32_t left = part.position.x;
  const int32_t top = part.position.y;
  const int32_t right = picture.width - left - part.size.width;  // what lies beyond
  const int32_t bottom = picture.height - top - part.size.height;
  const Size size = TurnedSize(part.size, mode);
  switch (mode) {
    case OVRA_ROTATE_QUARTER_LEFT:
      return {{top, right}, size};
    case OVRA_ROTATE_HALF:
      return {{right, bottom}, size};
    case OVRA_ROTATE_QUARTER_RIGHT:
      return {{bottom, left}, size};
    case OVRA_ROTATE_MIRROR:
      return {{right, top}, size};
    case OVRA_ROTATE_ANTI_TRANSPOSE:
      return {{bottom, right}, size};
    case OVRA_ROTATE_FLIP:
      return {{left, bottom}, size};
    case OVRA_ROTATE_TRANSPOSE:
      return {{top, left}, size};
    default:
      return part;
  }
}

int32_t InverseMode(int32_t mode) {
  if (mode == OVRA_ROTATE_QUARTER_LEFT) return OVRA_ROTATE_QUARTER_RIGHT;
  if (mode == OVRA_ROTATE_QUARTER_RIGHT) return OVRA_ROTATE_QUARTER_LEFT;
  return mode;
}

int32_t JoinedModes(int32_t first, int32_t second) {
  // Two pixels of a 3 x 3 picture tell all eight modes apart.
  constexpr Size kPicture = {3, 3};
  constexpr Rectangle kProbes[] = {{{0, 0}, {1, 1}}, {{1, 0}, {1, 1}}};
  for (int32_t mode = OVRA_ROTATE_NONE; mode <= OVRA_ROTATE_TRANSPOSE; ++mode) {
    bool same = true;
    for (const Rectangle& probe : kProbes) {
      const Rectangle between = TurnedPart(probe, kPicture, first);
      same = same &&
             SamePlace(TurnedPart(between, kPicture, second), TurnedPart(probe, kPicture, mode));
    }
    if (same) return mode;
  }
  return OVRA_ROTATE_NONE;
}

}  // namespace ovra_host
