// SPDX-License-Identifier: MIT
// The two passes of a resize, one row at a time. All sums are formed modulo 2^32, so that every
// order of summation gives the same bits, whatever the weights are.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/cpu.h"
#include "resample/resize_weights.h"

namespace ovra {

// What the horizontal pass leaves for the vertical one: samples with fractional bits. Those of
// 8-bit images are kept in 16 bits, and signed: what undershoots black beside a bright edge must
// still be below black when rows are combined.
template <class Sample>
struct IntermediateOf;
template <>
struct IntermediateOf<uint8_t> {
  using Type = int16_t;
};
template <>
struct IntermediateOf<uint16_t> {
  using Type = int32_t;
};
template <class Sample>
using Intermediate = typename IntermediateOf<Sample>::Type;

// Of the fractional bits of the weights the horizontal pass drops six and the vertical pass the
// rest; both round.
inline constexpr int32_t kHorizontalShift = 6;
inline constexpr int32_t kVerticalShift = 2 * kWeightBits - kHorizontalShift;
inline constexpr int32_t kHorizontalRounding = 1 << (kHorizontalShift - 1);
inline constexpr int32_t kVerticalRounding = 1 << (kVerticalShift - 1);

// The columns of a resize.
struct HorizontalPass {
  const TapSet* sets;
  const int16_t* weights;
  int32_t weight_stride;
  int32_t taps;
  int32_t taps_before_centre;
  int32_t channels;  // 1, 3 or 4: no two-channel format can be resized
  int32_t source_width;
  int32_t destination_width;
  // In these columns the kernel may read as many pixels from the first tap on as it asks for; in
  // the others taps outside the source repeat its edge.
  int32_t inner_begin;
  int32_t inner_end;
};

template <class Sample>
using HorizontalRow = void(const HorizontalPass& pass, const Sample* source,
                           Intermediate<Sample>* out);

template <class Sample>
struct HorizontalKernel {
  HorizontalRow<Sample>* run;
  int32_t pixels_read;  // from the first tap of a column on
};

// A ring of as many intermediate rows as there are taps, and what combines them into one row.
template <class Sample>
struct VerticalPass {
  const Intermediate<Sample>* ring;
  std::ptrdiff_t row_spacing;  // in samples
  int32_t taps;
  int32_t oldest;          // the slot of the first tap; the others follow, wrapping round
  const int16_t* weights;  // in tap order
  std::ptrdiff_t samples;  // of a row
  int32_t max_sample;
};

template <class Sample>
using VerticalRow = void(const VerticalPass<Sample>& pass, Sample* destination);

// The columns [begin, end), with taps outside the source repeating its edge.
template <class Sample>
void HorizontalColumnsClamped(const HorizontalPass& pass, int32_t begin, int32_t end,
                              const Sample* source, Intermediate<Sample>* out);

// Any tap count, with two arrays of as many entries as work memory.
template <class Sample>
void VerticalRowGeneric(const VerticalPass<Sample>& pass, int32_t* slots, int32_t* weights,
                        Sample* destination);

// The choice of each tier. Horizontal vector forms exist for 4 to 8 and for 16 taps: `run` is null
// for other counts. Plain vertical forms without work memory exist for the same counts: null stands
// for the generic form.
template <class Sample>
HorizontalKernel<Sample> SelectHorizontalPlain(int32_t taps, int32_t channels);
template <class Sample>
HorizontalKernel<Sample> SelectHorizontalSse(int32_t taps, int32_t channels);
template <class Sample>
HorizontalKernel<Sample> SelectHorizontalAvx2(int32_t taps, int32_t channels);

template <class Sample>
VerticalRow<Sample>* SelectVerticalPlain(int32_t taps);
template <class Sample>
VerticalRow<Sample>* SelectVerticalSse(int32_t taps);
template <class Sample>
VerticalRow<Sample>* SelectVerticalAvx2(int32_t taps);

// Explicit specialisations, so that each tier's file defines its own and no other does.
template <>
HorizontalKernel<uint8_t> SelectHorizontalSse(int32_t taps, int32_t channels);
template <>
HorizontalKernel<uint16_t> SelectHorizontalSse(int32_t taps, int32_t channels);
template <>
HorizontalKernel<uint8_t> SelectHorizontalAvx2(int32_t taps, int32_t channels);
template <>
HorizontalKernel<uint16_t> SelectHorizontalAvx2(int32_t taps, int32_t channels);
template <>
VerticalRow<uint8_t>* SelectVerticalSse(int32_t taps);
template <>
VerticalRow<uint16_t>* SelectVerticalSse(int32_t taps);
template <>
VerticalRow<uint8_t>* SelectVerticalAvx2(int32_t taps);
template <>
VerticalRow<uint16_t>* SelectVerticalAvx2(int32_t taps);

template <class Sample>
HorizontalKernel<Sample> SelectHorizontal(int32_t taps, int32_t channels, KernelTier tier) {
  HorizontalKernel<Sample> kernel = {};
  if (tier == KernelTier::kAvx2) kernel = SelectHorizontalAvx2<Sample>(taps, channels);
  if (tier == KernelTier::kSse) kernel = SelectHorizontalSse<Sample>(taps, channels);
  return kernel.run != nullptr ? kernel : SelectHorizontalPlain<Sample>(taps, channels);
}

template <class Sample>
VerticalRow<Sample>* SelectVertical(int32_t taps, KernelTier tier) {
  if (tier == KernelTier::kAvx2) return SelectVerticalAvx2<Sample>(taps);
  if (tier == KernelTier::kSse) return SelectVerticalSse<Sample>(taps);
  return SelectVerticalPlain<Sample>(taps);
}

}  // namespace ovra
