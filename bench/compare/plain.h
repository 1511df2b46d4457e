// SPDX-License-Identifier: MIT
// Plain loops: what one would write in an hour, compiled with -O3.
#pragma once

#include "work.h"

namespace compare {

// The same, marked as a plain loop.
Maker PlainLoop(const char* operation, Run* run, Takes* takes = nullptr);

inline int Limit(int value, int max) {
  return value < 0 ? 0 : value > max ? max : value;
}

// The samples of a picture, of one type or the other.
template <class Sample, class Any>
auto SamplesOf(Any* picture) {
  if constexpr (sizeof(Sample) == 1) {
    return picture->data();
  } else {
    return picture->words();
  }
}

}  // namespace compare
