// SPDX-License-Identifier: MIT
// The vector forms, for registers of any width. Included by one kernel file a tier.
//
// They work in whole vectors and overshoot: see WorkRows.
#pragma once

#include "core/vector_ops.h"
#include "tone/pyramid/expand_vector.h"
#include "tone/pyramid/kernels.h"
#include "tone/pyramid/limited_vector.h"
#include "tone/pyramid/pixels_vector.h"

namespace ovra {
namespace {

template <class V>
constexpr std::ptrdiff_t kWords = V::kBytes / 2;

template <class V>
void ReduceAlong(const int16_t* row, int16_t* output, std::ptrdiff_t count) {
  const auto outer = WeightPair<V>(1, 4);
  const auto middle = WeightPair<V>(6, 4);
  const auto first_of_two = V::Set32(0xFFFF);
  const auto half = V::Set32(8);
  const auto reduce = [&](const int16_t* p) {
    const auto sum = V::Add32(V::MulAdd16(V::Load(p - 2), outer), V::MulAdd16(V::Load(p), middle));
    const auto last_and_half = V::Add32(V::And(V::Load(p + 2), first_of_two), half);
    return V::ShiftRight32(V::Add32(sum, last_and_half), 4);
  };
  for (std::ptrdiff_t i = 0; i < count; i += kWords<V>) {
    const int16_t* const p = row + 2 * i;
    V::Store(output + i, V::InOrder(V::PackS32(reduce(p), reduce(p + kWords<V>))));
  }
}

// (p0 + 4 p1 + 6 p2 + 4 p3 + p4 + 8) >> 4, halved in steps so that every sum fits 16 bits without
// sign: (p0 + p4) / 2, with p2 a half again, and 2 more behind that.
template <class V>
void ReduceAcross(const int16_t* const* rows, int16_t* output, std::ptrdiff_t count) {
  const auto minus_one = V::Set16(-1);
  for (std::ptrdiff_t i = 0; i < count; i += kWords<V>) {
    const auto row = [&](int k) { return V::Load(rows[k] + i); };
    const auto middle = row(2);
    const auto outer = V::ShiftRightU16(V::Add16(row(0), row(4)), 1);
    const auto evens = V::Add16(V::ShiftRightU16(V::Add16(outer, middle), 1), middle);
    const auto odds_and_one = V::Sub16(V::Add16(row(1), row(3)), minus_one);
    V::Store(output + i, V::ShiftRightU16(V::AverageU16(evens, odds_and_one), 1));
  }
}

template <class V, class Words>
void ExpandAcross(const int16_t* const* rows, bool is_odd, int16_t* output, std::ptrdiff_t count) {
  if (is_odd) {
    for (std::ptrdiff_t i = 0; i < count; i += kWords<V>) {
      V::Store(output + i, V::AverageU16(V::Load(rows[1] + i), V::Load(rows[2] + i)));
    }
  } else {
    for (std::ptrdiff_t i = 0; i < count; i += kWords<V>) {
      V::Store(output + i, ExpandedEven<V, Words>(V::Load(rows[0] + i), V::Load(rows[1] + i),
                                                  V::Load(rows[2] + i)));
    }
  }
}

template <class V>
void ExpandAlong(const int16_t* row, int16_t* output, std::ptrdiff_t count) {
  for (std::ptrdiff_t i = 0; i < count; i += kWords<V>) {
    const auto part = ExpandedFrom<V, NarrowWords>(row, 2 * i);
    int16_t* const out = output + 2 * i;
    V::StoreLanes(out, out + 16, part.low);
    V::StoreLanes(out + 8, out + 24, part.high);
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
constexpr PyramidKernels kPyramidOf = {ReduceAlong<V>,
                                       ReduceAcross<V>,
                                       ExpandAcross<V, NarrowWords>,
                                       ExpandAcross<V, WideWords>,
                                       ExpandAlong<V>,
                                       EnlargeAcross<V>,
                                       LimitDetail<V>};

}  // namespace
}  // namespace ovra
