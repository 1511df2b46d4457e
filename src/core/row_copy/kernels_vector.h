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

constexpr std::ptrdiff_t kLineBytes = 64;

// A cache line of the pixel, from any byte of it on.
struct PixelPattern {
  std::ptrdiff_t pixel_bytes;
  uint8_t bytes[kLineBytes + 2 * RowFill::kMaxPixelBytes];

  PixelPattern(const void* pixel, std::ptrdiff_t size) : pixel_bytes(size) {
    for (std::ptrdiff_t i = 0; i < kLineBytes + RowFill::kMaxPixelBytes; i += size) {
      std::memcpy(bytes + i, pixel, static_cast<size_t>(size));
    }
  }
};

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

template <class V, bool kStreaming>
void FillRow(uint8_t* out, std::ptrdiff_t bytes, const PixelPattern& pattern) {
  const auto before_line =
      static_cast<std::ptrdiff_t>(-reinterpret_cast<uintptr_t>(out) & uintptr_t{kLineBytes - 1});
  std::ptrdiff_t x = before_line < bytes ? before_line : bytes;
  std::memcpy(out, pattern.bytes, static_cast<size_t>(x));
  std::ptrdiff_t phase = x % pattern.pixel_bytes;
  const std::ptrdiff_t turn = kLineBytes % pattern.pixel_bytes;
  for (; x + kLineBytes <= bytes; x += kLineBytes) {
    FillLine<V, kStreaming>(out + x, pattern.bytes + phase);
    phase += turn;
    if (phase >= pattern.pixel_bytes) phase -= pattern.pixel_bytes;
  }
  std::memcpy(out + x, pattern.bytes + phase, static_cast<size_t>(bytes - x));
}

template <class V>
void Fill(const RowFill& fill) {
  const PixelPattern pattern(fill.pixel, fill.pixel_bytes);
  const std::ptrdiff_t bytes = fill.pixels * fill.pixel_bytes;
  for (std::ptrdiff_t row = 0; row < fill.rows; ++row) {
    uint8_t* const out = fill.destination + row * fill.stride;
    if (fill.streaming) {
      FillRow<V, true>(out, bytes, pattern);
    } else {
      FillRow<V, false>(out, bytes, pattern);
    }
  }
  if (fill.streaming) FinishStreaming();
}

template <class V>
constexpr RowCopyKernels kRowCopyOf = {Copy<V>, Fill<V>};

}  // namespace
}  // namespace ovra
