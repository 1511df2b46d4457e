// SPDX-License-Identifier: MIT
// The vector forms, for registers of any width. Included by one kernel file a tier.
//
// A lane makes one pixel, with a channel in each of its 32-bit elements, or, in grey pictures, a tap.
// Two source rows are interleaved, so that one multiplication takes a pair of weights. Deep samples
// lose 2^15 to be signed: since weights sum to a power of two, the final sum takes it back exactly.
#pragma once

#include "core/vector_ops.h"
#include "geometry/free_trimming/kernels.h"

namespace ovra {
namespace {

constexpr int kLaneBytes = 16;
constexpr int kPairs = kLanczosTaps / 2;
constexpr int kPixelsPerLane = 4;  // one after the other, stored together

// The first pixel under the kernel, and the weights of the position.
struct Place {
  const uint8_t* first;
  const int16_t* across;
  const int16_t* down;
};

template <int kPixelBytes>
Place PlaceOf(const TrimmingRow& row, std::ptrdiff_t i) {
  const int64_t u = RoundedPosition(row.u + i * row.u_step);
  const int64_t v = RoundedPosition(row.v + i * row.v_step);
  const auto column = static_cast<std::ptrdiff_t>(u >> kPhaseBits) - 2;
  const auto line = static_cast<std::ptrdiff_t>(v >> kPhaseBits) - 2;
  return {row.source + line * row.stride + column * kPixelBytes,
          kLanczosWeights.sets[u & (kLanczosPhases - 1)],
          kLanczosWeights.sets[v & (kLanczosPhases - 1)]};
}

// Pairs of weights, each in all elements of its lane.
template <class V>
struct WeightPairs {
  typename V::Reg pairs[kPairs];

  WeightPairs(const int16_t* first, const int16_t* second) {
    const auto weights = V::LoadLanes(first, second);
    pairs[0] = V::template Spread32<0>(weights);
    pairs[1] = V::template Spread32<1>(weights);
    pairs[2] = V::template Spread32<2>(weights);
  }
};

// Brings the samples of one of two pixels, whose bytes are interleaved with those of the row below,
// into 16-bit elements.
template <int kChannels>
struct PixelShuffle {
  alignas(kLaneBytes) int8_t bytes[kLaneBytes] = {};

  constexpr explicit PixelShuffle(int pixel) {
    for (int i = 0; i < kLaneBytes; ++i) {
      const int channel = i / 4;
      const bool used = channel < kChannels && i % 2 == 0;
      bytes[i] =
          used ? static_cast<int8_t>(2 * (pixel * kChannels + channel) + i % 4 / 2) : int8_t{-1};
    }
  }
};

template <int kChannels>
constexpr PixelShuffle<kChannels> kPixelShuffles[2] = {PixelShuffle<kChannels>(0),
                                                       PixelShuffle<kChannels>(1)};

// The sums down the columns, one register for each of six neighbouring pixels.
template <class V>
struct ColumnSums {
  typename V::Reg of[kLanczosTaps];
};

template <class V, int kChannels>
ColumnSums<V> SumColumns(const Place& a, const Place& b, std::ptrdiff_t stride,
                         const WeightPairs<V>& down, uint8_t /*sample*/) {
  const auto left = V::LoadToAllLanes(kPixelShuffles<kChannels>[0].bytes);
  const auto right = V::LoadToAllLanes(kPixelShuffles<kChannels>[1].bytes);
  ColumnSums<V> sums;
  for (auto& sum : sums.of) sum = V::Set32(1 << (kDownShift - 1));
#pragma GCC unroll 3
  for (int n = 0; n < kPairs; ++n) {
#pragma GCC unroll 3
    for (int i = 0; i < kPairs; ++i) {
      const std::ptrdiff_t at = 2 * n * stride + 2 * i * kChannels;
      const auto rows =
          V::template UnpackLow<8>(V::LoadLanes(a.first + at, b.first + at),
                                   V::LoadLanes(a.first + at + stride, b.first + at + stride));
      sums.of[2 * i] =
          V::Add32(sums.of[2 * i], V::MulAdd16(V::Shuffle8(rows, left), down.pairs[n]));
      sums.of[2 * i + 1] =
          V::Add32(sums.of[2 * i + 1], V::MulAdd16(V::Shuffle8(rows, right), down.pairs[n]));
    }
  }
  return sums;
}

template <class V, int kChannels>
ColumnSums<V> SumColumns(const Place& a, const Place& b, std::ptrdiff_t stride,
                         const WeightPairs<V>& down, uint16_t /*sample*/) {
  // With one sample before them, two pixels of three channels stand in the halves of a lane: the first
  // one an element too high.
  constexpr int kBefore = kChannels == 3 ? 1 : 0;
  ColumnSums<V> sums;
  for (auto& sum : sums.of) sum = V::Set32(1 << (kDownShift - 1));
#pragma GCC unroll 3
  for (int n = 0; n < kPairs; ++n) {
#pragma GCC unroll 3
    for (int i = 0; i < kPairs; ++i) {
      const std::ptrdiff_t at = 2 * n * stride + (2 * i * kChannels - kBefore) * 2;
      const auto upper = V::FlipSign16(V::LoadLanes(a.first + at, b.first + at));
      const auto lower = V::FlipSign16(V::LoadLanes(a.first + at + stride, b.first + at + stride));
      sums.of[2 * i] = V::Add32(
          sums.of[2 * i], V::MulAdd16(V::template UnpackLow<16>(upper, lower), down.pairs[n]));
      sums.of[2 * i + 1] = V::Add32(
          sums.of[2 * i + 1], V::MulAdd16(V::template UnpackHigh<16>(upper, lower), down.pairs[n]));
    }
  }
  if constexpr (kBefore != 0) {
    for (int i = 0; i < kPairs; ++i) {
      sums.of[2 * i] = V::template ShiftBytesDown<4>(sums.of[2 * i]);
    }
  }
  return sums;
}

// What the sums of deep samples become: the low 15 bits apart from the others, so that both are
// signed 16-bit numbers.
constexpr int kLowBits = 15;
constexpr int kSignOffset = 1 << 15;

template <class V>
typename V::Reg JoinHalves(typename V::Reg high, typename V::Reg low) {
  const auto rounded = V::ShiftRight32(V::Add32(low, V::Set32(1 << (kAcrossShift - 1))), kLowBits);
  const auto sum = V::ShiftRight32(V::Add32(high, rounded), kAcrossShift - kLowBits);
  return V::Add32(sum, V::Set32(kSignOffset));
}

// The first of two registers in the lower halves of the elements, the second in the upper ones.
template <class V>
typename V::Reg LowWords(typename V::Reg first, typename V::Reg second) {
  return V::template Blend16<0xAA>(first, V::ShiftLeft32(second, 16));
}

template <class V>
typename V::Reg SumAcross(const ColumnSums<V>& columns, const WeightPairs<V>& across,
                          uint8_t /*sample*/) {
  auto sum = V::Set32(1 << (kAcrossShift - 1));
#pragma GCC unroll 3
  for (int i = 0; i < kPairs; ++i) {
    // Both shifted right by kDownShift, and the second one brought to the upper half.
    const auto pair =
        V::template Blend16<0xAA>(V::ShiftRightU32(columns.of[2 * i], kDownShift),
                                  V::ShiftLeft32(columns.of[2 * i + 1], 16 - kDownShift));
    sum = V::Add32(sum, V::MulAdd16(pair, across.pairs[i]));
  }
  return V::ShiftRight32(sum, kAcrossShift);
}

template <class V>
typename V::Reg SumAcross(const ColumnSums<V>& columns, const WeightPairs<V>& across,
                          uint16_t /*sample*/) {
  const auto mask = V::Set32((1 << kLowBits) - 1);
  auto high = V::Zero();
  auto low = V::Zero();
#pragma GCC unroll 3
  for (int i = 0; i < kPairs; ++i) {
    const auto first = V::ShiftRight32(columns.of[2 * i], kDownShift);
    const auto second = V::ShiftRight32(columns.of[2 * i + 1], kDownShift);
    const auto highs =
        LowWords<V>(V::ShiftRight32(first, kLowBits), V::ShiftRight32(second, kLowBits));
    const auto lows = LowWords<V>(V::And(first, mask), V::And(second, mask));
    high = V::Add32(high, V::MulAdd16(highs, across.pairs[i]));
    low = V::Add32(low, V::MulAdd16(lows, across.pairs[i]));
  }
  return JoinHalves<V>(high, low);
}

// Four pixels a lane, their channels as 32-bit numbers, go to memory; lane k from pixel
// k * kPixelsPerLane on.
template <class V, int kChannels>
void StorePixels(const typename V::Reg (&pixels)[kPixelsPerLane], int32_t /*max_sample*/,
                 uint8_t* out) {
  auto bytes = V::PackU16(V::PackS32(pixels[0], pixels[1]), V::PackS32(pixels[2], pixels[3]));
  if constexpr (kChannels == 3) {
    static constexpr int8_t kOrder[kLaneBytes] = {0,  1,  2,  4,  5,  6,  8,  9,
                                                  10, 12, 13, 14, -1, -1, -1, -1};
    bytes = V::Shuffle8(bytes, V::LoadToAllLanes(kOrder));
  }
  for (int lane = 0; lane < V::kLanes; ++lane, out += kPixelsPerLane * kChannels) {
    if constexpr (kChannels == 3) {
      Sse::StoreFirst<12>(out, V::Lane(bytes, lane));
    } else {
      V::StoreLane(out, bytes, lane);
    }
  }
}

template <class V, int kChannels>
void StorePixels(const typename V::Reg (&pixels)[kPixelsPerLane], int32_t max_sample,
                 uint16_t* out) {
  const auto max = V::Set16(max_sample);
  for (int half = 0; half < 2; ++half) {
    auto words = V::MinU16(V::PackU32(pixels[2 * half], pixels[2 * half + 1]), max);
    if constexpr (kChannels == 3) {
      static constexpr int8_t kOrder[kLaneBytes] = {0,  1,  2,  3,  4,  5,  8,  9,
                                                    10, 11, 12, 13, -1, -1, -1, -1};
      words = V::Shuffle8(words, V::LoadToAllLanes(kOrder));
    }
    for (int lane = 0; lane < V::kLanes; ++lane) {
      uint16_t* const to = out + (lane * kPixelsPerLane + 2 * half) * kChannels;
      if constexpr (kChannels == 3) {
        Sse::StoreFirst<12>(to, V::Lane(words, lane));
      } else {
        V::StoreLane(to, words, lane);
      }
    }
  }
}

template <class V, class Sample, int kChannels>
struct Pixels {
  static void Step(const TrimmingRow& row, std::ptrdiff_t i, int32_t max_sample, Sample* out) {
    constexpr int kPixelBytes = kChannels * static_cast<int>(sizeof(Sample));
    typename V::Reg pixels[kPixelsPerLane];
    for (int k = 0; k < kPixelsPerLane; ++k) {
      const Place a = PlaceOf<kPixelBytes>(row, i + k);
      const Place b = V::kLanes == 1 ? a : PlaceOf<kPixelBytes>(row, i + k + kPixelsPerLane);
      const ColumnSums<V> columns =
          SumColumns<V, kChannels>(a, b, row.stride, WeightPairs<V>(a.down, b.down), Sample{});
      pixels[k] = SumAcross<V>(columns, WeightPairs<V>(a.across, b.across), Sample{});
    }
    StorePixels<V, kChannels>(pixels, max_sample, out);
  }
};

// Grey: the taps of a row stand side by side already. The seventh and eighth weigh 0.
template <class V>
struct GreySums {
  typename V::Reg near = V::Set32(1 << (kDownShift - 1));  // four taps
  typename V::Reg far = V::Set32(1 << (kDownShift - 1));

  void Add(typename V::Reg near_rows, typename V::Reg far_rows, typename V::Reg weights) {
    near = V::Add32(near, V::MulAdd16(near_rows, weights));
    far = V::Add32(far, V::MulAdd16(far_rows, weights));
  }
};

template <class V>
GreySums<V> SumGreyColumns(const Place& a, const Place& b, std::ptrdiff_t stride,
                           uint8_t /*sample*/) {
  const WeightPairs<V> down(a.down, b.down);
  GreySums<V> sums;
#pragma GCC unroll 3
  for (int n = 0; n < kPairs; ++n) {
    const std::ptrdiff_t at = 2 * n * stride;
    const auto rows =
        V::template UnpackLow<8>(V::LoadLanes(a.first + at, b.first + at),
                                 V::LoadLanes(a.first + at + stride, b.first + at + stride));
    sums.Add(V::template UnpackLow<8>(rows, V::Zero()), V::template UnpackHigh<8>(rows, V::Zero()),
             down.pairs[n]);
  }
  return sums;
}

template <class V>
GreySums<V> SumGreyColumns(const Place& a, const Place& b, std::ptrdiff_t stride,
                           uint16_t /*sample*/) {
  const WeightPairs<V> down(a.down, b.down);
  GreySums<V> sums;
#pragma GCC unroll 3
  for (int n = 0; n < kPairs; ++n) {
    const std::ptrdiff_t at = 2 * n * stride;
    const auto upper = V::FlipSign16(V::LoadLanes(a.first + at, b.first + at));
    const auto lower = V::FlipSign16(V::LoadLanes(a.first + at + stride, b.first + at + stride));
    sums.Add(V::template UnpackLow<16>(upper, lower), V::template UnpackHigh<16>(upper, lower),
             down.pairs[n]);
  }
  return sums;
}

// Sums across each lane: four registers make one.
template <class V>
typename V::Reg AddLanes(const typename V::Reg (&sums)[kPixelsPerLane]) {
  return V::AddAcross32(V::AddAcross32(sums[0], sums[1]), V::AddAcross32(sums[2], sums[3]));
}

template <class V, class Sample>
struct Pixels<V, Sample, 1> {
  using Reg = typename V::Reg;

  static void Step(const TrimmingRow& row, std::ptrdiff_t i, int32_t max_sample, Sample* out) {
    Reg high[kPixelsPerLane];
    Reg low[kPixelsPerLane];
    for (int k = 0; k < kPixelsPerLane; ++k) {
      const Place a = PlaceOf<sizeof(Sample)>(row, i + k);
      const Place b = V::kLanes == 1 ? a : PlaceOf<sizeof(Sample)>(row, i + k + kPixelsPerLane);
      const GreySums<V> sums = SumGreyColumns<V>(a, b, row.stride, Sample{});
      const Reg across = V::LoadLanes(a.across, b.across);
      const Reg near = V::ShiftRight32(sums.near, kDownShift);
      const Reg far = V::ShiftRight32(sums.far, kDownShift);
      if constexpr (sizeof(Sample) == 1) {
        low[k] = V::MulAdd16(V::PackS32(near, far), across);
      } else {
        const Reg mask = V::Set32((1 << kLowBits) - 1);
        high[k] = V::MulAdd16(
            V::PackS32(V::ShiftRight32(near, kLowBits), V::ShiftRight32(far, kLowBits)), across);
        low[k] = V::MulAdd16(V::PackS32(V::And(near, mask), V::And(far, mask)), across);
      }
    }
    if constexpr (sizeof(Sample) == 1) {
      const Reg sums = V::Add32(AddLanes<V>(low), V::Set32(1 << (kAcrossShift - 1)));
      const Reg words = V::PackS32(V::ShiftRight32(sums, kAcrossShift), V::Zero());
      const Reg bytes = V::PackU16(words, V::Zero());
      for (int lane = 0; lane < V::kLanes; ++lane) {
        Sse::StoreFirst<4>(out + lane * kPixelsPerLane, V::Lane(bytes, lane));
      }
    } else {
      const Reg sums = JoinHalves<V>(AddLanes<V>(high), AddLanes<V>(low));
      const Reg words = V::MinU16(V::PackU32(sums, V::Zero()), V::Set16(max_sample));
      for (int lane = 0; lane < V::kLanes; ++lane) {
        Sse::StoreFirst<8>(out + lane * kPixelsPerLane, V::Lane(words, lane));
      }
    }
  }
};

template <class V, class Sample, int kChannels>
void Trim(const TrimmingRow& row, std::ptrdiff_t count, int32_t max_sample, uint8_t* destination) {
  constexpr std::ptrdiff_t kStep = V::kLanes * kPixelsPerLane;
  auto* const out = reinterpret_cast<Sample*>(destination);
  std::ptrdiff_t i = 0;
  for (; i + kStep <= count; i += kStep) {
    Pixels<V, Sample, kChannels>::Step(row, i, max_sample, out + i * kChannels);
  }
  if (i == count) return;
  TrimmingRow rest = row;
  rest.u += i * row.u_step;
  rest.v += i * row.v_step;
  NarrowerThan<V>(kTrimmingPlain, kTrimmingSse)
      .Of(kChannels, 8 * sizeof(Sample))(rest, count - i, max_sample,
                                         reinterpret_cast<uint8_t*>(out + i * kChannels));
}

template <class V>
constexpr TrimmingKernels kTrimmingOf = {
    {Trim<V, uint8_t, 1>, nullptr, Trim<V, uint8_t, 3>, Trim<V, uint8_t, 4>},
    {Trim<V, uint16_t, 1>, nullptr, Trim<V, uint16_t, 3>, Trim<V, uint16_t, 4>}};

}  // namespace
}  // namespace ovra
