// SPDX-License-Identifier: MIT
// The edge filter's row kernel on vectors of any width. Included by one kernel file a tier.
#pragma once

#include <cstring>

#include "filter/channel_shuffles.h"
#include "filter/edge_filter_kernels.h"
#include "filter/vector_ops.h"

namespace ovra {
namespace {

template <class V>
void SplitEdgeRow(const uint8_t* pixels, int16_t* planes, std::ptrdiff_t plane_stride,
                  std::ptrdiff_t width) {
  static_assert(kEdgeSampleScale == 2);
  std::ptrdiff_t x = 0;
  for (; x + 16 <= width; x += 16) {
    Pixels16<V> in(pixels + 3 * x);
    for (int c = 0; c < 3; ++c) {
      for (int r = 0; r < Pixels16<V>::kRegs; ++r) {
        const typename V::Reg samples = in.samples[c][r];
        V::Store(planes + c * plane_stride + x + r * (V::kBytes / 2), V::Add16(samples, samples));
      }
    }
  }
  SplitEdgeRowPlain(pixels + 3 * x, planes + x, plane_stride, width - x);
}

// An EdgeTable in registers.
template <class V, int kSegments>
struct EdgeLookup {
  using Reg = typename V::Reg;

  explicit EdgeLookup(const EdgeTable& table) : full_until(V::Set8(table.full_until)) {
    for (int s = 0; s < kSegments; ++s) {
      low[s] = V::LoadLanes(table.segments[s].low);
      high[s] = V::LoadLanes(table.segments[s].high);
    }
  }

  // From distances, saturated bytes, to -32 * weight: those of the lower half of each lane in
  // factors[0], of the upper in factors[1].
  void operator()(Reg distances, Reg factors[2]) const {
    const Reg excess = V::SaturatedSubU8(distances, full_until);
    Reg low_bytes = V::Zero();
    Reg high_bytes = V::Zero();
    for (int s = 0; s < kSegments; ++s) {
      // Reaches 0x80, for which a shuffle gives 0, beyond the segment's 16 entries.
      const Reg index = V::SaturatedAddU8(excess, V::Set8(0x70 - 16 * s));
      low_bytes = V::Xor(low_bytes, V::Shuffle8(low[s], index));
      high_bytes = V::Xor(high_bytes, V::Shuffle8(high[s], index));
    }
    factors[0] = V::UnpackLow8(low_bytes, high_bytes);
    factors[1] = V::UnpackHigh8(low_bytes, high_bytes);
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

// Filters V::kBytes pixels from column x on, two registers of 16-bit samples a channel. The results
// of each channel are one register of bytes, ordered as packing orders them.
template <class V, int kSegments>
void FilterEdgeBlock(const EdgeNeighbours& neighbours, const EdgeLookup<V, kSegments>& look_up,
                     std::ptrdiff_t x, typename V::Reg results[3]) {
  using Reg = typename V::Reg;
  constexpr std::ptrdiff_t kLanes = V::kBytes / 2;
  const std::ptrdiff_t stride = neighbours.plane_stride;
  Reg centre[3][2];
  Reg pull[3][2];
  for (int c = 0; c < 3; ++c) {
    for (int h = 0; h < 2; ++h) {
      centre[c][h] = V::Load(neighbours.Centre() + c * stride + x + h * kLanes);
      pull[c][h] = V::Zero();
    }
  }
  for (const int16_t* const samples : neighbours.samples) {
    Reg difference[3][2];  // from the neighbour to the pixel; the factors are negative
    Reg distance[2] = {V::Zero(), V::Zero()};
    for (int c = 0; c < 3; ++c) {
      for (int h = 0; h < 2; ++h) {
        difference[c][h] = V::Sub16(centre[c][h], V::Load(samples + c * stride + x + h * kLanes));
        distance[h] = V::Add16(distance[h], V::Abs16(difference[c][h]));
      }
    }
    // Twice the distance saturates at 255, which the average with 0 rounds to 128: beyond the end
    // of both tables.
    static_assert(kEdgeSampleScale == 2);
    Reg factors[2];
    look_up(V::AverageU8(V::PackU16(distance[0], distance[1]), V::Zero()), factors);
    for (int c = 0; c < 3; ++c) {
      for (int h = 0; h < 2; ++h) {
        pull[c][h] = V::Add16(pull[c][h], V::MulHigh16(difference[c][h], factors[h]));
      }
    }
  }
  for (int c = 0; c < 3; ++c) {
    Reg value[2];
    for (int h = 0; h < 2; ++h) {
      value[h] = V::Add16(V::ShiftRight16(centre[c][h], 1), DivideByNeighbours<V>(pull[c][h]));
    }
    results[c] = V::PackU16(value[0], value[1]);
  }
}

template <class V, int kSegments>
void FilterEdgeRow(const EdgeNeighbours& neighbours, const EdgeTable& table, uint8_t* output,
                   std::ptrdiff_t width) {
  const EdgeLookup<V, kSegments> look_up(table);
  typename V::Reg results[3];
  std::ptrdiff_t x = 0;
  for (; x + V::kBytes <= width; x += V::kBytes) {
    FilterEdgeBlock(neighbours, look_up, x, results);
    InterleaveChannels(results, output + 3 * x);
  }
  if (x < width) {
    static_assert(V::kBytes <= kEdgeSlack);
    uint8_t pixels[3 * V::kBytes];
    FilterEdgeBlock(neighbours, look_up, x, results);
    InterleaveChannels(results, pixels);
    std::memcpy(output + 3 * x, pixels, static_cast<size_t>(3 * (width - x)));
  }
}

template <class V>
void FilterEdgeRow(const EdgeNeighbours& neighbours, const EdgeTable& table, uint8_t* output,
                   std::ptrdiff_t width) {
  static_assert(EdgeTable::kMaxSegments == 3);
  if (table.segment_count == 2) {
    FilterEdgeRow<V, 2>(neighbours, table, output, width);
  } else {
    FilterEdgeRow<V, 3>(neighbours, table, output, width);
  }
}

}  // namespace
}  // namespace ovra
