// SPDX-License-Identifier: MIT
// The vector forms of the horizontal pass, for registers of any width.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/vector_ops.h"
#include "resample/resize/kernels.h"
#include "resample/resize/next_row.h"

namespace ovra {
namespace {

constexpr int kLaneBytes = 16;
constexpr int kWeightsPerLane = 8;

// 16-bit samples are multiplied as signed numbers, less 2^15; the sum of the weights makes up for
// it.
constexpr int kSignOffsetBits = 15;

// What the sums of a register's columns start from, with the weight sums of the same columns.
template <class V, class Sample>
typename V::Reg StartSums(typename V::Reg weight_sums) {
  const typename V::Reg rounding = V::Set32(kHorizontalRounding);
  if constexpr (sizeof(Sample) == 1) return rounding;
  return V::Add32(rounding, V::ShiftLeft32(weight_sums, kSignOffsetBits));
}

// Drops the fractional bits, keeping the low half of what remains as a signed number: a pack that
// saturates then leaves it as it is.
template <class V>
typename V::Reg LowHalves(typename V::Reg sums) {
  return V::ShiftRight32(V::ShiftLeft32(sums, 16 - kHorizontalShift), 16);
}

// --- Horizontal pass, three or four channels ---
//
// A lane makes one column, with a channel in each of its 32-bit parts. A shuffle brings the samples
// of one channel of two neighbouring pixels side by side, to be multiplied by a pair of weights and
// added. A step takes two registers: columns 0 and 2 of it, and 1 and 3.

template <class Sample, int kChannels, int kPairs>
struct PixelLoads {
  static constexpr int kPairBytes = 2 * kChannels * static_cast<int>(sizeof(Sample));
  static constexpr int kPairsPerLoad = kLaneBytes / kPairBytes;
  static constexpr int kLoads = (kPairs + kPairsPerLoad - 1) / kPairsPerLoad;
  static constexpr int kLoadStep = kPairBytes * kPairsPerLoad;
  static constexpr int kPixelsRead =
      (kLoadStep * (kLoads - 1) + kLaneBytes + kPairBytes / 2 - 1) / (kPairBytes / 2);
};

// The shuffle that takes pair number `pair` of a load apart.
template <class Sample, int kChannels>
struct PairShuffle {
  alignas(kLaneBytes) int8_t bytes[kLaneBytes] = {};

  constexpr explicit PairShuffle(int pair) {
    constexpr int8_t kZero = -1;
    constexpr int kSampleBytes = sizeof(Sample);
    for (int i = 0; i < kLaneBytes; ++i) {
      const int channel = i / 4;
      const int pixel = 2 * pair + i % 4 / 2;
      const int byte = i % 2;
      const bool used = channel < kChannels && byte < kSampleBytes;
      bytes[i] =
          used ? static_cast<int8_t>((pixel * kChannels + channel) * kSampleBytes + byte) : kZero;
    }
  }
};

template <class Sample, int kChannels>
constexpr PairShuffle<Sample, kChannels> kPairShuffles[2] = {PairShuffle<Sample, kChannels>(0),
                                                             PairShuffle<Sample, kChannels>(1)};

// 32-bit part number `part` of each lane in all its parts.
template <class V>
typename V::Reg SpreadPart(typename V::Reg a, int part) {
  switch (part) {
    case 0:
      return V::template Spread32<0>(a);
    case 1:
      return V::template Spread32<1>(a);
    case 2:
      return V::template Spread32<2>(a);
    default:
      return V::template Spread32<3>(a);
  }
}

// Three words of each four, side by side.
template <class V>
typename V::Reg DropEveryFourthWord(typename V::Reg words) {
  static constexpr int8_t kOrder[kLaneBytes] = {0,  1,  2,  3,  4,  5,  8,  9,
                                                10, 11, 12, 13, -1, -1, -1, -1};
  return V::Shuffle8(words, V::LoadToAllLanes(kOrder));
}

// Eight samples a lane as signed words, which 16-bit samples become by losing 2^15.
template <class V>
typename V::Reg EightSamples(const uint8_t* first, const uint8_t* second) {
  return V::LoadLanesU8As16(first, second);
}
template <class V>
typename V::Reg EightSamples(const uint16_t* first, const uint16_t* second) {
  return V::FlipSign16(V::LoadLanes(first, second));
}

// Four samples from each of two places a lane.
template <class V>
typename V::Reg FourSamplesOfTwo(const uint8_t* first_a, const uint8_t* first_b,
                                 const uint8_t* second_a, const uint8_t* second_b) {
  return V::LoadQuartersU8As16(first_a, first_b, second_a, second_b);
}
template <class V>
typename V::Reg FourSamplesOfTwo(const uint16_t* first_a, const uint16_t* first_b,
                                 const uint16_t* second_a, const uint16_t* second_b) {
  return V::FlipSign16(V::LoadHalves(first_a, first_b, second_a, second_b));
}

template <class V, class Sample, int kChannels, int kPairs>
class PixelColumns {
 public:
  using Reg = typename V::Reg;
  using Loads = PixelLoads<Sample, kChannels, kPairs>;
  static constexpr int kStep = 2 * V::kLanes;

  static_assert(Loads::kPairsPerLoad <= 2);

  explicit PixelColumns(const HorizontalPass& pass) : pass_(pass) {
    for (int pair = 0; pair < Loads::kPairsPerLoad; ++pair) {
      shuffles_[pair] = V::LoadToAllLanes(kPairShuffles<Sample, kChannels>[pair].bytes);
    }
  }

  // The columns from `column` on; after them one column more must exist, because three channels are
  // written as four.
  void Step(int32_t column, const Sample* source, Intermediate<Sample>* out) const {
    const Reg even = Sums<0>(column, source);
    const Reg odd = Sums<1>(column, source);
    if constexpr (sizeof(Sample) == 1) {
      Reg words = V::PackS32(LowHalves<V>(even), LowHalves<V>(odd));
      if constexpr (kChannels == 3) words = DropEveryFourthWord<V>(words);
      for (int lane = 0; lane < V::kLanes; ++lane) {
        V::StoreLane(out + 2 * lane * kChannels, words, lane);
      }
    } else {
      for (int lane = 0; lane < V::kLanes; ++lane) {
        Intermediate<Sample>* const pixels = out + 2 * lane * kChannels;
        V::StoreLane(pixels, V::ShiftRight32(even, kHorizontalShift), lane);
        V::StoreLane(pixels + kChannels, V::ShiftRight32(odd, kHorizontalShift), lane);
      }
    }
  }

 private:
  // From a lane's column to the next lane's. With one lane there is none, and nothing is read.
  static constexpr int kNextLane = V::kLanes == 1 ? 0 : 2;

  template <int kOdd>
  Reg Sums(int32_t column, const Sample* source) const {
    const TapSet* const sets = pass_.sets + column + kOdd;
    const uint8_t* const pixels = FirstPixel(sets[0], source);
    const uint8_t* const next_pixels = FirstPixel(sets[kNextLane], source);
    Reg sums = StartSums<V, Sample>(WeightSums(sets));
    for (int load = 0; load < Loads::kLoads; ++load) {
      Reg loaded =
          V::LoadLanes(pixels + load * Loads::kLoadStep, next_pixels + load * Loads::kLoadStep);
      if constexpr (sizeof(Sample) == 2) loaded = V::FlipSign16(loaded);
      for (int k = 0; k < Loads::kPairsPerLoad; ++k) {
        const int pair = load * Loads::kPairsPerLoad + k;
        if (pair >= kPairs) break;
        sums = V::Add32(
            sums, V::MulAdd16(V::Shuffle8(loaded, shuffles_[k]), WeightPair<kOdd>(column, pair)));
      }
    }
    return sums;
  }

  // The weight sum of each lane's column in all its parts.
  static Reg WeightSums(const TapSet* sets) {
    return V::SetLanes(Sse::Set32(static_cast<int32_t>(sets[0].weight_sum)),
                       Sse::Set32(static_cast<int32_t>(sets[kNextLane].weight_sum)));
  }

  const uint8_t* FirstPixel(const TapSet& set, const Sample* source) const {
    return reinterpret_cast<const uint8_t*>(
        source + (std::ptrdiff_t{set.centre} - pass_.taps_before_centre) * kChannels);
  }

  // One pair of weights in all parts of each lane. Sets of four weights stand two in a lane, for
  // the even and the odd column.
  template <int kOdd>
  Reg WeightPair(int32_t column, int pair) const {
    if constexpr (kPairs == 2) {
      return SpreadPart<V>(V::Load(pass_.weights + std::ptrdiff_t{column} * 4), 2 * kOdd + pair);
    } else {
      const int16_t* const weights = pass_.weights +
                                     std::ptrdiff_t{column + kOdd} * pass_.weight_stride +
                                     pair / 4 * kWeightsPerLane;
      return SpreadPart<V>(
          V::LoadLanes(weights, weights + std::ptrdiff_t{kNextLane} * pass_.weight_stride),
          pair % 4);
    }
  }

  const HorizontalPass& pass_;
  Reg shuffles_[Loads::kPairsPerLoad];
};

// --- Horizontal pass, one channel ---
//
// The samples under the taps of a column stand side by side already: they are multiplied by its
// weights, and the products added across. A step makes four neighbouring columns a lane.

template <class V, class Sample, int kPairs>
class GreyColumns {
 public:
  using Reg = typename V::Reg;
  static constexpr int kStep = 4 * V::kLanes;
  static constexpr int kGroups = (kPairs + 3) / 4;  // of eight taps
  static constexpr int kPixelsRead = kPairs == 2 ? 4 : 8 * kGroups;

  explicit GreyColumns(const HorizontalPass& pass) : pass_(pass) {}

  void Step(int32_t column, const Sample* source, Intermediate<Sample>* out) const {
    Reg sums = {};
    if constexpr (kPairs == 2) {
      sums = V::AddAcross32(TwoColumns(column, source), TwoColumns(column + 2, source));
    } else {
      sums = V::AddAcross32(
          V::AddAcross32(OneColumn(column, source), OneColumn(column + 1, source)),
          V::AddAcross32(OneColumn(column + 2, source), OneColumn(column + 3, source)));
    }
    const TapSet* const sets = pass_.sets + column;
    sums = V::Add32(sums,
                    StartSums<V, Sample>(V::Odds32(V::LoadLanes(sets, sets + kNextLane),
                                                   V::LoadLanes(sets + 2, sets + 2 + kNextLane))));
    if constexpr (sizeof(Sample) == 1) {
      V::Store32AsS16(out, LowHalves<V>(sums));
    } else {
      V::Store(out, V::ShiftRight32(sums, kHorizontalShift));
    }
  }

 private:
  static constexpr int kNextLane = V::kLanes == 1 ? 0 : 4;

  Reg TwoColumns(int32_t column, const Sample* source) const {
    const int16_t* const weights = pass_.weights + std::ptrdiff_t{column} * 4;
    const Reg samples = FourSamplesOfTwo<V>(
        FirstSample(column, source), FirstSample(column + 1, source),
        FirstSample(column + kNextLane, source), FirstSample(column + kNextLane + 1, source));
    return V::MulAdd16(samples, V::LoadLanes(weights, weights + kNextLane * 4));
  }

  Reg OneColumn(int32_t column, const Sample* source) const {
    const std::ptrdiff_t stride = pass_.weight_stride;
    const int16_t* const weights = pass_.weights + column * stride;
    const Sample* const samples = FirstSample(column, source);
    const Sample* const next_samples = FirstSample(column + kNextLane, source);
    Reg sums = V::Set32(0);
    for (int group = 0; group < kGroups; ++group) {
      const int first = group * kWeightsPerLane;
      sums = V::Add32(
          sums, V::MulAdd16(EightSamples<V>(samples + first, next_samples + first),
                            V::LoadLanes(weights + first, weights + kNextLane * stride + first)));
    }
    return sums;
  }

  const Sample* FirstSample(int32_t column, const Sample* source) const {
    return source + (std::ptrdiff_t{pass_.sets[column].centre} - pass_.taps_before_centre);
  }

  const HorizontalPass& pass_;
};

template <class Columns, class Sample, int kChannels>
void HorizontalRowVector(const HorizontalPass& pass, const Sample* source,
                         Intermediate<Sample>* out) {
  const Columns columns(pass);
  const int32_t last = pass.destination_width - 1;
  const int32_t end = pass.inner_end < last ? pass.inner_end : last;
  ClampedColumns<Sample>* const clamped =
      kResizePlain.Of<Sample>().clamped[kChannels == 1   ? kOneChannel
                                        : kChannels == 3 ? kThreeChannels
                                                         : kFourChannels];
  clamped(pass, 0, pass.inner_begin, source, out);
  int32_t column = pass.inner_begin;
  const int32_t steps_end = end - Columns::kStep;
  const auto first_byte = [&](int32_t i) {
    return std::ptrdiff_t{pass.sets[i].centre} * kChannels * std::ptrdiff_t{sizeof(Sample)};
  };
  NextRow next_row(source, pass.source_stride, column <= steps_end ? first_byte(column) : 0);
  for (; column <= steps_end; column += Columns::kStep) {
    next_row.AskUpToByte(first_byte(column));
    columns.Step(column, source, out + std::ptrdiff_t{column} * kChannels);
  }
  clamped(pass, column, pass.destination_width, source, out);
}

}  // namespace
}  // namespace ovra
