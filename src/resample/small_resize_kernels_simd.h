// SPDX-License-Identifier: MIT
// The accelerated passes of a strong reduction, written once over a vector type. Each tier includes
// this file and gives it a `Vector`; everything stays inside that tier's translation unit.
//
// Vertically a weight w is split into w = high * 256 + low with a signed 16-bit high and an unsigned
// 8-bit low half, so that pairs of rows meet in 16-bit multiply-add instructions. 16-bit samples are
// moved to the signed range by subtracting 2^15, which is added again, times the sum of the weights,
// at the end. Horizontally four rows run side by side in doubles, which hold the sums exactly.
#pragma once

#include <immintrin.h>

#include <cstddef>
#include <cstdint>

#include "resample/small_resize_kernels.h"

namespace ovra {
namespace {

constexpr int kLowBits = 8;
constexpr int32_t kLowMask = (1 << kLowBits) - 1;
constexpr int kVerticalShift = kReductionWeightBits - kReductionIntermediateBits;
// high * 256 is split once more, so that no lane needs more than 32 bits.
constexpr int kHighShift = kVerticalShift - kLowBits;

// Sums of the low halves stay within 31 bits: 256 * 255 * 2^15 + rounding < 2^31.
constexpr int32_t kMaxVerticalTaps = 256;

struct WeightPairs {
  // Weights of two rows each, the first in the lower 16 bits.
  int32_t high[kMaxVerticalTaps / 2];
  int32_t low[kMaxVerticalTaps / 2];
  int32_t pairs;
  int32_t sum;
};

WeightPairs SplitWeights(const ReductionAxis::Taps& taps) {
  WeightPairs split;
  split.pairs = (taps.count + 1) / 2;
  split.sum = 0;
  for (int32_t p = 0; p < split.pairs; ++p) {
    const int32_t first = taps.weights[2 * p];
    const int32_t second = 2 * p + 1 < taps.count ? taps.weights[2 * p + 1] : 0;
    split.high[p] = ((first >> kLowBits) & 0xFFFF) | (second >> kLowBits) * (1 << 16);
    split.low[p] = (first & kLowMask) | (second & kLowMask) << 16;
    split.sum += first + second;
  }
  return split;
}

// One vector of 16-bit lanes for each of two rows, multiplied with their weights and summed; a row
// pair is interleaved into two vectors, `near` and `far`.
template <class Vector>
struct VerticalSums {
  typename Vector::Int high_near = Vector::Zero();
  typename Vector::Int high_far = Vector::Zero();
  typename Vector::Int low_near = Vector::Zero();
  typename Vector::Int low_far = Vector::Zero();

  template <class Sample>
  void Add(const Sample* first, const Sample* second, typename Vector::Int high,
           typename Vector::Int low) {
    const typename Vector::Int a = Vector::LoadSigned(first);
    const typename Vector::Int b = Vector::LoadSigned(second);
    const typename Vector::Int near = Vector::InterleaveNear(a, b);
    const typename Vector::Int far = Vector::InterleaveFar(a, b);
    high_near = Vector::Add(high_near, Vector::MultiplyAddPairs(near, high));
    high_far = Vector::Add(high_far, Vector::MultiplyAddPairs(far, high));
    low_near = Vector::Add(low_near, Vector::MultiplyAddPairs(near, low));
    low_far = Vector::Add(low_far, Vector::MultiplyAddPairs(far, low));
  }

  void Store(int32_t* out, typename Vector::Int offset) const {
    Vector::StoreInterleaved(out, Combine(high_near, low_near, offset),
                             Combine(high_far, low_far, offset));
  }

 private:
  // (high * 256 + low + half) >> kVerticalShift, plus the offset.
  static typename Vector::Int Combine(typename Vector::Int high, typename Vector::Int low,
                                      typename Vector::Int offset) {
    const auto whole = Vector::template ShiftRight<kHighShift>(high);
    const auto rest = Vector::And(high, Vector::Broadcast((1 << kHighShift) - 1));
    const auto small = Vector::Add(Vector::template ShiftLeft<kLowBits>(rest), low);
    const auto rounded = Vector::template ShiftRight<kVerticalShift>(
        Vector::Add(small, Vector::Broadcast(1 << (kVerticalShift - 1))));
    return Vector::Add(Vector::Add(whole, rounded), offset);
  }
};

template <class Vector, class Sample>
void Vertical(const Sample* first_row, std::ptrdiff_t stride_bytes, const ReductionAxis::Taps& taps,
              std::ptrdiff_t samples, int32_t* intermediate) {
  constexpr std::ptrdiff_t kLanes = Vector::kLanes16;
  constexpr std::ptrdiff_t kStep = 2 * kLanes;
  if (taps.count > kMaxVerticalTaps || samples < kStep) {
    ReductionKernelsPlain<Sample>().vertical(first_row, stride_bytes, taps, samples, intermediate);
    return;
  }
  const WeightPairs weights = SplitWeights(taps);
  // 2^15 * sum, brought to the intermediate's scale.
  const auto offset = Vector::Broadcast(sizeof(Sample) == 2 ? weights.sum : 0);
  static_assert(15 == kVerticalShift);
  const auto* base = reinterpret_cast<const uint8_t*>(first_row);
  for (std::ptrdiff_t i = 0; i < samples; i += kStep) {
    if (i > samples - kStep) i = samples - kStep;  // the last step overlaps the one before
    VerticalSums<Vector> left;
    VerticalSums<Vector> right;
    for (int32_t p = 0; p < weights.pairs; ++p) {
      const auto* a = reinterpret_cast<const Sample*>(base + 2 * p * stride_bytes) + i;
      // An odd last row is paired with itself; the weight of its second self is 0.
      const bool paired = 2 * p + 1 < taps.count;
      const auto* b =
          reinterpret_cast<const Sample*>(base + (2 * p + (paired ? 1 : 0)) * stride_bytes) + i;
      const auto high = Vector::Broadcast(weights.high[p]);
      const auto low = Vector::Broadcast(weights.low[p]);
      left.Add(a, b, high, low);
      right.Add(a + kLanes, b + kLanes, high, low);
    }
    left.Store(intermediate + i, offset);
    right.Store(intermediate + i + kLanes, offset);
  }
}

// Four rows as doubles, the same sample of each side by side.
template <class Vector>
void InterleaveRows(const int32_t* const* rows, std::ptrdiff_t samples, double* out) {
  std::ptrdiff_t i = 0;
  for (; i + 4 <= samples; i += 4) {
    const auto load = [&](int row) {
      return _mm_loadu_si128(reinterpret_cast<const __m128i*>(rows[row] + i));
    };
    const __m128i ab_low = _mm_unpacklo_epi32(load(0), load(1));   // a0 b0 a1 b1
    const __m128i ab_high = _mm_unpackhi_epi32(load(0), load(1));  // a2 b2 a3 b3
    const __m128i cd_low = _mm_unpacklo_epi32(load(2), load(3));   // c0 d0 c1 d1
    const __m128i cd_high = _mm_unpackhi_epi32(load(2), load(3));  // c2 d2 c3 d3
    Vector::StoreAsDoubles(out + 4 * i + 0, _mm_unpacklo_epi64(ab_low, cd_low));
    Vector::StoreAsDoubles(out + 4 * i + 4, _mm_unpackhi_epi64(ab_low, cd_low));
    Vector::StoreAsDoubles(out + 4 * i + 8, _mm_unpacklo_epi64(ab_high, cd_high));
    Vector::StoreAsDoubles(out + 4 * i + 12, _mm_unpackhi_epi64(ab_high, cd_high));
  }
  for (; i < samples; ++i) {
    for (int row = 0; row < kReductionRowGroup; ++row) out[4 * i + row] = rows[row][i];
  }
}

template <class Vector, int kChannels, class Sample>
void HorizontalPixels(const HorizontalReduction& job, Sample* const* destination) {
  constexpr double kHalf = 1 << (kReductionWeightBits + kReductionIntermediateBits - 1);
  constexpr double kScale = 0.5 / kHalf;
  for (int32_t i = 0; i < job.destination_width; ++i) {
    const ReductionAxis::Taps taps = (*job.axis)[i];
    const double* pixel =
        job.scratch + (taps.first - job.first_column) * kChannels * kReductionRowGroup;
    typename Vector::Double4 sums[kChannels];
    for (auto& sum : sums) sum = Vector::BroadcastDouble(kHalf);
    for (int32_t t = 0; t < taps.count; ++t) {
      const auto weight = Vector::BroadcastDouble(taps.weights_as_double[t]);
      for (auto& sum : sums) {
        sum = Vector::MultiplyAdd(sum, pixel, weight);
        pixel += kReductionRowGroup;
      }
    }
    for (int c = 0; c < kChannels; ++c) {
      int32_t result[kReductionRowGroup];
      Vector::StoreClamped(result, sums[c], kScale, job.max_sample);
      for (int row = 0; row < kReductionRowGroup; ++row) {
        destination[row][std::ptrdiff_t{i} * kChannels + c] = static_cast<Sample>(result[row]);
      }
    }
  }
}

template <class Vector, class Sample>
void Horizontal(const int32_t* const* intermediate, const HorizontalReduction& job,
                Sample* const* destination) {
  InterleaveRows<Vector>(intermediate, static_cast<std::ptrdiff_t>(job.columns) * job.channels,
                         job.scratch);
  if (job.channels == 1) {
    HorizontalPixels<Vector, 1>(job, destination);
  } else if (job.channels == 3) {
    HorizontalPixels<Vector, 3>(job, destination);
  } else {
    HorizontalPixels<Vector, 4>(job, destination);
  }
}

}  // namespace
}  // namespace ovra
