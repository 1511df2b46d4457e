// SPDX-License-Identifier: MIT
// The vector forms, for registers of any width. Included by one kernel file a tier.
//
// They work in whole vectors and overshoot: see WorkRows.
#pragma once

#include "core/vector_ops.h"
#include "tone/pyramid/kernels.h"
#include "tone/pyramid/limited_vector.h"
#include "tone/pyramid/pixels_vector.h"

namespace ovra {
namespace {

template <class V>
constexpr std::ptrdiff_t kWords = V::kBytes / 2;

// The mean of two, rounded down.
template <class V>
typename V::Reg MeanDown(typename V::Reg a, typename V::Reg b) {
  return V::Add16(V::And(a, b), V::ShiftRight16(V::Xor(a, b), 1));
}

// The mean of two, rounded up.
template <class V>
typename V::Reg MeanUp(typename V::Reg a, typename V::Reg b) {
  return V::Sub16(V::Or(a, b), V::ShiftRight16(V::Xor(a, b), 1));
}

// (before + 6 at + behind + 4) >> 3: rounding down in steps is rounding down once.
template <class V>
typename V::Reg ExpandedEven(typename V::Reg before, typename V::Reg at, typename V::Reg behind) {
  return MeanUp<V>(MeanDown<V>(MeanDown<V>(before, behind), at), at);
}

template <class V>
void ReduceAlong(const int16_t* row, int16_t* output, std::ptrdiff_t count) {
  const auto outer = WeightPair<V>(1, 4);
  const auto middle = WeightPair<V>(6, 4);
  const auto last = WeightPair<V>(1, 0);
  const auto half = V::Set32(8);
  const auto reduce = [&](const int16_t* p) {
    const auto sum = V::Add32(V::MulAdd16(V::Load(p - 2), outer), V::MulAdd16(V::Load(p), middle));
    return V::ShiftRight32(V::Add32(V::Add32(sum, half), V::MulAdd16(V::Load(p + 2), last)), 4);
  };
  for (std::ptrdiff_t i = 0; i < count; i += kWords<V>) {
    const int16_t* const p = row + 2 * i;
    V::Store(output + i, V::InOrder(V::PackS32(reduce(p), reduce(p + kWords<V>))));
  }
}

template <class V>
void ReduceAcross(const int16_t* const* rows, int16_t* output, std::ptrdiff_t count) {
  const auto outer = WeightPair<V>(1, 4);
  const auto middle = WeightPair<V>(6, 4);
  const auto last_and_half = WeightPair<V>(1, 8);
  const auto one = V::Set16(1);
  const auto sum = [&](typename V::Reg a, typename V::Reg b, typename V::Reg c) {
    const auto outer_and_middle = V::Add32(V::MulAdd16(a, outer), V::MulAdd16(b, middle));
    return V::ShiftRight32(V::Add32(outer_and_middle, V::MulAdd16(c, last_and_half)), 4);
  };
  for (std::ptrdiff_t i = 0; i < count; i += kWords<V>) {
    typename V::Reg row[5];
    for (int k = 0; k < 5; ++k) row[k] = V::Load(rows[k] + i);
    const auto low =
        sum(V::template UnpackLow<16>(row[0], row[1]), V::template UnpackLow<16>(row[2], row[3]),
            V::template UnpackLow<16>(row[4], one));
    const auto high =
        sum(V::template UnpackHigh<16>(row[0], row[1]), V::template UnpackHigh<16>(row[2], row[3]),
            V::template UnpackHigh<16>(row[4], one));
    V::Store(output + i, V::PackS32(low, high));
  }
}

template <class V>
void ExpandAcross(const int16_t* const* rows, bool is_odd, int16_t* output, std::ptrdiff_t count) {
  if (is_odd) {
    for (std::ptrdiff_t i = 0; i < count; i += kWords<V>) {
      V::Store(output + i, MeanUp<V>(V::Load(rows[1] + i), V::Load(rows[2] + i)));
    }
  } else {
    for (std::ptrdiff_t i = 0; i < count; i += kWords<V>) {
      V::Store(output + i,
               ExpandedEven<V>(V::Load(rows[0] + i), V::Load(rows[1] + i), V::Load(rows[2] + i)));
    }
  }
}

template <class V>
void ExpandAlong(const int16_t* row, int16_t* output, std::ptrdiff_t count) {
  for (std::ptrdiff_t i = 0; i < count; i += kWords<V>) {
    const auto at = V::Load(row + i);
    const auto behind = V::Load(row + i + 1);
    const auto even = ExpandedEven<V>(V::Load(row + i - 1), at, behind);
    const auto odd = MeanUp<V>(at, behind);
    int16_t* const out = output + 2 * i;
    V::StoreLanes(out, out + 16, V::template UnpackLow<16>(even, odd));
    V::StoreLanes(out + 8, out + 24, V::template UnpackHigh<16>(even, odd));
  }
}

template <class V>
void EnlargeAcross(const int16_t* from, const int16_t* to, int32_t eighths, int16_t* output,
                   std::ptrdiff_t count) {
  const auto share = V::Set16(eighths << 12);
  for (std::ptrdiff_t i = 0; i < count; i += kWords<V>) {
    const auto a = V::Load(from + i);
    V::Store(output + i, V::Add16(a, V::MulRound15(V::Sub16(V::Load(to + i), a), share)));
  }
}

// Which of eight words eight outputs lie behind; those of the second lane lie two words further.
struct EnlargeOrders {
  alignas(32) int8_t before[32];
  alignas(32) int8_t behind[32];
  alignas(32) int16_t shares[16];

  constexpr EnlargeOrders() : before(), behind(), shares() {
    for (int i = 0; i < 32; ++i) {
      const int output = i / 2;
      before[i] = static_cast<int8_t>(output / 4 * 2 + i % 2);
      behind[i] = static_cast<int8_t>(before[i] + 2);
      shares[output] = static_cast<int16_t>((2 * (output % 4) + 1) << 12);
    }
  }
};

constexpr EnlargeOrders kEnlargeOrders;

// Four outputs lie between two samples, the first two of them before the middle of a block.
template <class V>
void EnlargeAlong(const int16_t* row, int16_t* output, std::ptrdiff_t count) {
  constexpr std::ptrdiff_t kStep = kWords<V> / 4;
  const auto before = V::LoadAligned(kEnlargeOrders.before);
  const auto behind = V::LoadAligned(kEnlargeOrders.behind);
  const auto shares = V::LoadAligned(kEnlargeOrders.shares);
  for (std::ptrdiff_t i = -1; i < count; i += kStep) {
    const auto words = V::LoadToAllLanes(row + i);
    const auto a = V::Shuffle8(words, before);
    const auto difference = V::Sub16(V::Shuffle8(words, behind), a);
    V::Store(output + 4 * i + 2, V::Add16(a, V::MulRound15(difference, shares)));
  }
}

template <class V>
void LimitDetail(const int16_t* value, const int16_t* base, const SoftLimit& limit, int16_t* detail,
                 int16_t* rest, std::ptrdiff_t count) {
  const VectorLimit<V> limited(limit);
  for (std::ptrdiff_t i = 0; i < count; i += kWords<V>) {
    const auto v = V::Load(value + i);
    const auto d = limited(V::Sub16(v, V::Load(base + i)));
    V::Store(detail + i, d);
    V::Store(rest + i, V::Sub16(v, d));
  }
}

template <class V>
constexpr PyramidKernels kPyramidOf = {ReduceAlong<V>, ReduceAcross<V>,  ExpandAcross<V>,
                                       ExpandAlong<V>, EnlargeAcross<V>, EnlargeAlong<V>,
                                       LimitDetail<V>};

}  // namespace
}  // namespace ovra
