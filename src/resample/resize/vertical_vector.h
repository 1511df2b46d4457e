// SPDX-License-Identifier: MIT
// The vector forms of the vertical pass, for registers of any width.
//
// Sums do not depend on their order, so that rows are taken as they stand in memory: first those
// from the oldest slot to the end of the ring, then those before it.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/vector_ops.h"
#include "resample/resize/kernels.h"

namespace ovra {
namespace {

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
// 32-bit ones are multiplied row by row.
template <class Sample>
constexpr int32_t kRowsOfAFactor = sizeof(Sample) == 1 ? 2 : 1;

// What row k of a part, or rows k and k + 1, are multiplied by.
template <class V, class Sample>
typename V::Reg FactorOf(const int16_t* weights, int32_t k, int32_t count) {
  if constexpr (kRowsOfAFactor<Sample> == 1) return V::Set32(weights[k]);
  return V::Set32(PackedPair(weights[k], k + 1 < count ? weights[k + 1] : 0));
}

// Adds `count` rows from sample i on; factor(k) is FactorOf of row k.
template <class V, class Factor>
[[gnu::always_inline]] inline void AddRows(const RingPart<uint8_t>& part, int32_t count,
                                           std::ptrdiff_t i, const Factor& factor,
                                           VerticalSums<V>* block) {
  using Reg = typename V::Reg;
  constexpr std::ptrdiff_t kRegSamples = V::kBytes / sizeof(int16_t);
  const int16_t* row = part.rows + i;
  for (int32_t k = 0; k < count; k += 2, row += 2 * part.row_spacing) {
    const Reg weights = factor(k);
    for (int half = 0; half < 2; ++half) {
      const Reg a = V::Load(row + half * kRegSamples);
      const Reg b =
          k + 1 < count ? V::Load(row + half * kRegSamples + part.row_spacing) : V::Zero();
      Reg* const sums = block->sums + 2 * half;
      sums[0] = V::Add32(sums[0], V::MulAdd16(V::template UnpackLow<16>(a, b), weights));
      sums[1] = V::Add32(sums[1], V::MulAdd16(V::template UnpackHigh<16>(a, b), weights));
    }
  }
}

template <class V, class Factor>
[[gnu::always_inline]] inline void AddRows(const RingPart<uint16_t>& part, int32_t count,
                                           std::ptrdiff_t i, const Factor& factor,
                                           VerticalSums<V>* block) {
  constexpr std::ptrdiff_t kRegSamples = V::kBytes / sizeof(int32_t);
  const int32_t* row = part.rows + i;
  for (int32_t k = 0; k < count; ++k, row += part.row_spacing) {
    const typename V::Reg weight = factor(k);
    for (int reg = 0; reg < VerticalSums<V>::kRegs; ++reg) {
      block->sums[reg] =
          V::Add32(block->sums[reg], V::MulLow32(V::Load(row + reg * kRegSamples), weight));
    }
  }
}

template <class V>
void StoreBlock(const VerticalSums<V>& block, int32_t, uint8_t* destination) {
  V::Store(destination, V::InOrder(V::PackU16(V::PackS32(block.Shifted(0), block.Shifted(1)),
                                              V::PackS32(block.Shifted(2), block.Shifted(3)))));
}

template <class V>
void StoreBlock(const VerticalSums<V>& block, int32_t max_sample, uint16_t* destination) {
  constexpr std::ptrdiff_t kRegSamples = V::kBytes / sizeof(uint16_t);
  for (int half = 0; half < 2; ++half) {
    const auto packed = V::PackU32(block.Shifted(2 * half), block.Shifted(2 * half + 1));
    V::Store(destination + half * kRegSamples, V::InOrder(V::MinU16(packed, V::Set16(max_sample))));
  }
}

// Combines the rows of a ring in blocks of four registers of sums. Few taps: the weights in the order
// of the slots make one part of all rows, and stay in registers.
template <class V, class Sample, int kTaps>
class BlockCombiner {
 public:
  BlockCombiner(const RingPart<Sample> (&parts)[2], int32_t max_sample)
      : parts_(parts), max_sample_(max_sample) {
    for (int32_t k = 0; k < kTaps; k += kRows) {
      factors_[k / kRows] = FactorOf<V, Sample>(parts[0].weights, k, kTaps);
    }
  }

  [[gnu::always_inline]] void Combine(std::ptrdiff_t i, Sample* destination) const {
    VerticalSums<V> block;
    if constexpr (kTaps != 0) {
      AddRows<V>(
          parts_[0], kTaps, i, [this](int32_t k) { return factors_[k / kRows]; }, &block);
    } else {
      for (const RingPart<Sample>& part : parts_) {
        AddRows<V>(
            part, part.count, i,
            [&part](int32_t k) { return FactorOf<V, Sample>(part.weights, k, part.count); },
            &block);
      }
    }
    StoreBlock<V>(block, max_sample_, destination + i);
  }

 private:
  static constexpr int32_t kRows = kRowsOfAFactor<Sample>;

  const RingPart<Sample> (&parts_)[2];
  int32_t max_sample_;
  typename V::Reg factors_[kTaps / kRows + 1];
};

// kTaps 0 stands for any number of taps.
template <class V, class Sample, int kTaps>
void VerticalRowVector(const VerticalPass<Sample>& pass, Sample* destination) {
  constexpr std::ptrdiff_t kBlock = VerticalSums<V>::kRegs * V::kBytes / 4;
  const int32_t newer = pass.oldest;  // slots before the oldest one
  const int32_t older = pass.taps - newer;
  RingPart<Sample> parts[2] = {
      {pass.ring + newer * pass.row_spacing, pass.row_spacing, older, pass.weights},
      {pass.ring, pass.row_spacing, newer, pass.weights + older},
  };
  int16_t slot_weights[kTaps != 0 ? kTaps : 1];
  if constexpr (kTaps != 0) {
    for (int32_t slot = 0; slot < kTaps; ++slot) {
      slot_weights[slot] = pass.weights[slot < newer ? slot + older : slot - newer];
    }
    parts[0] = {pass.ring, pass.row_spacing, kTaps, slot_weights};
    parts[1].count = 0;
  }
  const BlockCombiner<V, Sample, kTaps> combiner(parts, pass.max_sample);
  const auto block = [&](std::ptrdiff_t i) { combiner.Combine(i, destination); };
  if (CoverRow(pass.samples, kBlock, block)) return;
  // Of a narrow row less than a block is wanted; the slots of the ring hold one.
  Sample narrow[kBlock];
  combiner.Combine(0, narrow);
  for (std::ptrdiff_t i = 0; i < pass.samples; ++i) destination[i] = narrow[i];
}

}  // namespace
}  // namespace ovra
