// SPDX-License-Identifier: MIT
// The vector forms, for registers of any width. Included by one kernel file a tier.
#pragma once

#include "core/channel_shuffles.h"
#include "core/vector_ops.h"
#include "filter/edge_filter/kernels.h"

namespace ovra {
namespace {

template <class V>
const EdgeFilterKernels& Narrower() {
  return NarrowerThan<V>(kEdgeFilterPlain, kEdgeFilterSse);
}

// The channels of 16 pixels as 16-bit samples.
template <class V>
struct SixteenPixels {
  static constexpr std::ptrdiff_t kPixels = 16;
  static constexpr int kRegs = 2 / V::kLanes;

  explicit SixteenPixels(const uint8_t* pixels) {
    Sse::Reg channels[3];
    SplitThreeChannels<Sse, 8>(pixels, channels);
    for (int c = 0; c < 3; ++c) V::WidenU8To16(channels[c], samples[c]);
  }

  typename V::Reg samples[3][kRegs];
};

template <class V>
void Split(const uint8_t* pixels, uint8_t* planes, int16_t* scaled_planes, std::ptrdiff_t width,
           std::ptrdiff_t next) {
  static_assert(kEdgeSampleScale == 2);
  const auto block = [&](std::ptrdiff_t x) {
    PrefetchAt(pixels + 3 * x, next, 1);
    Sse::Reg channels[3];
    SplitThreeChannels<Sse, 8>(pixels + 3 * x, channels);
    for (int c = 0; c < 3; ++c) {
      Sse::Store(planes + c * kEdgePlane + x, channels[c]);
      typename V::Reg samples[2 / V::kLanes];
      V::WidenU8To16(channels[c], samples);
      for (int r = 0; r < 2 / V::kLanes; ++r) {
        int16_t* const to = scaled_planes + c * kEdgePlane + x + r * (V::kBytes / 2);
        const auto scaled = V::Add16(samples[r], samples[r]);
        V::Store(to, scaled);
        V::Store(to + kEdgeSecondCopy, scaled);
      }
    }
  };
  if (!CoverRow(width, Sse::kBytes, block)) {
    Narrower<V>().split(pixels, planes, scaled_planes, width, next);
  }
}

// An EdgeTable in registers.
template <class V, int kSegments>
struct EdgeLookup {
  using Reg = typename V::Reg;

  explicit EdgeLookup(const EdgeTable& table) : full_until(V::Set8(table.full_until)) {
    for (int s = 0; s < kSegments; ++s) {
      low[s] = V::LoadToAllLanes(table.segments[s].low);
      high[s] = V::LoadToAllLanes(table.segments[s].high);
      // Reaches 0x80, for which a shuffle gives 0, beyond the segment's 16 entries.
      to_index[s] = V::Set8(0x70 - 16 * s - table.full_until);
    }
  }

  // From distances, saturated bytes, to factors: those of the lower half of each lane in factors[0],
  // of the upper in factors[1].
  void operator()(Reg distances, Reg (&factors)[2]) const {
    const Reg falling = V::MaxU8(distances, full_until);
    Reg low_bytes = V::Zero();
    Reg high_bytes = V::Zero();
    for (int s = 0; s < kSegments; ++s) {
      const Reg index = V::AddSatU8(falling, to_index[s]);
      low_bytes = V::Xor(low_bytes, V::Shuffle8(low[s], index));
      high_bytes = V::Xor(high_bytes, V::Shuffle8(high[s], index));
    }
    factors[0] = V::template UnpackLow<8>(low_bytes, high_bytes);
    factors[1] = V::template UnpackHigh<8>(low_bytes, high_bytes);
  }

  Reg full_until;
  Reg to_index[kSegments];
  Reg low[kSegments];
  Reg high[kSegments];
};

// Sums of three absolute differences, saturated.
template <class V>
typename V::Reg Distances(const typename V::Reg (&pixels)[3], const uint8_t* neighbours) {
  const auto difference = [&](int c) {
    const auto others = V::Pinned(V::Load(neighbours + c * kEdgePlane));  // loaded once
    return V::Sub8(V::MaxU8(pixels[c], others), V::MinU8(pixels[c], others));
  };
  return V::AddSatU8(V::AddSatU8(difference(0), difference(1)), difference(2));
}

template <class V, int kSegments>
void Weigh(const uint8_t* const (&rows)[kEdgeLaterRows], const EdgeTable& table, int16_t* factors,
           std::ptrdiff_t columns) {
  const EdgeLookup<V, kSegments> look_up(table);
  const auto block = [&](std::ptrdiff_t x) {
    typename V::Reg pixels[3];
    for (int c = 0; c < 3; ++c) pixels[c] = V::Load(rows[0] + c * kEdgePlane + x);
    int16_t* out = factors + x;
    for (std::ptrdiff_t j = 0; j < kEdgeLaterRows; ++j) {
      for (std::ptrdiff_t i = FirstLater(j); i < kEdgeSide; ++i) {
        const auto distances = Distances<V>(pixels, rows[j] + x + kEdgeStep * (i - kEdgeMiddle));
        typename V::Reg made[2];
        look_up(V::InOrder(distances), made);
        V::Store(out, made[0]);
        V::Store(out + V::kBytes / 2, made[1]);
        out += kEdgePlane;
      }
    }
  };
  for (std::ptrdiff_t x = 0; x < columns; x += V::kBytes) block(x);
}

// Divides by 49 toward zero; right for every sum of 49 differences of bytes.
template <class V>
typename V::Reg DivideByNeighbours(typename V::Reg a) {
  constexpr int kShift = 4;
  constexpr int32_t kReciprocal = ((1 << (16 + kShift)) + kEdgeNeighbours - 1) / kEdgeNeighbours;
  const typename V::Reg quotient = V::ShiftRight16(V::MulHigh16(a, V::Set16(kReciprocal)), kShift);
  return V::Sub16(quotient, V::ShiftRight16(a, 15));
}

// One number a pixel and channel. Not an array: a compiler keeps members in registers.
template <class V>
struct ThreeSums {
  typename V::Reg first = V::Zero();
  typename V::Reg second = V::Zero();
  typename V::Reg third = V::Zero();
};

// Adds the pulls of two neighbours at a register's pixels. Factors are negative: the difference is that
// from the neighbour to the pixel.
template <class V>
[[gnu::always_inline]] inline void AddPulls(const typename V::Reg (&pixels)[3],
                                            const int16_t* later, const int16_t* earlier,
                                            const int16_t* later_factors,
                                            const int16_t* earlier_factors, ThreeSums<V>& sums) {
  const auto later_factor = V::Load(later_factors);
  const auto earlier_factor = V::Load(earlier_factors);
  const auto add = [&](int c, typename V::Reg& sum) {
    const auto later_pull =
        V::MulHigh16(V::Sub16(pixels[c], V::Load(later + c * kEdgePlane)), later_factor);
    const auto earlier_pull =
        V::MulHigh16(V::Sub16(pixels[c], V::Load(earlier + c * kEdgePlane)), earlier_factor);
    sum = V::Pinned(V::Add16(sum, V::Pinned(V::Add16(later_pull, earlier_pull))));
  };
  add(0, sums.first);
  add(1, sums.second);
  add(2, sums.third);
}

// Neighbours kFirst to kSide - 1 of a row below, and those opposite of a row above.
template <class V, std::ptrdiff_t kFirst>
[[gnu::always_inline]] inline void AddRowPulls(const typename V::Reg (&pixels)[3],
                                               const int16_t* later, const int16_t* earlier,
                                               std::ptrdiff_t lower, std::ptrdiff_t upper,
                                               const int16_t* later_factors,
                                               const int16_t* earlier_factors, ThreeSums<V>& sums) {
#pragma GCC unroll 7
  for (std::ptrdiff_t i = kFirst; i < kEdgeSide; ++i) {
    const std::ptrdiff_t step = kEdgeStep * (i - kEdgeMiddle);
    const std::ptrdiff_t plane = (i - kFirst) * kEdgePlane;
    AddPulls<V>(pixels, later + (step > 0 ? lower : upper) + step,
                earlier + (step > 0 ? upper : lower) - step, later_factors + plane,
                earlier_factors + plane - step, sums);
  }
}

// Filters a register's 16-bit samples from column x on.
template <class V>
void PullSamples(const EdgePulls& from, std::ptrdiff_t x, typename V::Reg (&values)[3]) {
  const int16_t* const row = from.rows[kEdgeMiddle];
  const typename V::Reg pixels[3] = {V::Load(row + x), V::Load(row + kEdgePlane + x),
                                     V::Load(row + 2 * kEdgePlane + x)};
  // The copies in which the block stands in the lower and in the upper half of cache lines.
  const bool is_lower = x % 32 < 16;
  const std::ptrdiff_t lower = is_lower ? x : x + kEdgeSecondCopy;
  const std::ptrdiff_t upper = is_lower ? x + kEdgeSecondCopy : x;
  ThreeSums<V> sums;
  AddRowPulls<V, FirstLater(0)>(pixels, row, row, lower, upper, from.factors[0] + x,
                                from.factors[0] + x, sums);
#pragma GCC unroll 1
  for (std::ptrdiff_t j = 1; j < kEdgeLaterRows; ++j) {
    const std::ptrdiff_t plane = LaterNumber(j, 0) * kEdgePlane;
    AddRowPulls<V, 0>(pixels, from.rows[kEdgeMiddle + j], from.rows[kEdgeMiddle - j], lower, upper,
                      from.factors[0] + plane + x, from.factors[j] + plane + x, sums);
  }
  const typename V::Reg pulls[3] = {sums.first, sums.second, sums.third};
  for (int c = 0; c < 3; ++c) {
    values[c] = V::Add16(V::ShiftRight16(pixels[c], 1), DivideByNeighbours<V>(pulls[c]));
  }
}

template <class V>
void Pull(const EdgePulls& pulls, uint8_t* output, std::ptrdiff_t width) {
  const auto block = [&](std::ptrdiff_t x) {
    typename V::Reg values[2][3];
    PullSamples<V>(pulls, x, values[0]);
    PullSamples<V>(pulls, x + V::kBytes / 2, values[1]);
    typename V::Reg results[3];
    for (int c = 0; c < 3; ++c) {
      results[c] = V::InOrder(V::PackU16(values[0][c], values[1][c]));
    }
    JoinThreeChannels<V, 8>(results, output + 3 * x);
  };
  if (!CoverRow(width, V::kBytes, block)) Narrower<V>().pull(pulls, output, width);
}

template <class V>
void ColorDifference(const uint8_t* pixels, int16_t* first, int16_t* second, std::ptrdiff_t width) {
  const auto block = [&](std::ptrdiff_t x) {
    const SixteenPixels<V> in(pixels + 3 * x);
    for (int r = 0; r < in.kRegs; ++r) {
      // All sums fit 16 bits: 45 * 255 and 3 * 255 * 19 are below 2^14.
      const auto c0 = in.samples[0][r];
      const auto c1 = in.samples[1][r];
      const auto c2 = in.samples[2][r];
      const std::ptrdiff_t at = x + r * (V::kBytes / 2);
      const auto others = V::Add16(V::MulLow16(c1, V::Set16(38)), V::MulLow16(c2, V::Set16(7)));
      V::Store(first + at, V::ShiftRight16(V::Sub16(V::MulLow16(c0, V::Set16(45)), others), 4));
      const auto twice = V::Sub16(V::Add16(c2, c2), V::Add16(c1, c1));
      const auto sum = V::Add16(twice, V::Sub16(c2, c0));
      V::Store(second + at, V::ShiftRight16(V::MulLow16(sum, V::Set16(19)), 4));
    }
  };
  if (!CoverRow(width, SixteenPixels<V>::kPixels, block)) {
    Narrower<V>().color_difference(pixels, first, second, width);
  }
}

template <class V>
uint32_t CountMiddling(const int16_t* a, const int16_t* b, std::ptrdiff_t width) {
  constexpr std::ptrdiff_t kStep = V::kBytes / 2;
  auto counts = V::Zero();
  std::ptrdiff_t x = 0;
  for (; x + kStep <= width; x += kStep) {
    const auto magnitude = V::Abs16(V::Sub16(V::Load(a + x), V::Load(b + x)));
    const auto excess = V::Sub16(magnitude, V::Set16(kMiddlingDifference));
    const auto middling = V::Equal16(V::MinU16(excess, V::Set16(kMiddlingDifference - 1)), excess);
    counts = V::Add32(counts, V::MulAdd16(middling, V::Set16(-1)));
  }
  uint32_t counts_apart[V::kBytes / 4];
  V::Store(counts_apart, counts);
  uint32_t count = Narrower<V>().count_middling(a + x, b + x, width - x);
  for (const uint32_t part : counts_apart) count += part;
  return count;
}

template <class V>
constexpr EdgeFilterKernels kEdgeFilterOf = {
    Split<V>, {Weigh<V, 2>, Weigh<V, 3>}, Pull<V>, ColorDifference<V>, CountMiddling<V>};

}  // namespace
}  // namespace ovra
