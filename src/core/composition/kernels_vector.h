// SPDX-License-Identifier: MIT
// The vector forms, for registers of any width. Included by one kernel file a tier.
#pragma once

#include "core/composition/kernels.h"
#include "core/vector_ops.h"

namespace ovra {
namespace {

constexpr std::ptrdiff_t kLaneBytes = 16;

template <class V, WeightOf kWeightOf>
const CompositionKernels::OfWeight& Rest() {
  return NarrowerThan<V>(kCompositionPlain, kCompositionSse).Of(kWeightOf);
}

// Lane k from the 16 bytes at p + k * step.
template <class V>
typename V::Reg LoadLanes(const uint8_t* p, std::ptrdiff_t step) {
  return V::LoadLanes(p, p + step);
}

// The same place of the next row: a row's beginning is more than a processor foresees.
inline void Prefetch(const uint8_t* p, std::ptrdiff_t next) {
  PrefetchAt(p, next, 1);
}

// The first N bytes of each lane, without gaps.
template <class V, std::ptrdiff_t kBytes>
void StoreFirstBytesOfLanes(uint8_t* p, typename V::Reg a) {
  // The bytes behind a lane's are the next lane's, written next.
  for (int lane = 0; lane + 1 < V::kLanes; ++lane) V::StoreLane(p + lane * kBytes, a, lane);
  Sse::StoreFirst<kBytes>(p + (V::kLanes - 1) * kBytes, V::Lane(a, V::kLanes - 1));
}

// (w + 1) * owner + (256 - w) * other = w * (owner - other) + (owner + 256 * other), and the last
// term is what the two samples are side by side in a 16-bit word. The sum fits the word, so the
// product may wrap on the way.
template <class V>
typename V::Reg BlendWords(typename V::Reg weight, typename V::Reg owner_and_other) {
  const auto plus_minus = V::Set16(0xFF01);  // bytes 1 and -1
  const auto difference = V::MulAddU8S8(owner_and_other, plus_minus);
  return V::ShiftRightU16(V::Add16(V::MulLow16(weight, difference), owner_and_other), 8);
}

template <WeightOf kWeightOf, class V>
typename V::Reg Blend(typename V::Reg weight, typename V::Reg source, typename V::Reg destination) {
  const auto owner = kWeightOf == WeightOf::kSource ? source : destination;
  const auto other = kWeightOf == WeightOf::kSource ? destination : source;
  const auto zero = V::Set16(0);
  return V::PackU16(
      BlendWords<V>(V::template UnpackLow<8>(weight, zero), V::template UnpackLow<8>(owner, other)),
      BlendWords<V>(V::template UnpackHigh<8>(weight, zero),
                    V::template UnpackHigh<8>(owner, other)));
}

// Where the bytes of a destination lane come from in the lane of its source pixels.
template <int kChannels>
struct PixelShuffle {
  static constexpr int kPixels = kLaneBytes / (kChannels + 1);  // whole source pixels in a lane
  static constexpr int8_t kZero = -1;

  alignas(kLaneBytes) int8_t color[kLaneBytes] = {};
  alignas(kLaneBytes) int8_t weight[kLaneBytes] = {};

  constexpr PixelShuffle() {
    for (int i = 0; i < kLaneBytes; ++i) {
      const int pixel = i / kChannels;
      const int start = pixel * (kChannels + 1);
      color[i] = pixel < kPixels ? static_cast<int8_t>(start + i % kChannels) : kZero;
      weight[i] = pixel < kPixels ? static_cast<int8_t>(start + kChannels) : kZero;
    }
  }
};

template <int kChannels>
constexpr PixelShuffle<kChannels> kPixelShuffle;

// Two and three channels: each lane takes the source pixels that fit it and writes their bytes in
// the destination. It also loads the bytes behind those, so as many must follow in the row.
template <class V, int kChannels, WeightOf kWeightOf>
struct AlphaBlend {
  static void Run(const uint8_t* source, uint8_t* destination, std::ptrdiff_t pixels,
                  NextRow next) {
    constexpr std::ptrdiff_t kPixelsPerLane = PixelShuffle<kChannels>::kPixels;
    constexpr std::ptrdiff_t kPixelsPerStep = V::kLanes * kPixelsPerLane;
    constexpr std::ptrdiff_t kSourceBytes = kPixelsPerLane * (kChannels + 1);
    constexpr std::ptrdiff_t kDestinationBytes = kPixelsPerLane * kChannels;
    constexpr std::ptrdiff_t kPixelsLoaded =
        kPixelsPerStep + (kLaneBytes - kDestinationBytes + kChannels - 1) / kChannels;
    const auto color = V::LoadToAllLanes(kPixelShuffle<kChannels>.color);
    const auto weight = V::LoadToAllLanes(kPixelShuffle<kChannels>.weight);
    for (; pixels >= kPixelsLoaded; pixels -= kPixelsPerStep) {
      Prefetch(source, next.source);
      Prefetch(destination, next.destination);
      const auto in = LoadLanes<V>(source, kSourceBytes);
      const auto old = LoadLanes<V>(destination, kDestinationBytes);
      const auto blended =
          Blend<kWeightOf, V>(V::Shuffle8(in, weight), V::Shuffle8(in, color), old);
      StoreFirstBytesOfLanes<V, kDestinationBytes>(destination, blended);
      source += kPixelsPerStep * (kChannels + 1);
      destination += kPixelsPerStep * kChannels;
    }
    Rest<V, kWeightOf>().alpha[kChannels - 1](source, destination, pixels, next);
  }
};

// One channel: two source vectors hold the words (sample, weight) of one destination vector. Lane k
// of both is taken from the 32 bytes that belong to lane k of the destination.
template <class V, WeightOf kWeightOf>
struct AlphaBlend<V, 1, kWeightOf> {
  static void Run(const uint8_t* source, uint8_t* destination, std::ptrdiff_t pixels,
                  NextRow next) {
    constexpr std::ptrdiff_t kPixelsPerStep = V::kLanes * kLaneBytes;
    const auto low_bytes = V::Set16(0x00FF);
    for (; pixels >= kPixelsPerStep; pixels -= kPixelsPerStep) {
      Prefetch(source, next.source);
      Prefetch(destination, next.destination);
      const auto in0 = LoadLanes<V>(source, 2 * kLaneBytes);
      const auto in1 = LoadLanes<V>(source + kLaneBytes, 2 * kLaneBytes);
      const auto color = V::PackU16(V::And(in0, low_bytes), V::And(in1, low_bytes));
      const auto weight = V::PackU16(V::ShiftRightU16(in0, 8), V::ShiftRightU16(in1, 8));
      const auto old = LoadLanes<V>(destination, kLaneBytes);
      V::Store(destination, Blend<kWeightOf, V>(weight, color, old));
      source += 2 * kPixelsPerStep;
      destination += kPixelsPerStep;
    }
    Rest<V, kWeightOf>().alpha[0](source, destination, pixels, next);
  }
};

template <class V, WeightOf kWeightOf>
void MaskBlend(const uint8_t* source, const uint8_t* mask, uint8_t* destination,
               std::ptrdiff_t samples, NextRow next) {
  constexpr std::ptrdiff_t kStep = V::kLanes * kLaneBytes;
  std::ptrdiff_t i = 0;
  for (; i + kStep <= samples; i += kStep) {
    Prefetch(source + i, next.source);
    Prefetch(mask + i, next.source);
    Prefetch(destination + i, next.destination);
    const auto weight = V::Load(mask + i);
    const auto in = V::Load(source + i);
    const auto old = V::Load(destination + i);
    V::Store(destination + i, Blend<kWeightOf, V>(weight, in, old));
  }
  Rest<V, kWeightOf>().mask(source + i, mask + i, destination + i, samples - i, next);
}

template <class V, WeightOf kWeightOf>
constexpr CompositionKernels::OfWeight kOfWeight = {
    {AlphaBlend<V, 1, kWeightOf>::Run, AlphaBlend<V, 2, kWeightOf>::Run,
     AlphaBlend<V, 3, kWeightOf>::Run},
    MaskBlend<V, kWeightOf>};

template <class V>
constexpr CompositionKernels kCompositionOf = {kOfWeight<V, WeightOf::kDestination>,
                                               kOfWeight<V, WeightOf::kSource>};

}  // namespace
}  // namespace ovra
