// SPDX-License-Identifier: MIT
// The two passes of a resize, one row at a time. All sums are formed modulo 2^32, so that every
// order of summation gives the same bits, whatever the weights are.
#pragma once

#include <cstddef>
#include <cstdint>

#include "resample/resize/axis_taps.h"

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
  int32_t source_width;
  int32_t destination_width;
  // In these columns the kernel may read as many pixels from the first tap on as it asks for; in
  // the others taps outside the source repeat its edge.
  int32_t inner_begin;
  int32_t inner_end;
  std::ptrdiff_t source_stride;
};

template <class Sample>
using HorizontalRow = void(const HorizontalPass& pass, const Sample* source,
                           Intermediate<Sample>* out);

template <class Sample>
struct HorizontalKernel {
  HorizontalRow<Sample>* run;
  int32_t pixels_read;  // from the first tap of a column on; 0 for just the taps
};

// The columns [begin, end), with taps outside the source repeating its edge.
template <class Sample>
using ClampedColumns = void(const HorizontalPass& pass, int32_t begin, int32_t end,
                            const Sample* source, Intermediate<Sample>* out);

// A ring of as many intermediate rows as there are taps, and what combines them into one row.
template <class Sample>
struct VerticalPass {
  const Intermediate<Sample>* ring;
  std::ptrdiff_t row_spacing;  // in samples
  int32_t taps;
  int32_t oldest;          // the slot of the first tap; the others follow, wrapping round
  const int16_t* weights;  // in tap order
  std::ptrdiff_t samples;  // of a row; as many as a block of any tier can be read
  int32_t max_sample;
};

template <class Sample>
using VerticalRow = void(const VerticalPass<Sample>& pass, Sample* destination);

// The same, with two arrays of as many entries as there are taps as work memory.
template <class Sample>
using VerticalRowOfAnyTaps = void(const VerticalPass<Sample>& pass, int32_t* slots,
                                  int32_t* weights, Sample* destination);

// The columns of a resize of 8-bit samples, in groups as wide as a register of 16-bit sums. A weight
// is 16 times a signed byte, the high part, and an unsigned one below 16, the low part.
inline constexpr int32_t kByteColumnsInLane = 8;
inline constexpr int32_t kMaxByteColumnsGroup = 16;
inline constexpr int32_t kByteLowBits = 4;
inline constexpr std::ptrdiff_t kByteWindow = 16;  // bytes of a plane that a lane loads

struct ByteColumnsPass {
  // Of each group, a register each: for every window the shuffle that brings the first pair of taps of
  // each column together (further pairs lie two bytes further on), then for every pair of taps its high
  // weights and its low ones.
  const int8_t* tables;
  std::ptrdiff_t group_bytes;
  const int32_t* starts;  // of the windows in a plane: of each lane the first, and the second
  int32_t groups;
  int32_t pairs;
  // Planes of channels, from column `first_column` of the source on: `repeated_left` times the first
  // sample of the row, `inner` samples, and `repeated_right` times the last one. Behind them a register
  // may be written.
  uint8_t* planes;
  std::ptrdiff_t plane_spacing;
  std::ptrdiff_t first_column;
  std::ptrdiff_t repeated_left;
  std::ptrdiff_t inner;
  std::ptrdiff_t repeated_right;
  std::ptrdiff_t last_column;  // of the source
  std::ptrdiff_t source_stride;
};

using ByteColumnsRow = void(const ByteColumnsPass& pass, const uint8_t* source, int16_t* out);

// Kernels are chosen by channel count (no two-channel format can be resized) and by tap count:
// there are forms for 4 to 8 and for 16 taps, and one for all other counts.
enum { kOneChannel, kThreeChannels, kFourChannels, kChannelCounts };
enum { kTaps4, kTaps5, kTaps6, kTaps7, kTaps8, kTaps16, kAnyTaps, kTapForms };

constexpr uint32_t ChannelForm(uint32_t channels) {
  return channels == 1 ? kOneChannel : channels == 3 ? kThreeChannels : kFourChannels;
}

template <class Sample>
struct ResizeKernelsOf {
  HorizontalKernel<Sample> horizontal[kTapForms][kChannelCounts];
  ClampedColumns<Sample>* clamped[kChannelCounts];
  VerticalRow<Sample>* vertical[kTapForms];
  // Stands in for the last of them where it is null.
  VerticalRowOfAnyTaps<Sample>* vertical_of_any_taps;

  const HorizontalKernel<Sample>& Horizontal(int32_t taps, uint32_t channels) const {
    return horizontal[TapForm(taps)][ChannelForm(channels)];
  }
  VerticalRow<Sample>* Vertical(int32_t taps) const { return vertical[TapForm(taps)]; }

 private:
  static constexpr int32_t TapForm(int32_t taps) {
    if (taps >= 4 && taps <= 8) return taps - 4 + kTaps4;
    return taps == 16 ? kTaps16 : kAnyTaps;
  }
};

// By windows of a lane, and channels.
struct ByteColumnsKernels {
  static constexpr int32_t kMaxWindows = 2;

  int32_t lanes;  // of a register; 0 where a tier has no such form
  ByteColumnsRow* rows[kMaxWindows][kChannelCounts];
};

// The kernels of one tier. No kernel reads beyond the source row or writes beyond its own.
struct ResizeKernels {
  ResizeKernelsOf<uint8_t> of_bytes;
  ResizeKernelsOf<uint16_t> of_words;
  ByteColumnsKernels byte_columns;

  // Inlined always: a tier may not leave a copy of it to others.
  template <class Sample>
  [[gnu::always_inline]] const ResizeKernelsOf<Sample>& Of() const {
    if constexpr (sizeof(Sample) == 1) {
      return of_bytes;
    } else {
      return of_words;
    }
  }
};

extern const ResizeKernels kResizePlain;
extern const ResizeKernels kResizeSse;
extern const ResizeKernels kResizeAvx2;

}  // namespace ovra
