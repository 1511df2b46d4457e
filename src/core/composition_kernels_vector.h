// SPDX-License-Identifier: MIT
// The kernels of the accelerated tiers, over a vector type of 16 bytes or of several such lanes.
// Each tier's file includes this and is compiled with its own flags, hence the anonymous namespace.
//
// A Vector has
//   Register             the register type
//   kLanes               the number of 16-byte lanes in it
//   LoadLanes(p, step)   lane k from the 16 bytes at p + k * step, at any address
//   Store(p, v)          all bytes, to any address
//   StoreLanes<N>(p, v)  of each lane the first N bytes, without gaps
//   PerLane(bytes)       the same 16 bytes in each lane
//   kNarrower            the kernels for what is shorter than a step
// and the named instructions, which act on each lane alone.
#pragma once

#include <immintrin.h>

#include <cstddef>
#include <cstdint>

#include "core/composition_kernels.h"

namespace ovra {
namespace {

constexpr std::ptrdiff_t kLaneBytes = 16;

template <class Vector, WeightOf kWeightOf>
const CompositionKernels::OfWeight& Rest() {
  return kWeightOf == WeightOf::kSource ? Vector::kNarrower.weight_of_source
                                        : Vector::kNarrower.weight_of_destination;
}

// (w + 1) * owner + (256 - w) * other = w * (owner - other) + (owner + 256 * other), and the last
// term is what the two samples are side by side in a 16-bit word. The sum fits the word, so the
// product may wrap on the way.
template <class Vector>
typename Vector::Register BlendWords(typename Vector::Register weight,
                                     typename Vector::Register owner_and_other) {
  const auto plus_minus = Vector::Words(static_cast<int16_t>(0xFF01));  // bytes 1 and -1
  const auto difference = Vector::MultiplyAddBytes(owner_and_other, plus_minus);
  return Vector::ShiftRight8(
      Vector::AddWords(Vector::MultiplyWords(weight, difference), owner_and_other));
}

template <WeightOf kWeightOf, class Vector>
typename Vector::Register Blend(typename Vector::Register weight, typename Vector::Register source,
                                typename Vector::Register destination) {
  const auto owner = kWeightOf == WeightOf::kSource ? source : destination;
  const auto other = kWeightOf == WeightOf::kSource ? destination : source;
  const auto zero = Vector::Words(0);
  return Vector::PackWords(
      BlendWords<Vector>(Vector::UnpackLow(weight, zero), Vector::UnpackLow(owner, other)),
      BlendWords<Vector>(Vector::UnpackHigh(weight, zero), Vector::UnpackHigh(owner, other)));
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
template <class Vector, int kChannels, WeightOf kWeightOf>
struct AlphaBlend {
  static void Run(const uint8_t* source, uint8_t* destination, std::ptrdiff_t pixels) {
    constexpr std::ptrdiff_t kPixelsPerLane = PixelShuffle<kChannels>::kPixels;
    constexpr std::ptrdiff_t kPixelsPerStep = Vector::kLanes * kPixelsPerLane;
    constexpr std::ptrdiff_t kSourceBytes = kPixelsPerLane * (kChannels + 1);
    constexpr std::ptrdiff_t kDestinationBytes = kPixelsPerLane * kChannels;
    constexpr std::ptrdiff_t kPixelsLoaded =
        kPixelsPerStep + (kLaneBytes - kDestinationBytes + kChannels - 1) / kChannels;
    const auto color = Vector::PerLane(kPixelShuffle<kChannels>.color);
    const auto weight = Vector::PerLane(kPixelShuffle<kChannels>.weight);
    for (; pixels >= kPixelsLoaded; pixels -= kPixelsPerStep) {
      const auto in = Vector::LoadLanes(source, kSourceBytes);
      const auto old = Vector::LoadLanes(destination, kDestinationBytes);
      const auto blended =
          Blend<kWeightOf, Vector>(Vector::Shuffle(in, weight), Vector::Shuffle(in, color), old);
      Vector::template StoreLanes<kDestinationBytes>(destination, blended);
      source += kPixelsPerStep * (kChannels + 1);
      destination += kPixelsPerStep * kChannels;
    }
    Rest<Vector, kWeightOf>().alpha[kChannels - 1](source, destination, pixels);
  }
};

// One channel: two source vectors hold the words (sample, weight) of one destination vector. Lane k
// of both is taken from the 32 bytes that belong to lane k of the destination.
template <class Vector, WeightOf kWeightOf>
struct AlphaBlend<Vector, 1, kWeightOf> {
  static void Run(const uint8_t* source, uint8_t* destination, std::ptrdiff_t pixels) {
    constexpr std::ptrdiff_t kPixelsPerStep = Vector::kLanes * kLaneBytes;
    const auto low_bytes = Vector::Words(0x00FF);
    for (; pixels >= kPixelsPerStep; pixels -= kPixelsPerStep) {
      const auto in0 = Vector::LoadLanes(source, 2 * kLaneBytes);
      const auto in1 = Vector::LoadLanes(source + kLaneBytes, 2 * kLaneBytes);
      const auto color =
          Vector::PackWords(Vector::And(in0, low_bytes), Vector::And(in1, low_bytes));
      const auto weight = Vector::PackWords(Vector::ShiftRight8(in0), Vector::ShiftRight8(in1));
      const auto old = Vector::LoadLanes(destination, kLaneBytes);
      Vector::Store(destination, Blend<kWeightOf, Vector>(weight, color, old));
      source += 2 * kPixelsPerStep;
      destination += kPixelsPerStep;
    }
    Rest<Vector, kWeightOf>().alpha[0](source, destination, pixels);
  }
};

template <class Vector, WeightOf kWeightOf>
void MaskBlend(const uint8_t* source, const uint8_t* mask, uint8_t* destination,
               std::ptrdiff_t samples) {
  constexpr std::ptrdiff_t kStep = Vector::kLanes * kLaneBytes;
  std::ptrdiff_t i = 0;
  for (; i + kStep <= samples; i += kStep) {
    const auto weight = Vector::LoadLanes(mask + i, kLaneBytes);
    const auto in = Vector::LoadLanes(source + i, kLaneBytes);
    const auto old = Vector::LoadLanes(destination + i, kLaneBytes);
    Vector::Store(destination + i, Blend<kWeightOf, Vector>(weight, in, old));
  }
  Rest<Vector, kWeightOf>().mask(source + i, mask + i, destination + i, samples - i);
}

template <class Vector, WeightOf kWeightOf>
constexpr CompositionKernels::OfWeight kVectorKernels = {
    {AlphaBlend<Vector, 1, kWeightOf>::Run, AlphaBlend<Vector, 2, kWeightOf>::Run,
     AlphaBlend<Vector, 3, kWeightOf>::Run},
    MaskBlend<Vector, kWeightOf>};

// The first N bytes of a lane, to any address.
template <std::ptrdiff_t kBytes>
void StoreLane(uint8_t* p, __m128i lane) {
  static_assert(kBytes == 10 || kBytes == 12);
  _mm_storel_epi64(reinterpret_cast<__m128i*>(p), lane);
  if constexpr (kBytes == 12) {
    _mm_storeu_si32(p + 8, _mm_srli_si128(lane, 8));
  } else {
    _mm_storeu_si16(p + 8, _mm_srli_si128(lane, 8));
  }
}

}  // namespace
}  // namespace ovra
