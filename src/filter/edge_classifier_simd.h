// SPDX-License-Identifier: MIT
// The edge classifier's kernels on vectors of any width. Included by one kernel file a tier.
#pragma once

#include "filter/channel_shuffles.h"
#include "filter/edge_classifier_kernels.h"
#include "filter/vector_ops.h"

namespace ovra {
namespace {

template <class V>
void ColorDifference(const uint8_t* pixels, int16_t* first, int16_t* second, std::ptrdiff_t width) {
  using Reg = typename V::Reg;
  constexpr std::ptrdiff_t kLanes = V::kBytes / 2;
  std::ptrdiff_t x = 0;
  for (; x + 16 <= width; x += 16) {
    const Pixels16<V> in(pixels + 3 * x);
    for (int r = 0; r < Pixels16<V>::kRegs; ++r) {
      // All sums fit 16 bits: 45 * 255 and 3 * 255 * 19 are below 2^14.
      const Reg c0 = in.samples[0][r];
      const Reg c1 = in.samples[1][r];
      const Reg c2 = in.samples[2][r];
      const Reg green_part = V::Add16(V::MulLow16(c1, V::Set16(38)), V::MulLow16(c2, V::Set16(7)));
      V::Store(first + x + r * kLanes,
               V::ShiftRight16(V::Sub16(V::MulLow16(c0, V::Set16(45)), green_part), 4));
      const Reg twice = V::Sub16(V::Add16(c2, c2), V::Add16(c1, c1));
      const Reg sum = V::Add16(twice, V::Sub16(c2, c0));
      V::Store(second + x + r * kLanes, V::ShiftRight16(V::MulLow16(sum, V::Set16(19)), 4));
    }
  }
  ColorDifferencePlain(pixels + 3 * x, first + x, second + x, width - x);
}

template <class V>
uint32_t CountMiddling(const int16_t* a, const int16_t* b, std::ptrdiff_t width) {
  using Reg = typename V::Reg;
  constexpr std::ptrdiff_t kLanes = V::kBytes / 2;
  Reg counts = V::Zero();
  std::ptrdiff_t x = 0;
  for (; x + kLanes <= width; x += kLanes) {
    const Reg magnitude = V::Abs16(V::Sub16(V::Load(a + x), V::Load(b + x)));
    const Reg excess = V::Sub16(magnitude, V::Set16(kMiddlingDifference));
    const Reg middling = V::Equal16(V::MinU16(excess, V::Set16(kMiddlingDifference - 1)), excess);
    counts = V::Add32(counts, V::MulAdd16(middling, V::Set16(-1)));
  }
  uint32_t lanes[V::kBytes / 4];
  V::Store(lanes, counts);
  uint32_t count = CountMiddlingPlain(a + x, b + x, width - x);
  for (const uint32_t lane : lanes) count += lane;
  return count;
}

}  // namespace
}  // namespace ovra
