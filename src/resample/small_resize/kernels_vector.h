// SPDX-License-Identifier: MIT
// The vector forms, for registers of any width. Included by one kernel file a tier.
//
// Vertically a weight w is split into w = high * 256 + low with a signed 16-bit high and an unsigned
// 8-bit low half, so that pairs of rows meet in 16-bit multiply-add instructions. 16-bit samples are
// moved to the signed range by subtracting 2^15, which is added again, times the sum of the weights,
// at the end. Horizontally the channels of a pixel, or the taps of a grey one, run side by side in
// doubles, which hold the sums exactly.
#pragma once

#include "core/vector_ops.h"
#include "resample/small_resize/byte_reduction_vector.h"
#include "resample/small_resize/kernels.h"

namespace ovra {
namespace {

constexpr int kLowBits = 8;
constexpr int32_t kLowMask = (1 << kLowBits) - 1;
constexpr int kVerticalShift = kReductionWeightBits - kReductionIntermediateBits;
// high * 256 is split once more, so that no element needs more than 32 bits.
constexpr int kHighShift = kVerticalShift - kLowBits;

struct WeightPairs {
  // Weights of two rows each, the first in the lower 16 bits.
  int32_t high[kMaxReductionRows / 2];
  int32_t low[kMaxReductionRows / 2];
  int32_t pairs;
};

inline WeightPairs SplitWeights(const int32_t* weights, int32_t count) {
  WeightPairs split;
  split.pairs = (count + 1) / 2;
  for (int32_t p = 0; p < split.pairs; ++p) {
    const int32_t first = weights[2 * p];
    const int32_t second = 2 * p + 1 < count ? weights[2 * p + 1] : 0;
    split.high[p] = PackedPair(first >> kLowBits, second >> kLowBits);
    split.low[p] = PackedPair(first & kLowMask, second & kLowMask);
  }
  return split;
}

template <class V>
typename V::Reg LoadSigned(const uint8_t* samples) {
  return V::LoadU8As16(samples);
}
template <class V>
typename V::Reg LoadSigned(const uint16_t* samples) {
  return V::FlipSign16(V::Load(samples));
}

// The sums of one register of 16-bit samples, in the order in which unpacking leaves them.
template <class V>
struct VerticalSums {
  using Reg = typename V::Reg;
  static constexpr std::ptrdiff_t kSamples = V::kBytes / 2;
  static constexpr std::ptrdiff_t kStored = 4 * V::kBytes;  // bytes
  Reg high_near = V::Zero();
  Reg high_far = V::Zero();
  Reg low_near = V::Zero();
  Reg low_far = V::Zero();

  template <class Sample>
  void Add(const Sample* first, const Sample* second, Reg high, Reg low) {
    const Reg a = LoadSigned<V>(first);
    const Reg b = LoadSigned<V>(second);
    const Reg near = V::template UnpackLow<16>(a, b);
    const Reg far = V::template UnpackHigh<16>(a, b);
    high_near = V::Add32(high_near, V::MulAdd16(near, high));
    high_far = V::Add32(high_far, V::MulAdd16(far, high));
    low_near = V::Add32(low_near, V::MulAdd16(near, low));
    low_far = V::Add32(low_far, V::MulAdd16(far, low));
  }

  void Load(const uint8_t* from) {
    high_near = V::Load(from);
    high_far = V::Load(from + V::kBytes);
    low_near = V::Load(from + 2 * V::kBytes);
    low_far = V::Load(from + 3 * V::kBytes);
  }
  // What the low sums have of whole high units goes there first, so that they may grow again: they are
  // at most kMaxReductionRows * 255 * 2^15, with what was left of them and rounding less than 2^31.
  void Store(uint8_t* to) {
    const Reg mask = V::Set32(kLowMask);
    high_near = V::Add32(high_near, V::ShiftRight32(low_near, kLowBits));
    high_far = V::Add32(high_far, V::ShiftRight32(low_far, kLowBits));
    low_near = V::And(low_near, mask);
    low_far = V::And(low_far, mask);
    V::Store(to, high_near);
    V::Store(to + V::kBytes, high_far);
    V::Store(to + 2 * V::kBytes, low_near);
    V::Store(to + 3 * V::kBytes, low_far);
  }

  void Finish(int32_t* out, Reg offset) const {
    constexpr std::ptrdiff_t kLaneElements = 4;
    const Reg near = Combine(high_near, low_near, offset);
    const Reg far = Combine(high_far, low_far, offset);
    for (int lane = 0; lane < V::kLanes; ++lane) {
      V::StoreLane(out + 2 * lane * kLaneElements, near, lane);
      V::StoreLane(out + (2 * lane + 1) * kLaneElements, far, lane);
    }
  }

 private:
  // (high * 256 + low + half) >> kVerticalShift, plus the offset.
  static Reg Combine(Reg high, Reg low, Reg offset) {
    const Reg whole = V::ShiftRight32(high, kHighShift);
    const Reg rest = V::And(high, V::Set32((1 << kHighShift) - 1));
    const Reg small = V::Add32(V::ShiftLeft32(rest, kLowBits), low);
    const Reg rounded =
        V::ShiftRight32(V::Add32(small, V::Set32(1 << (kVerticalShift - 1))), kVerticalShift);
    return V::Add32(V::Add32(whole, rounded), offset);
  }
};

// Two registers of samples, from sample `i` on, of the rows that `weights` is for.
template <class V, class Sample>
void AddRows(const Sample* const* rows, int32_t count, const WeightPairs& weights, std::ptrdiff_t i,
             VerticalSums<V>* left, VerticalSums<V>* right) {
  VerticalSums<V> left_sums = *left;  // in registers, where nothing that is read can alias them
  VerticalSums<V> right_sums = *right;
  for (int32_t p = 0; p < weights.pairs; ++p) {
    // An odd last row is paired with itself; the weight of its second self is 0.
    const Sample* const a = rows[2 * p] + i;
    const Sample* const b = rows[2 * p + (2 * p + 1 < count ? 1 : 0)] + i;
    PrefetchLine(reinterpret_cast<uintptr_t>(a) + kAhead);
    PrefetchLine(reinterpret_cast<uintptr_t>(b) + kAhead);
    const auto high = V::Set32(weights.high[p]);
    const auto low = V::Set32(weights.low[p]);
    left_sums.Add(a, b, high, low);
    right_sums.Add(a + VerticalSums<V>::kSamples, b + VerticalSums<V>::kSamples, high, low);
  }
  *left = left_sums;
  *right = right_sums;
}

// A step makes two registers of samples. The last step overlaps the one before and has a place of its
// own in the stored sums.
template <class V, class Sample, class Start, class End>
void SumSteps(const WeighedRows<Sample>& rows, std::ptrdiff_t samples, const Start& start,
              const End& end) {
  constexpr std::ptrdiff_t kStep = 2 * VerticalSums<V>::kSamples;
  const WeightPairs weights = SplitWeights(rows.weights, rows.count);
  std::ptrdiff_t step = 0;
  for (std::ptrdiff_t i = 0; i < samples; i += kStep, ++step) {
    if (i > samples - kStep) i = samples - kStep;
    VerticalSums<V> left;
    VerticalSums<V> right;
    start(step, &left, &right);
    AddRows<V>(rows.rows, rows.count, weights, i, &left, &right);
    end(step, i, &left, &right);
  }
}

template <class V>
bool IsTooNarrow(std::ptrdiff_t samples) {
  return samples < 2 * VerticalSums<V>::kSamples;
}

template <class V>
void LoadSums(const int64_t* sums, std::ptrdiff_t step, VerticalSums<V>* left,
              VerticalSums<V>* right) {
  const auto* const stored =
      reinterpret_cast<const uint8_t*>(sums) + step * 2 * VerticalSums<V>::kStored;
  left->Load(stored);
  right->Load(stored + VerticalSums<V>::kStored);
}

template <class V, class Sample>
void Sum(const WeighedRows<Sample>& rows, std::ptrdiff_t samples, bool begins, int64_t* sums) {
  if (IsTooNarrow<V>(samples)) {
    return kReductionPlain.Of<Sample>().sum_rows(rows, samples, begins, sums);
  }
  SumSteps<V>(
      rows, samples,
      [=](std::ptrdiff_t step, auto* left, auto* right) {
        if (!begins) LoadSums<V>(sums, step, left, right);
      },
      [=](std::ptrdiff_t step, std::ptrdiff_t, auto* left, auto* right) {
        uint8_t* const stored =
            reinterpret_cast<uint8_t*>(sums) + step * 2 * VerticalSums<V>::kStored;
        left->Store(stored);
        right->Store(stored + VerticalSums<V>::kStored);
      });
}

template <class V, class Sample>
void Weigh(const WeighedRows<Sample>& rows, std::ptrdiff_t samples, const int64_t* sums,
           int32_t weight_sum, int32_t* intermediate) {
  if (IsTooNarrow<V>(samples)) {
    return kReductionPlain.Of<Sample>().weigh_rows(rows, samples, sums, weight_sum, intermediate);
  }
  // 2^15 * sum, brought to the intermediate's scale.
  static_assert(kVerticalShift == 15);
  const auto offset = V::Set32(sizeof(Sample) == 2 ? weight_sum : 0);
  SumSteps<V>(
      rows, samples,
      [=](std::ptrdiff_t step, auto* left, auto* right) {
        if (sums != nullptr) LoadSums<V>(sums, step, left, right);
      },
      [=](std::ptrdiff_t, std::ptrdiff_t i, auto* left, auto* right) {
        left->Finish(intermediate + i, offset);
        right->Finish(intermediate + i + VerticalSums<V>::kSamples, offset);
      });
}

// Four doubles: one register or two.
template <class V>
struct FourDoubles {
  static constexpr int kRegs = 4 / V::kDoubles;
  typename V::Doubles regs[kRegs];

  static FourDoubles Set(double value) {
    FourDoubles a;
    for (auto& reg : a.regs) reg = V::SetDoubles(value);
    return a;
  }
  static FourDoubles Load(const double* p) {
    FourDoubles a;
    for (int i = 0; i < kRegs; ++i) a.regs[i] = V::LoadDoubles(p + i * V::kDoubles);
    return a;
  }
  void StoreAligned(double* p) const {
    for (int i = 0; i < kRegs; ++i) V::StoreDoublesAligned(p + i * V::kDoubles, regs[i]);
  }
  void AddProduct(const FourDoubles& a, const FourDoubles& b) {
    for (int i = 0; i < kRegs; ++i) regs[i] = regs[i] + a.regs[i] * b.regs[i];
  }
};

constexpr double kHorizontalHalf = 1 << (kReductionWeightBits + kReductionIntermediateBits - 1);
constexpr double kHorizontalScale = 0.5 / kHorizontalHalf;

template <class V>
void ToDoubles(const int32_t* samples, std::ptrdiff_t count, double* out) {
  std::ptrdiff_t i = 0;
  for (; i + 4 <= count; i += 4) {
    FourDoubles<V> four;
    V::ToDoubles(Sse::Load(samples + i), four.regs);
    four.StoreAligned(out + i);
  }
  for (; i < count; ++i) out[i] = samples[i];
  // What a step over the last pixels reads beyond them, times a weight of 0 or for no channel.
  for (int k = 0; k < kReductionWeightStep; ++k) out[count + k] = 0.0;
}

// Limited and cut to integers.
template <class V>
void StoreLimited(int32_t* out, const FourDoubles<V>& sum, double max) {
  FourDoubles<V> limited;
  for (int i = 0; i < FourDoubles<V>::kRegs; ++i) {
    const auto scaled = sum.regs[i] * V::SetDoubles(kHorizontalScale);
    limited.regs[i] = V::MaxDoubles(V::MinDoubles(scaled, V::SetDoubles(max)), V::SetDoubles(0.0));
  }
  Sse::Store(out, V::Truncate(limited.regs));
}

template <class V, class Sample>
void GreyColumns(const int32_t* intermediate, const ReductionColumns& job, Sample* destination) {
  ToDoubles<V>(intermediate, job.intermediate_samples, job.scratch);
  for (int32_t i = 0; i < job.columns; ++i) {
    const double* const samples = job.scratch + job.first[i];
    const double* const weights = job.weights_as_double + i * job.weight_stride;
    FourDoubles<V> sum = FourDoubles<V>::Set(0.0);
    for (std::ptrdiff_t t = 0; t < job.count[i]; t += kReductionWeightStep) {
      sum.AddProduct(FourDoubles<V>::Load(samples + t), FourDoubles<V>::Load(weights + t));
    }
    alignas(32) double parts[4];
    sum.StoreAligned(parts);
    const double whole =
        (parts[0] + parts[1] + parts[2] + parts[3] + kHorizontalHalf) * kHorizontalScale;
    const double max = job.max_sample;
    destination[i] = static_cast<Sample>(whole < 0 ? 0 : whole > max ? max : whole);
  }
}

template <class V, class Sample, int kChannels>
void PixelColumns(const int32_t* intermediate, const ReductionColumns& job, Sample* destination) {
  ToDoubles<V>(intermediate, job.intermediate_samples, job.scratch);
  for (int32_t i = 0; i < job.columns; ++i, destination += kChannels) {
    const double* pixel = job.scratch + std::ptrdiff_t{job.first[i]} * kChannels;
    const double* const weights = job.weights_as_double + i * job.weight_stride;
    FourDoubles<V> sum = FourDoubles<V>::Set(kHorizontalHalf);
    for (std::ptrdiff_t t = 0; t < job.count[i]; ++t, pixel += kChannels) {
      sum.AddProduct(FourDoubles<V>::Load(pixel), FourDoubles<V>::Set(weights[t]));
    }
    int32_t result[4];
    StoreLimited(result, sum, job.max_sample);
    for (int c = 0; c < kChannels; ++c) destination[c] = static_cast<Sample>(result[c]);
  }
}

template <class V, class Sample>
constexpr ReductionKernelsOf<Sample> kKernelsOf = {
    Sum<V, Sample>,
    Weigh<V, Sample>,
    {GreyColumns<V, Sample>, PixelColumns<V, Sample, 3>, PixelColumns<V, Sample, 4>}};

template <class V>
constexpr ReductionKernels kReductionOf = {kKernelsOf<V, uint8_t>, kKernelsOf<V, uint16_t>,
                                           kByteReductionOf<V>};

}  // namespace
}  // namespace ovra
