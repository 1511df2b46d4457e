// SPDX-License-Identifier: MIT
// The vector forms of both passes, written once for all widths. A kernel file that includes this
// brings a class V: operations on a register of V::kLanes lanes of 128 bits each, in which
// shuffles, packs and horizontal sums stay.
#pragma once

#include <cstddef>
#include <cstdint>

#include "resample/resize_kernels.h"

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
template <class V, class Sample, int kChannels>
typename V::Reg PairShuffle(int pair) {
  constexpr int8_t kZero = -1;
  constexpr int kSampleBytes = sizeof(Sample);
  int8_t lane[kLaneBytes];
  for (int i = 0; i < kLaneBytes; ++i) {
    const int channel = i / 4;
    const int pixel = 2 * pair + i % 4 / 2;
    const int byte = i % 2;
    const bool used = channel < kChannels && byte < kSampleBytes;
    lane[i] =
        used ? static_cast<int8_t>((pixel * kChannels + channel) * kSampleBytes + byte) : kZero;
  }
  return V::LoadLanes(lane, lane);
}

template <class V, class Sample, int kChannels, int kPairs>
class PixelColumns {
 public:
  using Reg = typename V::Reg;
  using Loads = PixelLoads<Sample, kChannels, kPairs>;
  static constexpr int kStep = 2 * V::kLanes;

  explicit PixelColumns(const HorizontalPass& pass) : pass_(pass) {
    for (int pair = 0; pair < Loads::kPairsPerLoad; ++pair) {
      shuffles_[pair] = PairShuffle<V, Sample, kChannels>(pair);
    }
  }

  // The columns from `column` on; after them one column more must exist, because three channels are
  // written as four.
  void Step(int32_t column, const Sample* source, Intermediate<Sample>* out) const {
    const Reg even = Sums<0>(column, source);
    const Reg odd = Sums<1>(column, source);
    if constexpr (sizeof(Sample) == 1) {
      Reg words = V::PackSigned32(LowHalves<V>(even), LowHalves<V>(odd));
      if constexpr (kChannels == 3) words = V::DropWords3And7(words);
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
    Reg sums =
        StartSums<V, Sample>(V::BroadcastToLanes(&sets[0].weight_sum, &sets[kNextLane].weight_sum));
    for (int load = 0; load < Loads::kLoads; ++load) {
      Reg loaded =
          V::LoadLanes(pixels + load * Loads::kLoadStep, next_pixels + load * Loads::kLoadStep);
      if constexpr (sizeof(Sample) == 2) loaded = V::FlipSign16(loaded);
      for (int k = 0; k < Loads::kPairsPerLoad; ++k) {
        const int pair = load * Loads::kPairsPerLoad + k;
        if (pair >= kPairs) break;
        sums = V::Add32(sums, V::MultiplyAdd16(V::ShuffleBytes(loaded, shuffles_[k]),
                                               WeightPair<kOdd>(column, pair)));
      }
    }
    return sums;
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
      return V::BroadcastPart(V::Load(pass_.weights + std::ptrdiff_t{column} * 4), 2 * kOdd + pair);
    } else {
      const int16_t* const weights = pass_.weights +
                                     std::ptrdiff_t{column + kOdd} * pass_.weight_stride +
                                     pair / 4 * kWeightsPerLane;
      return V::BroadcastPart(
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
    sums = V::Add32(
        sums, StartSums<V, Sample>(V::OddParts(V::LoadLanes(sets, sets + kNextLane),
                                               V::LoadLanes(sets + 2, sets + 2 + kNextLane))));
    if constexpr (sizeof(Sample) == 1) {
      V::StoreLowWords(out, LowHalves<V>(sums));
    } else {
      V::Store(out, V::ShiftRight32(sums, kHorizontalShift));
    }
  }

 private:
  static constexpr int kNextLane = V::kLanes == 1 ? 0 : 4;

  Reg TwoColumns(int32_t column, const Sample* source) const {
    const int16_t* const weights = pass_.weights + std::ptrdiff_t{column} * 4;
    const Reg samples = V::FourSamplesOfTwo(
        FirstSample(column, source), FirstSample(column + 1, source),
        FirstSample(column + kNextLane, source), FirstSample(column + kNextLane + 1, source));
    return V::MultiplyAdd16(samples, V::LoadLanes(weights, weights + kNextLane * 4));
  }

  Reg OneColumn(int32_t column, const Sample* source) const {
    const std::ptrdiff_t stride = pass_.weight_stride;
    const int16_t* const weights = pass_.weights + column * stride;
    const Sample* const samples = FirstSample(column, source);
    const Sample* const next_samples = FirstSample(column + kNextLane, source);
    Reg sums = V::Set32(0);
    for (int group = 0; group < kGroups; ++group) {
      const int first = group * kWeightsPerLane;
      sums = V::Add32(sums, V::MultiplyAdd16(V::EightSamples(samples + first, next_samples + first),
                                             V::LoadLanes(weights + first,
                                                          weights + kNextLane * stride + first)));
    }
    return sums;
  }

  const Sample* FirstSample(int32_t column, const Sample* source) const {
    return source + (std::ptrdiff_t{pass_.sets[column].centre} - pass_.taps_before_centre);
  }

  const HorizontalPass& pass_;
};

template <class Columns, class Sample, int kChannels>
void HorizontalRowSimd(const HorizontalPass& pass, const Sample* source,
                       Intermediate<Sample>* out) {
  const Columns columns(pass);
  const int32_t last = pass.destination_width - 1;
  const int32_t end = pass.inner_end < last ? pass.inner_end : last;
  HorizontalColumnsClamped(pass, 0, pass.inner_begin, source, out);
  int32_t column = pass.inner_begin;
  for (; column + Columns::kStep <= end; column += Columns::kStep) {
    columns.Step(column, source, out + std::ptrdiff_t{column} * kChannels);
  }
  HorizontalColumnsClamped(pass, column, pass.destination_width, source, out);
}

template <class V, class Sample, int kPairs>
HorizontalKernel<Sample> HorizontalOfPairs(int32_t channels) {
  if (channels == 1) {
    using Columns = GreyColumns<V, Sample, kPairs>;
    return {HorizontalRowSimd<Columns, Sample, 1>, Columns::kPixelsRead};
  }
  if (channels == 3) {
    using Columns = PixelColumns<V, Sample, 3, kPairs>;
    return {HorizontalRowSimd<Columns, Sample, 3>, Columns::Loads::kPixelsRead};
  }
  using Columns = PixelColumns<V, Sample, 4, kPairs>;
  return {HorizontalRowSimd<Columns, Sample, 4>, Columns::Loads::kPixelsRead};
}

// Unrolled forms for 4 to 8 and 16 taps; an odd count takes one tap more, of weight 0.
template <class V, class Sample>
HorizontalKernel<Sample> HorizontalSimd(int32_t taps, int32_t channels) {
  switch (taps) {
    case 4:
      return HorizontalOfPairs<V, Sample, 2>(channels);
    case 5:
    case 6:
      return HorizontalOfPairs<V, Sample, 3>(channels);
    case 7:
    case 8:
      return HorizontalOfPairs<V, Sample, 4>(channels);
    case 16:
      return HorizontalOfPairs<V, Sample, 8>(channels);
    default:
      return {nullptr, 0};
  }
}

// --- Vertical pass ---
//
// Sums do not depend on their order, so that rows are taken as they stand in memory: first those
// from the oldest slot to the end of the ring, then those before it.

template <class Sample>
struct RingPart {
  const Intermediate<Sample>* rows;
  std::ptrdiff_t row_spacing;
  int32_t count;
  const int16_t* weights;
};

template <class V>
struct VerticalSums {
  static constexpr int kRegs = 4;
  typename V::Reg sums[kRegs];

  VerticalSums() {
    for (auto& sum : sums) sum = V::Set32(kVerticalRounding);
  }
  typename V::Reg Shifted(int i) const { return V::ShiftRight32(sums[i], kVerticalShift); }
};

// 16-bit intermediates: the rows of a pair are interleaved, to be multiplied by a pair of weights.
template <class V>
void AddRows(const RingPart<uint8_t>& part, int32_t count, std::ptrdiff_t i,
             VerticalSums<V>* block) {
  using Reg = typename V::Reg;
  constexpr int kRegSamples = V::kLanes * kLaneBytes / static_cast<int>(sizeof(int16_t));
  const auto add_pair = [block](int half, Reg a, Reg b, Reg weights) {
    Reg* const sums = block->sums + 2 * half;
    sums[0] = V::Add32(sums[0], V::MultiplyAdd16(V::UnpackLow16(a, b), weights));
    sums[1] = V::Add32(sums[1], V::MultiplyAdd16(V::UnpackHigh16(a, b), weights));
  };
  const int16_t* row = part.rows + i;
  int32_t k = 0;
  for (; k + 1 < count; k += 2) {
    const Reg weights = V::Set16Pair(part.weights[k], part.weights[k + 1]);
    const int16_t* const next = row + part.row_spacing;
    add_pair(0, V::Load(row), V::Load(next), weights);
    add_pair(1, V::Load(row + kRegSamples), V::Load(next + kRegSamples), weights);
    row = next + part.row_spacing;
  }
  if (k < count) {
    const Reg weights = V::Set16Pair(part.weights[k], 0);
    add_pair(0, V::Load(row), V::Set32(0), weights);
    add_pair(1, V::Load(row + kRegSamples), V::Set32(0), weights);
  }
}

template <class V>
void AddRows(const RingPart<uint16_t>& part, int32_t count, std::ptrdiff_t i,
             VerticalSums<V>* block) {
  constexpr int kRegSamples = V::kLanes * kLaneBytes / static_cast<int>(sizeof(int32_t));
  const int32_t* row = part.rows + i;
  for (int32_t k = 0; k < count; ++k, row += part.row_spacing) {
    const typename V::Reg weight = V::Set32(part.weights[k]);
    for (int reg = 0; reg < VerticalSums<V>::kRegs; ++reg) {
      block->sums[reg] =
          V::Add32(block->sums[reg], V::Multiply32(V::Load(row + reg * kRegSamples), weight));
    }
  }
}

template <class V>
void StoreBlock(const VerticalSums<V>& block, int32_t, uint8_t* destination) {
  V::Store(destination, V::PackUnsigned8(V::PackSigned32(block.Shifted(0), block.Shifted(1)),
                                         V::PackSigned32(block.Shifted(2), block.Shifted(3))));
}

template <class V>
void StoreBlock(const VerticalSums<V>& block, int32_t max_sample, uint16_t* destination) {
  constexpr int kRegSamples = V::kLanes * kLaneBytes / static_cast<int>(sizeof(uint16_t));
  for (int half = 0; half < 2; ++half) {
    V::Store(
        destination + half * kRegSamples,
        V::PackUnsigned16Limited(block.Shifted(2 * half), block.Shifted(2 * half + 1), max_sample));
  }
}

// The samples of one block of four registers of sums.
template <class V, class Sample, int kTaps>
void CombineBlock(const RingPart<Sample> (&parts)[2], std::ptrdiff_t i, int32_t max_sample,
                  Sample* destination) {
  VerticalSums<V> block;
  if constexpr (kTaps != 0) {
    AddRows<V>(parts[0], kTaps, i, &block);
  } else {
    AddRows<V>(parts[0], parts[0].count, i, &block);
    AddRows<V>(parts[1], parts[1].count, i, &block);
  }
  StoreBlock<V>(block, max_sample, destination + i);
}

template <class Sample>
void CombineScalar(const RingPart<Sample> (&parts)[2], std::ptrdiff_t i, int32_t max_sample,
                   Sample* destination) {
  uint32_t sum = kVerticalRounding;
  for (const RingPart<Sample>& part : parts) {
    for (int32_t k = 0; k < part.count; ++k) {
      sum += static_cast<uint32_t>(part.rows[k * part.row_spacing + i]) *
             static_cast<uint32_t>(part.weights[k]);
    }
  }
  const int32_t value = static_cast<int32_t>(sum) >> kVerticalShift;
  destination[i] = static_cast<Sample>(value < 0 ? 0 : value > max_sample ? max_sample : value);
}

// kTaps 0 stands for any number of taps.
template <class V, class Sample, int kTaps>
void VerticalRowSimd(const VerticalPass<Sample>& pass, Sample* destination) {
  constexpr int kBlock = VerticalSums<V>::kRegs * V::kLanes * kLaneBytes / 4;
  const int32_t newer = pass.oldest;  // slots before the oldest one
  const int32_t older = pass.taps - newer;
  RingPart<Sample> parts[2] = {
      {pass.ring + newer * pass.row_spacing, pass.row_spacing, older, pass.weights},
      {pass.ring, pass.row_spacing, newer, pass.weights + older},
  };
  int16_t slot_weights[kTaps != 0 ? kTaps : 1];
  if constexpr (kTaps != 0) {
    // Few taps: the weights in the order of the slots make one part of all rows.
    for (int32_t slot = 0; slot < kTaps; ++slot) {
      slot_weights[slot] = pass.weights[slot < newer ? slot + older : slot - newer];
    }
    parts[0] = {pass.ring, pass.row_spacing, kTaps, slot_weights};
    parts[1].count = 0;
  }
  std::ptrdiff_t i = 0;
  for (; i + kBlock <= pass.samples; i += kBlock) {
    CombineBlock<V, Sample, kTaps>(parts, i, pass.max_sample, destination);
  }
  if (i < pass.samples && pass.samples >= kBlock) {
    // Once more over the last whole block.
    CombineBlock<V, Sample, kTaps>(parts, pass.samples - kBlock, pass.max_sample, destination);
    return;
  }
  for (; i < pass.samples; ++i) CombineScalar(parts, i, pass.max_sample, destination);
}

template <class V, class Sample>
VerticalRow<Sample>* VerticalSimd(int32_t taps) {
  switch (taps) {
    case 4:
      return VerticalRowSimd<V, Sample, 4>;
    case 5:
      return VerticalRowSimd<V, Sample, 5>;
    case 6:
      return VerticalRowSimd<V, Sample, 6>;
    case 7:
      return VerticalRowSimd<V, Sample, 7>;
    case 8:
      return VerticalRowSimd<V, Sample, 8>;
    case 16:
      return VerticalRowSimd<V, Sample, 16>;
    default:
      return VerticalRowSimd<V, Sample, 0>;
  }
}

}  // namespace
}  // namespace ovra
