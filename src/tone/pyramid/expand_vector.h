// SPDX-License-Identifier: MIT
// Expansion in registers. For kernel files.
//
// The even sample is (before + 6 at + behind + 4) >> 3. Rounding down in steps is rounding down once,
// so that it comes from means of two, and only the last of them is rounded up.
#pragma once

#include "core/vector_ops.h"

namespace ovra {
namespace {

// Words whose sum fits 16 bits without sign: brightness.
struct NarrowWords {
  template <class V>
  static typename V::Reg MeanDown(typename V::Reg a, typename V::Reg b) {
    return V::ShiftRightU16(V::Add16(a, b), 1);
  }
};

// Words without sign, from 1 on: changes, which are kept 2^15 higher.
struct WideWords {
  template <class V>
  static typename V::Reg MeanDown(typename V::Reg a, typename V::Reg b) {
    return V::AverageU16(a, V::Sub16(b, V::Set16(1)));
  }
};

template <class V, class Words>
typename V::Reg ExpandedEven(typename V::Reg before, typename V::Reg at, typename V::Reg behind) {
  const auto outer = Words::template MeanDown<V>(before, behind);
  return V::AverageU16(Words::template MeanDown<V>(outer, at), at);
}

// The samples from x on that a row expands to: two registers' worth. In each lane the first eight of
// 16 come in `low` and the others in `high`.
template <class V>
struct ExpandedPart {
  typename V::Reg low;
  typename V::Reg high;
};

template <class V, class Words>
ExpandedPart<V> ExpandedFrom(const int16_t* row, std::ptrdiff_t x) {
  const int16_t* const p = row + ((x + 1) >> 1);
  const auto before = V::Load(p - 1);
  const auto at = V::Load(p);
  const auto behind = V::Load(p + 1);
  const auto even = ExpandedEven<V, Words>(before, at, behind);
  if (x % 2 != 0) {
    const auto odd = V::AverageU16(before, at);
    return {V::template UnpackLow<16>(odd, even), V::template UnpackHigh<16>(odd, even)};
  }
  const auto odd = V::AverageU16(at, behind);
  return {V::template UnpackLow<16>(even, odd), V::template UnpackHigh<16>(even, odd)};
}

}  // namespace
}  // namespace ovra
