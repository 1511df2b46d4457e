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
void Split(const uint8_t* pixels, int16_t* planes, std::ptrdiff_t plane_stride,
           std::ptrdiff_t width) {
  static_assert(kEdgeSampleScale == 2);
  const auto block = [&](std::ptrdiff_t x) {
    const SixteenPixels<V> in(pixels + 3 * x);
    for (int c = 0; c < 3; ++c) {
      for (int r = 0; r < in.kRegs; ++r) {
        const auto samples = in.samples[c][r];
        V::Store(planes + c * plane_stride + x + r * (V::kBytes / 2), V::Add16(samples, samples));
      }
    }
  };
  if (!CoverRow(width, SixteenPixels<V>::kPixels, block)) {
    Narrower<V>().split(pixels, planes, plane_stride, width);
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
    }
  }

  // From distances, saturated bytes, to -32 * weight: those of the lower half of each lane in
  // factors[0], of the upper in factors[1].
  void operator()(Reg distances, Reg (&factors)[2]) const {
    const Reg excess = V::SubSatU8(distances, full_until);
    Reg low_bytes = V::Zero();
    Reg high_bytes = V::Zero();
    for (int s = 0; s < kSegments; ++s) {
      // Reaches 0x80, for which a shuffle gives 0, beyond the segment's 16 entries.
      const Reg index = V::AddSatU8(excess, V::Set8(0x70 - 16 * s));
      low_bytes = V::Xor(low_bytes, V::Shuffle8(low[s], index));
      high_bytes = V::Xor(high_bytes, V::Shuffle8(high[s], index));
    }
    factors[0] = V::template UnpackLow<8>(low_bytes, high_bytes);
    factors[1] = V::template UnpackHigh<8>(low_bytes, high_bytes);
  }

  Reg full_until;
  Reg low[kSegments];
  Reg high[kSegments];
};

// Divides by 49 toward zero; right for every sum of 49 differences of bytes.
template <class V>
typename V::Reg DivideByNeighbours(typename V::Reg a) {
  constexpr int kShift = 4;
  constexpr int32_t kReciprocal = ((1 << (16 + kShift)) + kEdgeNeighbours - 1) / kEdgeNeighbours;
  const typename V::Reg quotient = V::ShiftRight16(V::MulHigh16(a, V::Set16(kReciprocal)), kShift);
  return V::Sub16(quotient, V::ShiftRight16(a, 15));
}

// Filters a register's 16-bit samples from column x on. Neighbours are taken two by two, so that the
// bytes of their distances fill a register: both pull at the same pixels, whose sums stay in
// registers. The pixel itself, in the middle, does not pull.
template <class V, int kSegments>
void FilterSamples(const EdgeNeighbours& neighbours, const EdgeLookup<V, kSegments>& look_up,
                   std::ptrdiff_t x, typename V::Reg (&values)[3]) {
  using Reg = typename V::Reg;
  const std::ptrdiff_t stride = neighbours.plane_stride;
  Reg centre[3];
  Reg pull[3];
  for (int c = 0; c < 3; ++c) {
    centre[c] = V::Load(neighbours.Centre() + c * stride + x);
    pull[c] = V::Zero();
  }
  for (int k = 0; k < kEdgeNeighbours / 2; ++k) {
    const int16_t* const samples[2] = {neighbours.samples[k],
                                       neighbours.samples[kEdgeNeighbours - 1 - k]};
    Reg difference[2][3];  // from the neighbour to the pixel; the factors are negative
    Reg distance[2];
    for (int n = 0; n < 2; ++n) {
      for (int c = 0; c < 3; ++c) {
        difference[n][c] = V::Sub16(centre[c], V::Load(samples[n] + c * stride + x));
      }
      distance[n] = V::Add16(V::Add16(V::Abs16(difference[n][0]), V::Abs16(difference[n][1])),
                             V::Abs16(difference[n][2]));
    }
    // Twice the distance saturates at 255, which the average with 0 rounds to 128: beyond the end
    // of both tables.
    static_assert(kEdgeSampleScale == 2);
    Reg factors[2];
    look_up(V::AverageU8(V::PackU16(distance[0], distance[1]), V::Zero()), factors);
    for (int n = 0; n < 2; ++n) {
      for (int c = 0; c < 3; ++c) {
        pull[c] = V::Add16(pull[c], V::MulHigh16(difference[n][c], factors[n]));
      }
    }
  }
  for (int c = 0; c < 3; ++c) {
    values[c] = V::Add16(V::ShiftRight16(centre[c], 1), DivideByNeighbours<V>(pull[c]));
  }
}

// V::kBytes pixels from column x on: one register of bytes a channel.
template <class V, int kSegments>
void FilterBlock(const EdgeNeighbours& neighbours, const EdgeLookup<V, kSegments>& look_up,
                 std::ptrdiff_t x, typename V::Reg (&results)[3]) {
  typename V::Reg values[2][3];
  FilterSamples<V, kSegments>(neighbours, look_up, x, values[0]);
  FilterSamples<V, kSegments>(neighbours, look_up, x + V::kBytes / 2, values[1]);
  for (int c = 0; c < 3; ++c) {
    results[c] = V::InOrder(V::PackU16(values[0][c], values[1][c]));
  }
}

template <class V, int kSegments>
void Filter(const EdgeNeighbours& neighbours, const EdgeTable& table, uint8_t* output,
            std::ptrdiff_t width) {
  const EdgeLookup<V, kSegments> look_up(table);
  const auto block = [&](std::ptrdiff_t x) {
    typename V::Reg results[3];
    FilterBlock<V, kSegments>(neighbours, look_up, x, results);
    JoinThreeChannels<V, 8>(results, output + 3 * x);
  };
  if (!CoverRow(width, V::kBytes, block)) {
    Narrower<V>().Filter(table)(neighbours, table, output, width);
  }
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
    Split<V>, {Filter<V, 2>, Filter<V, 3>}, ColorDifference<V>, CountMiddling<V>};

}  // namespace
}  // namespace ovra
