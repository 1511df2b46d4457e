// SPDX-License-Identifier: MIT
// The vector forms, for registers of any width. Included by one kernel file a tier.
#pragma once

#include <cstring>

#include "color/color_matrix/kernels.h"
#include "color/color_matrix/second_order_vector.h"
#include "core/vector_ops.h"

namespace ovra {
namespace {

constexpr int kLaneBytes = 16;

template <class Sample>
constexpr bool kDeep = sizeof(Sample) == 2;

// Each 32-bit element computes one output sample, and the elements follow the order of the samples in
// memory, so that results only need packing. Four pixels are 12 samples: three registers ("thirds")
// a lane, whose patterns of pixels and channels repeat from group to group.

constexpr int kThirds = 3;
constexpr int kGroupPixels = 4;
constexpr int kGroupSamples = 3 * kGroupPixels;
constexpr int kLaneGroups = 4;
constexpr int kLaneSamples = kLaneGroups * kGroupSamples;

// Where a third finds its input: the 16 bytes that start at this sample of the group.
template <class In>
constexpr int ThirdStart(int third) {
  return kDeep<In> ? 3 * third : 0;  // 16 bytes hold all four pixels, or two and a half
}

// Shuffles that bring input channel kLow of its pixel into the low half of every element of a third,
// and channel kHigh into the high half (-1: zero).
template <class In, int kLow, int kHigh>
struct PickChannels {
  alignas(kLaneBytes) int8_t order[kThirds][kLaneBytes] = {};

  constexpr PickChannels() {
    constexpr int kSampleBytes = sizeof(In);
    for (int third = 0; third < kThirds; ++third) {
      for (int i = 0; i < kLaneBytes; ++i) {
        const int pixel = (4 * third + i / 4) / 3;
        const int channel = i % 4 < 2 ? kLow : kHigh;
        const int sample = 3 * pixel + channel - ThirdStart<In>(third);
        const bool empty = channel < 0 || i % 2 >= kSampleBytes;
        order[third][i] = static_cast<int8_t>(empty ? -1 : sample * kSampleBytes + i % 2);
      }
    }
  }
};

template <class In, int kLow, int kHigh = -1>
constexpr PickChannels<In, kLow, kHigh> kPickChannels;

template <class V>
void LoadThirds(const FixedMatrix::Samples& samples, typename V::Reg (&thirds)[kThirds]) {
  for (int third = 0; third < kThirds; ++third) {
    thirds[third] = V::LoadToAllLanes(samples + 4 * third);
  }
}

template <class V>
void LoadThirds(const int8_t (&orders)[kThirds][kLaneBytes], typename V::Reg (&thirds)[kThirds]) {
  for (int third = 0; third < kThirds; ++third) thirds[third] = V::LoadToAllLanes(orders[third]);
}

// Sums by multiply-add pairs.
template <class V, class In>
class PairSums {
  using Reg = typename V::Reg;

 public:
  explicit PairSums(const FixedMatrix& matrix) {
    LoadThirds<V>(kPickChannels<In, 0, 1>.order, pick01_);
    LoadThirds<V>(kPickChannels<In, 2>.order, pick2_);
    LoadThirds<V>(matrix.weights01, weights01_);
    LoadThirds<V>(matrix.weight2, weight2_);
    LoadThirds<V>(matrix.pair_sum, sum_);
  }

  Reg operator()(int third, Reg samples) const {
    if constexpr (kDeep<In>) samples = V::FlipSign16(samples);
    const Reg products01 = V::MulAdd16(V::Shuffle8(samples, pick01_[third]), weights01_[third]);
    const Reg products2 = V::MulAdd16(V::Shuffle8(samples, pick2_[third]), weight2_[third]);
    return V::Add32(V::Add32(products01, products2), sum_[third]);
  }

 private:
  Reg pick01_[kThirds], pick2_[kThirds];
  Reg weights01_[kThirds], weight2_[kThirds];
  Reg sum_[kThirds];
};

// Sums by 32-bit products, for all weights.
template <class V, class In>
class WideSums {
  using Reg = typename V::Reg;

 public:
  explicit WideSums(const FixedMatrix& matrix) : half_(V::Set32(1 << (matrix.shift - 1))) {
    LoadThirds<V>(kPickChannels<In, 0>.order, pick_[0]);
    LoadThirds<V>(kPickChannels<In, 1>.order, pick_[1]);
    LoadThirds<V>(kPickChannels<In, 2>.order, pick_[2]);
    for (int j = 0; j < 3; ++j) LoadThirds<V>(matrix.weight[j], weight_[j]);
  }

  Reg operator()(int third, Reg samples) const {
    Reg sum = half_;
    for (int j = 0; j < 3; ++j) {
      const Reg x = V::Shuffle8(samples, pick_[j][third]);
      sum = V::Add32(sum, V::MulLow32(x, weight_[j][third]));
    }
    return sum;
  }

 private:
  Reg half_;
  Reg pick_[3][kThirds];
  Reg weight_[3][kThirds];
};

// The groups of a lane lie kLaneSamples before those of the next.
template <class V, class In>
typename V::Reg LoadGroups(const In* samples) {
  return V::LoadLanes(samples, samples + kLaneSamples);
}

template <class V, class Out>
void StoreGroups(Out* samples, typename V::Reg values) {
  V::StoreLanes(samples, samples + kLaneSamples, values);
}

template <class V>
constexpr int kStepPixels = V::kLanes* kLaneGroups* kGroupPixels;

// Registers reach so many pixels beyond the step's own.
constexpr int kReadBeyond = 2;

// Converts whole steps, as many as may be read. Answers the number of pixels done.
template <class V, class Sums, class In, class Out>
std::ptrdiff_t ConvertFixedSteps(const In* source, Out* destination, std::ptrdiff_t pixels,
                                 const FixedMatrix& matrix) {
  using Reg = typename V::Reg;
  constexpr int kRegisters = kLaneGroups * kThirds;
  const Sums sums(matrix);
  const Reg max = V::Set16(matrix.max);
  const int shift = matrix.shift;
  Reg offsets[kThirds];
  LoadThirds<V>(matrix.offset, offsets);
  std::ptrdiff_t i = 0;
  for (; i + kStepPixels<V> + kReadBeyond <= pixels; i += kStepPixels<V>) {
    const In* const in = source + 3 * i;
    Out* const out = destination + 3 * i;
    const auto convert = [&](int r) {
      const int third = r % kThirds;
      const Reg samples = LoadGroups<V>(in + kGroupSamples * (r / kThirds) + ThirdStart<In>(third));
      return V::Add32(V::ShiftRight32(sums(third, samples), shift), offsets[third]);
    };
    if constexpr (kDeep<Out>) {
#pragma GCC unroll 6
      for (int r = 0; r < kRegisters; r += 2) {
        const Reg packed = V::PackU32(convert(r), convert(r + 1));
        StoreGroups<V>(out + 4 * r, V::MinU16(packed, max));
      }
    } else {  // whose range is that of the packing itself
#pragma GCC unroll 3
      for (int r = 0; r < kRegisters; r += 4) {
        const Reg low = V::PackS32(convert(r), convert(r + 1));
        const Reg high = V::PackS32(convert(r + 2), convert(r + 3));
        StoreGroups<V>(out + 4 * r, V::PackU16(low, high));
      }
    }
  }
  return i;
}

// Sums of 16 bits by multiply-adds of bytes: a register a lane holds eight output samples, and three of
// them, which make eight pixels, find their input in the 16 bytes that start at 0, 4 and 8.
template <int kLow, int kHigh>
struct PickBytes {
  alignas(kLaneBytes) int8_t order[kThirds][kLaneBytes] = {};

  constexpr PickBytes() {
    for (int third = 0; third < kThirds; ++third) {
      for (int i = 0; i < kLaneBytes; ++i) {
        const int pixel = (8 * third + i / 2) / 3;
        const int channel = i % 2 == 0 ? kLow : kHigh;
        const int byte = 3 * pixel + channel - 4 * third;
        order[third][i] = static_cast<int8_t>(channel < 0 ? -1 : byte);
      }
    }
  }
};

template <class V>
class ByteSums {
  using Reg = typename V::Reg;

 public:
  ByteSums(const FixedMatrix& matrix, int third)
      : pick01_(V::LoadToAllLanes(kPick01.order[third])),
        pick2_(V::LoadToAllLanes(kPick2.order[third])),
        high01_(V::LoadToAllLanes(matrix.high01 + kLaneBytes * third)),
        high2_(V::LoadToAllLanes(matrix.high2 + kLaneBytes * third)),
        low01_(V::LoadToAllLanes(matrix.low01 + kLaneBytes * third)),
        low2_(V::LoadToAllLanes(matrix.low2 + kLaneBytes * third)),
        sum_(V::LoadToAllLanes(matrix.byte_sum + kLaneBytes / 2 * third)) {}

  Reg operator()(Reg samples) const {
    const Reg x01 = V::Shuffle8(samples, pick01_);
    const Reg x2 = V::Shuffle8(samples, pick2_);
    const Reg low = V::Add16(V::MulAddU8S8(x01, low01_), V::MulAddU8S8(x2, low2_));
    const Reg high = V::Add16(V::MulAddU8S8(x01, high01_), V::MulAddU8S8(x2, high2_));
    const Reg sum = V::Add16(V::Add16(high, sum_), V::ShiftRight16(low, 5));
    return V::ShiftRight16(sum, 4);
  }

 private:
  static constexpr PickBytes<0, 1> kPick01{};
  static constexpr PickBytes<2, -1> kPick2{};
  Reg pick01_, pick2_;
  Reg high01_, high2_;
  Reg low01_, low2_;
  Reg sum_;
};

// Two registers a third share what is loaded for it.
template <class V>
std::ptrdiff_t ConvertByteSteps(const uint8_t* source, uint8_t* destination, std::ptrdiff_t pixels,
                                const FixedMatrix& matrix) {
  std::ptrdiff_t i = 0;
  for (; i + kStepPixels<V> <= pixels; i += kStepPixels<V>) {
    const uint8_t* const in = source + 3 * i;
    uint8_t* const out = destination + 3 * i;
    typename V::Reg words[2 * kThirds];
    for (int third = 0; third < kThirds; ++third) {
      const ByteSums<V> sums(matrix, third);
      words[third] = sums(LoadGroups<V>(in + 4 * third));
      words[third + kThirds] = sums(LoadGroups<V>(in + 4 * third + FixedMatrix::kByteSamples));
    }
    for (int r = 0; r < kThirds; ++r) {
      StoreGroups<V>(out + kLaneBytes * r, V::PackU16(words[2 * r], words[2 * r + 1]));
    }
  }
  return i;
}

// Answers the number of pixels done, as many as whole steps have.
template <class Matrix, class In, class Out>
using ConvertSteps = std::ptrdiff_t(const In* source, Out* destination, std::ptrdiff_t pixels,
                                    const Matrix& matrix);

// What is left of a run goes through a step of its own, beside which there is room for kBeyond pixels.
template <class Matrix, class In, class Out, int kStep, int kBeyond,
          ConvertSteps<Matrix, In, Out> kSteps>
void ConvertBySteps(const uint8_t* source, uint8_t* destination, std::ptrdiff_t pixels,
                    const Matrix& matrix) {
  constexpr std::ptrdiff_t kPixelBytesIn = 3 * sizeof(In);
  constexpr std::ptrdiff_t kPixelBytesOut = 3 * sizeof(Out);
  std::ptrdiff_t i = kSteps(reinterpret_cast<const In*>(source),
                            reinterpret_cast<Out*>(destination), pixels, matrix);
  while (i < pixels) {
    constexpr int kPixels = kStep + kBeyond;
    const std::ptrdiff_t left = pixels - i < kStep ? pixels - i : kStep;
    In in[3 * kPixels] = {};
    Out out[3 * kPixels];
    std::memcpy(in, source + kPixelBytesIn * i, static_cast<size_t>(kPixelBytesIn * left));
    kSteps(in, out, kPixels, matrix);
    std::memcpy(destination + kPixelBytesOut * i, out, static_cast<size_t>(kPixelBytesOut * left));
    i += left;
  }
}

template <class V, class In, class Out, ConvertSteps<FixedMatrix, In, Out> kSteps>
constexpr ConvertMatrixRun<FixedMatrix>* kConvertFixed =
    ConvertBySteps<FixedMatrix, In, Out, kStepPixels<V>, kReadBeyond, kSteps>;
template <class V, class In, class Out>
constexpr ConvertMatrixRun<FixedMatrix>* kFixed =
    kConvertFixed<V, In, Out, ConvertFixedSteps<V, WideSums<V, In>, In, Out>>;
template <class V, class In, class Out>
constexpr ConvertMatrixRun<FixedMatrix>* kFixedPairs =
    kConvertFixed<V, In, Out, ConvertFixedSteps<V, PairSums<V, In>, In, Out>>;
template <class V>
constexpr ConvertMatrixRun<FixedMatrix>* kFixedBytes =
    kConvertFixed<V, uint8_t, uint8_t, ConvertByteSteps<V>>;
template <class V, class In, class Out>
constexpr ConvertMatrixRun<DoubleMatrix>* kExact =
    ConvertBySteps<DoubleMatrix, In, Out, SecondOrder<V, In, Out>::kStep,
                   SecondOrder<V, In, Out>::kBeyond, SecondOrder<V, In, Out>::ConvertSteps>;

template <class V>
constexpr ColorMatrixKernels kColorMatrixOf = {
    .fixed = {{kFixed<V, uint8_t, uint8_t>, kFixed<V, uint8_t, uint16_t>},
              {kFixed<V, uint16_t, uint8_t>, kFixed<V, uint16_t, uint16_t>}},
    .fixed_pairs = {{kFixedPairs<V, uint8_t, uint8_t>, kFixedPairs<V, uint8_t, uint16_t>},
                    {kFixedPairs<V, uint16_t, uint8_t>, kFixedPairs<V, uint16_t, uint16_t>}},
    .fixed_bytes = kFixedBytes<V>,
    .exact = {{kExact<V, uint8_t, uint8_t>, kExact<V, uint8_t, uint16_t>},
              {kExact<V, uint16_t, uint8_t>, kExact<V, uint16_t, uint16_t>}},
};

}  // namespace
}  // namespace ovra
