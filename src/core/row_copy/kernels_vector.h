// SPDX-License-Identifier: MIT
// The vector forms, for registers of any width. Included by one kernel file a tier.
#pragma once

#include <cstring>

#include "core/row_copy/kernels.h"
#include "core/row_moves_vector.h"

namespace ovra {
namespace {

template <class V>
const RowCopyKernels& Rest() {
  return NarrowerThan<V>(kRowCopyPlain, kRowCopySse);
}

template <class V>
void Copy(const RowMove& move) {
  RowMover<V, PixelOrder<1, false, false>>::Run(move, Rest<V>().copy);
}

constexpr std::ptrdiff_t kLineBytes = PixelPattern::kLineBytes;

template <class V, bool kStreaming>
void FillLine(uint8_t* out, const uint8_t* pattern) {
#pragma GCC unroll 4
  for (std::ptrdiff_t i = 0; i < kLineBytes; i += V::kBytes) {
    if constexpr (kStreaming) {
      V::StoreStreaming(out + i, V::Load(pattern + i));
    } else {
      V::Store(out + i, V::Load(pattern + i));
    }
  }
}

// The first and the last line are those of the row, whatever the memory's are; what lies between is
// in lines of the memory, to which nothing else is written.
template <class V, bool kStreaming>
void FillRow(uint8_t* out, std::ptrdiff_t bytes, const PixelPattern& pattern) {
  if (bytes < kLineBytes) {
    std::memcpy(out, pattern.bytes, static_cast<size_t>(bytes));
    return;
  }
  const std::ptrdiff_t last = bytes - kLineBytes;
  FillLine<V, false>(out, pattern.bytes);
  FillLine<V, false>(out + last, pattern.bytes + last % pattern.pixel_bytes);
  // Of the first whole line a part has been written, and of the last.
  std::ptrdiff_t x = BytesToLine(out);
  std::ptrdiff_t phase = x % pattern.pixel_bytes;
  const std::ptrdiff_t turn = kLineBytes % pattern.pixel_bytes;
  for (std::ptrdiff_t line = 0; x < last; ++line, x += kLineBytes) {
    const bool inner = line > 0 && x + kLineBytes <= last;
    if (kStreaming && inner) {
      FillLine<V, true>(out + x, pattern.bytes + phase);
    } else {
      FillLine<V, false>(out + x, pattern.bytes + phase);
    }
    phase += turn;
    if (phase >= pattern.pixel_bytes) phase -= pattern.pixel_bytes;
  }
}

template <class V>
void Fill(const RowFill& fill) {
  const std::ptrdiff_t bytes = fill.pixels * fill.pattern.pixel_bytes;
  for (std::ptrdiff_t row = 0; row < fill.rows; ++row) {
    uint8_t* const out = fill.destination + row * fill.stride;
    if (fill.streaming) {
      FillRow<V, true>(out, bytes, fill.pattern);
    } else {
      FillRow<V, false>(out, bytes, fill.pattern);
    }
  }
  if (fill.streaming) FinishStreaming();
}

template <class V>
constexpr RowCopyKernels kRowCopyOf = {Copy<V>, Fill<V>};

}  // namespace
}  // namespace ovra
