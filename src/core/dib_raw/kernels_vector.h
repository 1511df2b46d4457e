// SPDX-License-Identifier: MIT
// The vector form, for registers of any width. Included by one kernel file a tier.
#pragma once

#include "core/dib_raw/kernels.h"
#include "core/row_moves_vector.h"

namespace ovra {
namespace {

template <class V>
void SwapRedBlue(const RowMove& move) {
  constexpr bool kBackward = false;
  constexpr bool kExchangedBytes = true;
  RowMover<V, PixelOrder<3, kBackward, kExchangedBytes>>::Run(
      move, NarrowerThan<V>(kDibRawPlain, kDibRawSse).swap_red_blue);
}

template <class V>
constexpr DibRawKernels kDibRawOf = {SwapRedBlue<V>};

}  // namespace
}  // namespace ovra
