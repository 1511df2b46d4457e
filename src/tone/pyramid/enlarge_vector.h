// SPDX-License-Identifier: MIT
// Enlargement to four times the width in registers. For kernel files.
#pragma once

#include "core/vector_ops.h"

namespace ovra {
namespace {

// Four outputs lie between two samples, the first two of them before the middle of a block. By how many
// of the four a register starts behind the first: which of eight words its outputs lie behind and
// before, and how far between.
struct EnlargeOrders {
  alignas(32) int8_t before[4][32];
  alignas(32) int8_t behind[4][32];
  alignas(32) int16_t shares[4][16];

  constexpr EnlargeOrders() : before(), behind(), shares() {
    for (int phase = 0; phase < 4; ++phase) {
      for (int i = 0; i < 32; ++i) {
        const int output = i / 2 + phase;
        before[phase][i] = static_cast<int8_t>(output / 4 * 2 + i % 2);
        behind[phase][i] = static_cast<int8_t>(before[phase][i] + 2);
        shares[phase][i / 2] = static_cast<int16_t>((2 * (output % 4) + 1) << 12);
      }
    }
  }
};

constexpr EnlargeOrders kEnlargeOrders;

template <class V>
class Enlarger {
 public:
  // For outputs from `x` on, -2 or more, in whole registers.
  explicit Enlarger(std::ptrdiff_t x)
      : before_(V::LoadAligned(kEnlargeOrders.before[(x + 2) % 4])),
        behind_(V::LoadAligned(kEnlargeOrders.behind[(x + 2) % 4])),
        shares_(V::LoadAligned(kEnlargeOrders.shares[(x + 2) % 4])) {}

  // A register of outputs from x on. The ends of the row are held.
  typename V::Reg From(const int16_t* row, std::ptrdiff_t x) const {
    const auto words = V::LoadToAllLanes(row + ((x + 2) >> 2) - 1);
    const auto a = V::Shuffle8(words, before_);
    const auto difference = V::Sub16(V::Shuffle8(words, behind_), a);
    return V::Add16(a, V::MulRound15(difference, shares_));
  }

 private:
  typename V::Reg before_;
  typename V::Reg behind_;
  typename V::Reg shares_;
};

}  // namespace
}  // namespace ovra
