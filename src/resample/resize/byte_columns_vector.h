// SPDX-License-Identifier: MIT
// The vector forms of the horizontal pass of 8-bit samples, channel by channel.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/channel_shuffles.h"
#include "core/vector_ops.h"
#include "resample/resize/kernels.h"
#include "resample/resize/next_row.h"

namespace ovra {
namespace {

// At least `count` bytes, in whole registers.
inline void RepeatByte(uint8_t value, std::ptrdiff_t count, uint8_t* out) {
  const Sse::Reg bytes = Sse::Set8(value);
  for (std::ptrdiff_t i = 0; i < count; i += Sse::kBytes) Sse::Store(out + i, bytes);
}

template <class V, int kChannels>
void SplitBlock(const uint8_t* pixels, uint8_t* planes, std::ptrdiff_t spacing) {
  typename V::Reg channels[kChannels];
  if constexpr (kChannels == 3) {
    SplitThreeChannels<V, 8>(pixels, channels);
  } else {
    SplitFourChannels<V>(pixels, channels);
  }
  for (int c = 0; c < kChannels; ++c) V::Store(planes + c * spacing, channels[c]);
}

template <class V, int kChannels>
void SplitPixels(const uint8_t* pixels, std::ptrdiff_t count, uint8_t* planes,
                 std::ptrdiff_t spacing) {
  const auto block = [=](std::ptrdiff_t i) {
    SplitBlock<V, kChannels>(pixels + i * kChannels, planes + i, spacing);
  };
  if (CoverRow(count, V::kBytes, block)) return;
  if constexpr (V::kLanes > 1) {
    SplitPixels<Sse, kChannels>(pixels, count, planes, spacing);
  } else {
    for (std::ptrdiff_t i = 0; i < count; ++i) {
      for (int c = 0; c < kChannels; ++c) planes[c * spacing + i] = pixels[i * kChannels + c];
    }
  }
}

// What is repeated on the left is written first, because it may overlap what follows.
template <class V, int kChannels>
void FillPlanes(const ByteColumnsPass& pass, const uint8_t* source) {
  const std::ptrdiff_t inner = pass.repeated_left;
  const std::ptrdiff_t right = inner + pass.inner;
  const uint8_t* const first = source + (pass.first_column + inner) * kChannels;
  for (int c = 0; c < kChannels; ++c) {
    RepeatByte(source[c], pass.repeated_left, pass.planes + c * pass.plane_spacing);
  }
  if constexpr (kChannels == 1) {
    __builtin_memcpy(pass.planes + inner, first, static_cast<size_t>(pass.inner));
  } else {
    SplitPixels<V, kChannels>(first, pass.inner, pass.planes + inner, pass.plane_spacing);
  }
  for (int c = 0; c < kChannels; ++c) {
    RepeatByte(source[pass.last_column * kChannels + c], pass.repeated_right,
               pass.planes + c * pass.plane_spacing + right);
  }
}

// A group of columns. Sums of products with the two parts of the weights stay within 16 bits.
template <class V, int kWindows, int kChannels>
struct ByteGroup {
  using Reg = typename V::Reg;

  const uint8_t* planes;
  std::ptrdiff_t spacing;
  const int8_t* table;
  const int32_t* starts;
  int32_t pairs;

  Reg PairOfTaps(int channel, int pair) const {
    const uint8_t* const plane = planes + channel * spacing + 2 * pair;
    Reg taps = Window(plane, 0);
    if constexpr (kWindows == 2) taps = V::Or(taps, Window(plane, 1));
    return taps;
  }

  void Columns(Reg (&columns)[kChannels]) const {
    for (int c = 0; c < kChannels; ++c) {
      switch (pairs) {
        case 2:
          columns[c] = Column<2>(c);
          break;
        case 3:
          columns[c] = Column<3>(c);
          break;
        default:
          columns[c] = Column<4>(c);
      }
    }
  }

 private:
  template <int kPairs>
  Reg Column(int channel) const {
    constexpr int kShift = kHorizontalShift - kByteLowBits;
    Reg high = V::Zero();
    Reg low = V::Set16(kHorizontalRounding);
    for (int pair = 0; pair < kPairs; ++pair) {
      const int8_t* const weights = table + (kWindows + 2 * pair) * V::kBytes;
      const Reg taps = PairOfTaps(channel, pair);
      high = V::Add16(high, V::MulAddU8S8(taps, V::LoadAligned(weights)));
      low = V::Add16(low, V::MulAddU8S8(taps, V::LoadAligned(weights + V::kBytes)));
    }
    return V::ShiftRight16(V::Add16(high, V::ShiftRight16(low, kByteLowBits)), kShift);
  }

  Reg Window(const uint8_t* plane, int window) const {
    const int32_t first = starts[window];
    const int32_t second = starts[V::kLanes == 1 ? window : kWindows + window];
    return V::Shuffle8(V::LoadLanes(plane + first, plane + second),
                       V::LoadAligned(table + window * V::kBytes));
  }
};

template <class V, int kChannels>
void StoreColumns(const typename V::Reg (&columns)[kChannels], int16_t* out) {
  if constexpr (kChannels == 1) {
    V::Store(out, columns[0]);
  } else if constexpr (kChannels == 3) {
    JoinThreeChannels<V, 16>(columns, out);
  } else {
    JoinFourChannels<V>(columns, out);
  }
}

template <class V, int kWindows, int kChannels>
void ByteColumnsRowVector(const ByteColumnsPass& pass, const uint8_t* source, int16_t* out) {
  FillPlanes<V, kChannels>(pass, source);
  constexpr std::ptrdiff_t kGroupSamples = V::kLanes * kByteColumnsInLane * kChannels;
  ByteGroup<V, kWindows, kChannels> group = {pass.planes, pass.plane_spacing, pass.tables,
                                             pass.starts, pass.pairs};
  const auto first_byte = [&] { return (pass.first_column + group.starts[0]) * kChannels; };
  NextRow next_row(source, pass.source_stride, first_byte());
  for (int32_t i = 0; i < pass.groups; ++i) {
    next_row.AskUpToByte(first_byte());
    typename V::Reg columns[kChannels];
    group.Columns(columns);
    StoreColumns<V, kChannels>(columns, out + i * kGroupSamples);
    group.table += pass.group_bytes;
    group.starts += V::kLanes * kWindows;
  }
}

template <class V>
constexpr ByteColumnsKernels kByteColumnsOf = {
    V::kLanes,
    {{ByteColumnsRowVector<V, 1, 1>, ByteColumnsRowVector<V, 1, 3>, ByteColumnsRowVector<V, 1, 4>},
     {ByteColumnsRowVector<V, 2, 1>, ByteColumnsRowVector<V, 2, 3>,
      ByteColumnsRowVector<V, 2, 4>}}};

}  // namespace
}  // namespace ovra
