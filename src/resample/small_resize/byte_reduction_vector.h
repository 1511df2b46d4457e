// SPDX-License-Identifier: MIT
// The vector forms of the reduction of 8-bit samples in 16-bit multiplications.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/channel_shuffles.h"
#include "core/vector_ops.h"
#include "resample/resize/next_row.h"
#include "resample/small_resize/kernels.h"

namespace ovra {
namespace {

// The sums of two registers of bytes, which stand as unpacking leaves them.
template <class V>
struct ByteRowSums {
  using Reg = typename V::Reg;
  static constexpr int kRegs = 2;
  static constexpr std::ptrdiff_t kSamples = kRegs * V::kBytes;
  static constexpr int kShift = kReductionWeightBits - kWordLowBits - kReductionIntermediateBits;

  Reg sums[4 * kRegs];

  explicit ByteRowSums(Reg start) {
    for (Reg& sum : sums) sum = start;
  }

  void Add(const uint8_t* first, const uint8_t* second, Reg weights) {
    for (int i = 0; i < kRegs; ++i) {
      const Reg a = V::Load(first + i * V::kBytes);
      const Reg b = V::Load(second + i * V::kBytes);
      AddPairs(4 * i, V::template UnpackLow<8>(a, b), weights);
      AddPairs(4 * i + 2, V::template UnpackHigh<8>(a, b), weights);
    }
  }

  void Store(int16_t* out) const {
    for (int i = 0; i < kRegs; ++i, out += V::kBytes) {
      Reg shifted[4];
      for (int k = 0; k < 4; ++k) shifted[k] = V::ShiftRight32(sums[4 * i + k], kShift);
      V::StoreLanes(out, out + 16, V::PackS32(shifted[0], shifted[1]));
      V::StoreLanes(out + 8, out + 24, V::PackS32(shifted[2], shifted[3]));
    }
  }

 private:
  void AddPairs(int i, Reg pairs, Reg weights) {
    AddProducts(V::template UnpackLow<8>(pairs, V::Zero()), weights, &sums[i]);
    AddProducts(V::template UnpackHigh<8>(pairs, V::Zero()), weights, &sums[i + 1]);
  }
  static void AddProducts(Reg words, Reg weights, Reg* sum) {
    *sum = V::Add32(*sum, V::MulAdd16(words, weights));
    V::KeepInPlace(*sum);
  }
};

// So many rows side by side are more than processors foresee: they are asked for this far ahead.
constexpr std::ptrdiff_t kAhead = 192;

template <class V>
void WeighByteRowsVector(const WeighedByteRows& rows, std::ptrdiff_t samples,
                         const SourceAhead& ahead, int16_t* intermediate) {
  constexpr std::ptrdiff_t kStep = ByteRowSums<V>::kSamples;
  constexpr int kShift = ByteRowSums<V>::kShift;
  const auto start = V::Set32((1 << (kShift - 1)) - (kByteIntermediateOffset << kShift));
  const std::ptrdiff_t last = samples - kStep;  // the block there overlaps the one before
  const std::ptrdiff_t ahead_step = ahead.bytes / (samples / kStep) + 1;
  std::ptrdiff_t ahead_end = 0;
  NextRow next_rows(ahead.begin, 0, 0);
  for (std::ptrdiff_t i = 0;; i = i + kStep < last ? i + kStep : last) {
    next_rows.AskUpToByte(ahead_end += ahead_step);
    ByteRowSums<V> sums(start);
    for (int32_t p = 0; p < rows.pairs; ++p) {
      const uint8_t* const first = rows.rows[2 * p] + i;
      const uint8_t* const second = rows.rows[2 * p + 1] + i;
      PrefetchLine(reinterpret_cast<uintptr_t>(first + kAhead));
      PrefetchLine(reinterpret_cast<uintptr_t>(second + kAhead));
      sums.Add(first, second, V::Set32(rows.weights[p]));
    }
    sums.Store(intermediate + i);
    if (i == last) break;
  }
}

template <class V>
void SplitThreeIntermediate(const int16_t* intermediate, std::ptrdiff_t pixels, int16_t* planes,
                            std::ptrdiff_t spacing) {
  constexpr std::ptrdiff_t kStep = V::kBytes / 2;
  CoverRow(pixels, kStep, [=](std::ptrdiff_t i) {
    typename V::Reg channels[3];
    SplitThreeChannels<V, 16>(intermediate + 3 * i, channels);
    for (int c = 0; c < 3; ++c) V::Store(planes + c * spacing + i, channels[c]);
  });
}

template <class V>
void SplitFourIntermediate(const int16_t* intermediate, std::ptrdiff_t pixels, int16_t* planes,
                           std::ptrdiff_t spacing) {
  constexpr std::ptrdiff_t kStep = V::kBytes / 2;
  CoverRow(pixels, kStep, [=](std::ptrdiff_t i) {
    typename V::Reg channels[4];
    SplitFourChannelWords<V>(intermediate + 4 * i, channels);
    for (int c = 0; c < 4; ++c) V::Store(planes + c * spacing + i, channels[c]);
  });
}

// The sums of the elements of four registers.
template <class V>
Sse::Reg SumsOfFour(const typename V::Reg (&a)[4]) {
  const auto sums = V::AddAcross32(V::AddAcross32(a[0], a[1]), V::AddAcross32(a[2], a[3]));
  if constexpr (V::kLanes == 1) {
    return sums;
  } else {
    return Sse::Add32(V::Lane(sums, 0), V::Lane(sums, 1));
  }
}

// Four sums of products: those of a pixel's channels, or of four columns.
template <class V>
struct FourColumnSums {
  typename V::Reg sums[4];

  FourColumnSums() {
    for (auto& sum : sums) sum = V::Zero();
  }

  // Sum i of the words from samples[i] on, with the weights from weights[i] on.
  template <int kSums>
  void Add(const int16_t* const (&samples)[4], const int16_t* const (&weights)[4],
           std::ptrdiff_t taps) {
    constexpr std::ptrdiff_t kStep = V::kBytes / 2;
    for (std::ptrdiff_t t = 0; t < taps; t += kStep) {
      for (int i = 0; i < kSums; ++i) {
        const auto words = V::Load(samples[i] + t);
        sums[i] = V::Add32(sums[i], V::MulAdd16(words, V::Load(weights[i] + t)));
      }
    }
  }

  // As bytes, in the lowest 32 bits.
  Sse::Reg Bytes(Sse::Reg offsets) const {
    const Sse::Reg whole = Sse::Add32(SumsOfFour<V>(sums), offsets);
    const Sse::Reg words = Sse::PackS32(Sse::ShiftRight32(whole, kByteColumnShift), Sse::Zero());
    return Sse::PackU16(words, words);
  }
};

template <class V>
void WeighGreyByteColumns(const ByteReductionColumns& job, uint8_t* destination) {
  const auto four_bytes = [&job](int32_t column) {
    const int16_t* samples[kByteColumnsAtOnce];
    const int16_t* weights[kByteColumnsAtOnce];
    for (int i = 0; i < kByteColumnsAtOnce; ++i) {
      samples[i] = job.planes + job.first[column + i];
      weights[i] = job.weights + (column + i) * job.taps;
    }
    FourColumnSums<V> sums;
    sums.template Add<kByteColumnsAtOnce>(samples, weights, job.taps);
    return sums.Bytes(Sse::Load(job.offsets + column));
  };
  int32_t column = 0;
  for (; column + kByteColumnsAtOnce <= job.columns; column += kByteColumnsAtOnce) {
    Sse::StoreFirst<4>(destination + column, four_bytes(column));
  }
  if (column == job.columns) return;
  uint8_t bytes[kByteColumnsAtOnce];
  Sse::StoreFirst<4>(bytes, four_bytes(column));
  for (int i = 0; column + i < job.columns; ++i) destination[column + i] = bytes[i];
}

// Three channels are written as four, but for the last pixel.
template <class V, int kChannels>
void WeighPixelByteColumns(const ByteReductionColumns& job, uint8_t* destination) {
  for (std::ptrdiff_t column = 0; column < job.columns; ++column) {
    const int16_t* samples[4] = {};
    const int16_t* const weights = job.weights + column * job.taps;
    for (int c = 0; c < kChannels; ++c) {
      samples[c] = job.planes + c * job.plane_spacing + job.first[column];
    }
    FourColumnSums<V> sums;
    sums.template Add<kChannels>(samples, {weights, weights, weights, weights}, job.taps);
    const Sse::Reg bytes = sums.Bytes(Sse::Set32(job.offsets[column]));
    uint8_t* const out = destination + column * kChannels;
    if (kChannels == 4 || column + 1 < job.columns) {
      Sse::StoreFirst<4>(out, bytes);
    } else {
      uint8_t last[4];
      Sse::StoreFirst<4>(last, bytes);
      for (int c = 0; c < kChannels; ++c) out[c] = last[c];
    }
  }
}

template <class V>
constexpr ByteReductionKernels kByteReductionOf = {
    2 * V::kBytes,
    WeighByteRowsVector<V>,
    {SplitThreeIntermediate<V>, SplitFourIntermediate<V>},
    {WeighGreyByteColumns<V>, WeighPixelByteColumns<V, 3>, WeighPixelByteColumns<V, 4>}};

}  // namespace
}  // namespace ovra
