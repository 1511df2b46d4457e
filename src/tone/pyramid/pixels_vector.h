// SPDX-License-Identifier: MIT
// Between 16-bit samples of pixels and one number for each pixel, in registers. For kernel files.
#pragma once

#include "core/channel_shuffles.h"
#include "core/vector_ops.h"

namespace ovra {
namespace {

// Asks for bytes of a picture that will be read soon. What the processor fetches ahead by itself ends
// at every page, and waits while rows in between are worked on.
template <std::ptrdiff_t kBytes>
void PrefetchAhead(const void* from, std::ptrdiff_t ahead) {
  constexpr std::ptrdiff_t kLine = 64;
  const auto address = reinterpret_cast<uintptr_t>(from) + static_cast<uintptr_t>(ahead);
  for (std::ptrdiff_t at = 0; at < kBytes; at += kLine) {
    PrefetchLine(address + static_cast<uintptr_t>(at));
  }
}

// How far ahead of the pixels of a row.
constexpr std::ptrdiff_t kAheadInRow = 16384;

// Stores a register's lanes, round the cache when that is wanted; then the addresses are aligned.
template <class V, bool kStreaming>
void StoreLanesTo(void* first, void* second, typename V::Reg a) {
  if constexpr (kStreaming) {
    V::StoreLanesStreaming(first, second, a);
  } else {
    V::StoreLanes(first, second, a);
  }
}

template <class V, bool kStreaming>
void StoreTo(void* p, typename V::Reg a) {
  if constexpr (kStreaming) {
    V::StoreStreaming(p, a);
  } else {
    V::Store(p, a);
  }
}

// Covers the whole steps of a row of pixels, step<kStreaming>(i) for each, and answers where they end.
// What goes round the cache is written from the first pixel on that stands at kAligned bytes, if there
// is one: head(count) makes those before it.
template <std::ptrdiff_t kPixelBytes, std::ptrdiff_t kStep, std::ptrdiff_t kAligned = 16,
          class Head, class Step>
std::ptrdiff_t CoverPixels(const void* destination, std::ptrdiff_t pixels, bool streaming,
                           const Head& head, const Step& step) {
  const auto address =
      static_cast<std::ptrdiff_t>(reinterpret_cast<uintptr_t>(destination) % kAligned);
  std::ptrdiff_t i = 0;
  while (i < kAligned && (address + i * kPixelBytes) % kAligned != 0) ++i;
  if (streaming && i < kAligned && i + kStep <= pixels) {
    head(i);
    for (; i + kStep <= pixels; i += kStep) step.template operator()<true>(i);
    FinishStreaming();
    return i;
  }
  for (i = 0; i + kStep <= pixels; i += kStep) step.template operator()<false>(i);
  return i;
}

// Two 16-bit weights for neighbours that are multiplied and added.
template <class V>
typename V::Reg WeightPair(int32_t first, int32_t second) {
  return V::Set32(PackedPair(first, second));
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

// 19, 38 and 7 times three channels of 10 to 12 bits, shifted down by 1 to 3: what 64 weights come to
// in 15 bits. With s = c0 + 2 c1 that is (19 s + 7 c2) >> shift, of which whole multiples of s are kept
// apart, so that the rest fits 16 bits without sign.
template <class V>
class NarrowLuminance {
 public:
  static constexpr int kFirst = 19;

  explicit NarrowLuminance(int shift)
      : whole_(V::Set16(kFirst >> shift)),
        rest_(V::Set16(kFirst & ((1 << shift) - 1))),
        down_(V::Set16(1 << (16 - shift))) {}

  typename V::Reg operator()(typename V::Reg c0, typename V::Reg c1, typename V::Reg c2) const {
    const auto s = V::Add16(c0, V::Add16(c1, c1));
    const auto rest = V::Add16(V::MulLow16(s, rest_), V::MulLow16(c2, V::Set16(7)));
    return V::Add16(V::MulLow16(s, whole_), V::MulHighU16(rest, down_));
  }

 private:
  typename V::Reg whole_;
  typename V::Reg rest_;
  typename V::Reg down_;
};

}  // namespace
}  // namespace ovra
