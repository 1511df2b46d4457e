// SPDX-License-Identifier: MIT
// The vector forms, for registers of any width. Included by one kernel file a tier.
#pragma once

#include <algorithm>
#include <cstring>

#include "core/composition/kernels.h"
#include "core/vector_ops.h"

namespace ovra {
namespace {

constexpr std::ptrdiff_t kLaneBytes = 16;

template <class V, WeightOf kWeightOf>
const CompositionKernels::OfWeight& Rest() {
  return NarrowerThan<V>(kCompositionPlain, kCompositionSse).Of(kWeightOf);
}

// The same place of the next row: a row's beginning is more than a processor foresees.
inline void Prefetch(const uint8_t* p, std::ptrdiff_t next) {
  PrefetchAt(p, next, 1);
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

// Where destination samples find their color and weight in rows with a weight behind each pixel.
template <class V, int kChannels>
struct AlphaOrder {
  // A step is so many registers of the destination that it ends with a pixel.
  static constexpr int kRegisters = kChannels == 3 ? 3 : 1;
  static constexpr int kDestinationBytes = kRegisters * V::kBytes;
  static constexpr int kPixels = kDestinationBytes / kChannels;
  static constexpr int kSourceBytes = kPixels * (kChannels + 1);

  static constexpr int SourcePixel(int sample) { return sample / kChannels * (kChannels + 1); }

  // Of half a register, eight samples a lane: they are of at most four pixels, which one load has.
  struct Half {
    int begin[2] = {};                            // of the first and the last lane's load
    alignas(V::kBytes) int8_t color[V::kBytes];   // as bytes, in the same half of the lane
    alignas(V::kBytes) int8_t weight[V::kBytes];  // as words

    constexpr Half(int register_number, int half) : color(), weight() {
      constexpr int kSamples = kLaneBytes / 2;
      constexpr int8_t kZero = -1;
      for (int lane = 0; lane < V::kLanes; ++lane) {
        const int lane_begin = (register_number * V::kLanes + lane) * kLaneBytes;
        const int lane_end = SourcePixel(lane_begin + kLaneBytes - 1) + kChannels + 1;
        const int first = lane_begin + half * kSamples;
        begin[lane] = std::min<int>(SourcePixel(first), lane_end - kLaneBytes);
        for (int i = 0; i < kSamples; ++i) {
          const int pixel = SourcePixel(first + i) - begin[lane];
          const int out = lane * kLaneBytes;
          color[out + half * kSamples + i] = static_cast<int8_t>(pixel + (first + i) % kChannels);
          weight[out + 2 * i] = static_cast<int8_t>(pixel + kChannels);
          weight[out + 2 * i + 1] = kZero;
        }
      }
    }
  };

  template <int kRegister, int kHalf>
  static constexpr Half kHalfOf = Half(kRegister, kHalf);
};

template <class V, int kChannels, WeightOf kWeightOf>
struct AlphaBlend {
  using Order = AlphaOrder<V, kChannels>;

  // What does not fill a step is blended with samples before it, of which the old ones are kept.
  static void Run(const uint8_t* source, uint8_t* destination, std::ptrdiff_t pixels,
                  NextRow next) {
    if (pixels < Order::kPixels) {
      return Rest<V, kWeightOf>().alpha[kChannels - 1](source, destination, pixels, next);
    }
    uint8_t end[Order::kDestinationBytes];
    uint8_t* const end_begin = destination + (pixels - Order::kPixels) * kChannels;
    const bool has_end = pixels % Order::kPixels != 0;
    if (has_end) {
      std::memcpy(end, end_begin, sizeof end);
      Step(source + (pixels - Order::kPixels) * (kChannels + 1), end);
    }
    for (; pixels >= Order::kPixels; pixels -= Order::kPixels) {
      PrefetchAt(source, next.source, Order::kSourceBytes);
      PrefetchAt(destination, next.destination, Order::kDestinationBytes);
      Step(source, destination);
      source += Order::kSourceBytes;
      destination += Order::kDestinationBytes;
    }
    if (has_end) std::memcpy(end_begin, end, sizeof end);
  }

 private:
  static void Step(const uint8_t* source, uint8_t* destination) {
    BlendRegister<0>(source, destination);
    if constexpr (Order::kRegisters > 1) {
      BlendRegister<1>(source, destination);
      BlendRegister<2>(source, destination);
    }
  }

  template <int kRegister>
  static void BlendRegister(const uint8_t* source, uint8_t* destination) {
    uint8_t* const out = destination + kRegister * V::kBytes;
    const auto old = V::Load(out);
    V::Store(out, V::PackU16(BlendHalf<kRegister, 0>(source, old),
                             BlendHalf<kRegister, 1>(source, old)));
  }

  template <int kRegister, int kHalf>
  static typename V::Reg BlendHalf(const uint8_t* source, typename V::Reg old) {
    constexpr const auto& kOrder = Order::template kHalfOf<kRegister, kHalf>;
    const auto in = V::LoadLanes(source + kOrder.begin[0], source + kOrder.begin[V::kLanes - 1]);
    const auto color = V::Shuffle8(in, V::LoadAligned(kOrder.color));
    const auto weight = V::Shuffle8(in, V::LoadAligned(kOrder.weight));
    const auto owner = kWeightOf == WeightOf::kSource ? color : old;
    const auto other = kWeightOf == WeightOf::kSource ? old : color;
    return BlendWords<V>(weight, kHalf == 0 ? V::template UnpackLow<8>(owner, other)
                                            : V::template UnpackHigh<8>(owner, other));
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
