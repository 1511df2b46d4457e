// SPDX-License-Identifier: MIT
#include "geometry/free_trimming/trimming_geometry.h"

#include <cmath>

namespace ovra {
namespace {

constexpr int32_t kQuarterTurn = 900;

// 2^31 * sin, for 0 to kQuarterTurn. No value is near enough to a tie for an error of a double to
// matter.
int64_t Sine(int32_t tenths_of_degree) {
  constexpr double kPi = 3.14159265358979323846;
  constexpr double kUnity = 2147483648.0;
  return static_cast<int64_t>(std::sin(tenths_of_degree * kPi / (2 * kQuarterTurn)) * kUnity + 0.5);
}

// Doubled, from the doubled centre: positions are (centre + a * factor) / 2 with the factor in units
// of 2^-31, hence in units of 2^-32 altogether.
TrimmingAxis AxisOf(int64_t doubled_centre, int64_t column_factor, int64_t row_factor,
                    int32_t width, int32_t height) {
  constexpr int64_t kHalfPixel = int64_t{1} << 31;
  const int64_t whole = doubled_centre >> 1;
  const int64_t half = doubled_centre & 1;
  return {whole, half * kHalfPixel - (width - 1) * column_factor - (height - 1) * row_factor,
          2 * column_factor, 2 * row_factor};
}

}  // namespace

TrimmingGeometry FindTrimmingGeometry(int32_t width, int32_t height, int32_t x, int32_t y,
                                      int32_t angle) {
  const int32_t turn = (angle % (4 * kQuarterTurn) + 4 * kQuarterTurn) % (4 * kQuarterTurn);
  const int32_t quarters = turn / kQuarterTurn;
  const int32_t rest = turn % kQuarterTurn;
  const int64_t sine = Sine(rest);
  const int64_t cosine = Sine(kQuarterTurn - rest);
  const int64_t cosines[] = {cosine, -sine, -cosine, sine};
  const int64_t sines[] = {sine, cosine, -sine, -cosine};
  const int64_t c = cosines[quarters];
  const int64_t s = sines[quarters];

  int64_t doubled_u = 2 * int64_t{x} + width - 1;
  int64_t doubled_v = 2 * int64_t{y} + height - 1;
  if (rest == 0 && quarters % 2 != 0 && (width + height) % 2 != 0) {
    --doubled_u;  // the centre would lie between pixels
    --doubled_v;
  }
  return {rest == 0, quarters, AxisOf(doubled_u, c, -s, width, height),
          AxisOf(doubled_v, s, c, width, height)};
}

}  // namespace ovra
