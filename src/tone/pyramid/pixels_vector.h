// SPDX-License-Identifier: MIT
// Between 16-bit samples of pixels and one number for each pixel, in registers. For kernel files.
#pragma once

#include "core/channel_shuffles.h"
#include "core/vector_ops.h"

namespace ovra {
namespace {

// Two 16-bit weights for neighbours that are multiplied and added.
template <class V>
typename V::Reg WeightPair(int32_t first, int32_t second) {
  return V::Set32(static_cast<int32_t>(static_cast<uint32_t>(second) << 16) | (first & 0xFFFF));
}

// weights[0] * c0 + weights[1] * c1 + weights[2] * c2, shifted down to at most 15 bits; the weights
// sum to 64. With `is_signed` the samples stand 2^15 lower than they are.
template <class V>
class WeightedSum {
 public:
  template <class Weight>
  WeightedSum(const Weight (&weights)[3], int shift, bool is_signed)
      : first_two_(WeightPair<V>(weights[0], weights[1])),
        third_(WeightPair<V>(weights[2], is_signed ? 128 : 0)),
        shift_(shift) {}

  typename V::Reg operator()(typename V::Reg c0, typename V::Reg c1, typename V::Reg c2) const {
    const auto offset = V::Set16(16384);  // 128 times this is 64 times 2^15
    const auto low =
        Shifted(V::template UnpackLow<16>(c0, c1), V::template UnpackLow<16>(c2, offset));
    const auto high =
        Shifted(V::template UnpackHigh<16>(c0, c1), V::template UnpackHigh<16>(c2, offset));
    return V::PackS32(low, high);
  }

 private:
  typename V::Reg Shifted(typename V::Reg first_two, typename V::Reg third) const {
    return V::ShiftRight32(V::Add32(V::MulAdd16(first_two, first_two_), V::MulAdd16(third, third_)),
                           shift_);
  }

  typename V::Reg first_two_;
  typename V::Reg third_;
  int shift_;
};

}  // namespace
}  // namespace ovra
