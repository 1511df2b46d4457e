// SPDX-License-Identifier: MIT
// The vector form, for registers of any width. Included by one kernel file a tier.
#pragma once

#include "core/dib_raw/kernels.h"
#include "core/vector_ops.h"

namespace ovra {
namespace {

template <class V>
void SwapRedBlue(const uint8_t* source, uint8_t* destination, std::ptrdiff_t pixels) {
  // Each lane takes five pixels. Its 16th byte is the first of the next pixel, which is written in
  // its old place and overwritten afterwards. Hence one pixel more must follow.
  constexpr std::ptrdiff_t kLaneBytes = 15;
  constexpr std::ptrdiff_t kStepPixels = V::kLanes * kLaneBytes / 3;
  static constexpr int8_t kSwap[16] = {2, 1, 0, 5, 4, 3, 8, 7, 6, 11, 10, 9, 14, 13, 12, 15};
  const auto swap = V::LoadToAllLanes(kSwap);
  std::ptrdiff_t i = 0;
  for (; i + kStepPixels < pixels; i += kStepPixels) {
    const uint8_t* const in = source + 3 * i;
    uint8_t* const out = destination + 3 * i;
    V::StoreLanes(out, out + kLaneBytes, V::Shuffle8(V::LoadLanes(in, in + kLaneBytes), swap));
  }
  NarrowerThan<V>(kDibRawPlain, kDibRawSse)
      .swap_red_blue(source + 3 * i, destination + 3 * i, pixels - i);
}

template <class V>
constexpr DibRawKernels kDibRawOf = {SwapRedBlue<V>};

}  // namespace
}  // namespace ovra
