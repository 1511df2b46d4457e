// SPDX-License-Identifier: MIT
// The vector forms, for registers of any width. Included by one kernel file a tier.
#pragma once

#include "core/vector_ops.h"
#include "tone/pyramid/limited_vector.h"
#include "tone/tone_grid/kernels.h"

namespace ovra {
namespace {

constexpr std::ptrdiff_t kLaneWords = 8;

// Spreads word k of eight over a whole lane: over the second lane of two word k + 4.
struct SpreadOrders {
  alignas(32) int8_t orders[8][32];

  constexpr SpreadOrders() : orders() {
    for (int k = 0; k < 8; ++k) {
      for (int i = 0; i < 32; ++i) {
        orders[k][i] = static_cast<int8_t>((k + i / 16 * 4) % 8 * 2 + i % 2);
      }
    }
  }
};

constexpr SpreadOrders kSpreadOrders;

// Adds the lanes of both halves of eight sums to the sums of a cell.
template <class V>
void AddSums(typename V::Reg low, typename V::Reg high, int32_t* sums) {
  auto first = Sse::Load(sums);
  auto second = Sse::Load(sums + 4);
  for (int lane = 0; lane < V::kLanes; ++lane) {
    first = Sse::Add32(first, V::Lane(low, lane));
    second = Sse::Add32(second, V::Lane(high, lane));
  }
  Sse::Store(sums, first);
  Sse::Store(sums + 4, second);
}

// Samples of one cell, eight at a time. The sums stand side by side in a lane, so that a sample is
// limited by all tones at once.
template <class V>
void AddSamples(const int16_t* samples, std::ptrdiff_t count, int32_t* sums) {
  const auto zero = V::Zero();
  alignas(16) static constexpr int16_t kTones[] = {4096,  8192,  12288, 16384,
                                                   20480, 24576, 28672, 32767};
  const auto tones = V::LoadToAllLanes(kTones);
  auto low = zero;
  auto high = zero;
  for (std::ptrdiff_t i = 0; i < count; i += kLaneWords) {
    const auto eight = V::LoadToAllLanes(samples + i);
    const auto limited = [&](int k) {
      return V::Min16(V::Shuffle8(eight, V::LoadAligned(kSpreadOrders.orders[k])), tones);
    };
    for (int k = 0; k < 8 / V::kLanes; k += 2) {
      const auto two = V::Add16(limited(k), limited(k + 1));  // fits 16 bits without sign
      low = V::Add32(low, V::template UnpackLow<16>(two, zero));
      high = V::Add32(high, V::template UnpackHigh<16>(two, zero));
    }
  }
  AddSums<V>(low, high, sums);
}

template <class V>
void AddRow(const int16_t* samples, std::ptrdiff_t width, int32_t cell_bits, int32_t* sums) {
  const std::ptrdiff_t cell = std::ptrdiff_t{1} << cell_bits;
  if (cell < kLaneWords) return kToneGridPlain.add_row(samples, width, cell_bits, sums);
  for (std::ptrdiff_t x = 0; x < width; x += cell, sums += kGridSums) {
    const std::ptrdiff_t count = width - x < cell ? width - x : cell;
    const std::ptrdiff_t whole = count / kLaneWords * kLaneWords;
    AddSamples<V>(samples + x, whole, sums);
    kToneGridPlain.add_row(samples + x + whole, count - whole, cell_bits, sums);
  }
}

// A share of 2^(scale + 1) as one of 2^15.
int32_t Share15(std::ptrdiff_t fraction, int32_t scale) {
  return static_cast<int32_t>(fraction << (14 - scale));
}

template <class V>
void BlendRows(const GridCell* top, const GridCell* bottom, int32_t fraction, int32_t scale,
               GridColumn* columns, std::ptrdiff_t count) {
  const auto share = V::Set16(Share15(fraction, scale));
  const auto blended = [&](std::ptrdiff_t i, int first) {
    const std::ptrdiff_t next = i + V::kLanes - 1;
    const auto a = V::LoadLanes(top[i].values + first, top[next].values + first);
    const auto b = V::LoadLanes(bottom[i].values + first, bottom[next].values + first);
    return V::Add16(a, V::MulRound15(V::Sub16(b, a), share));
  };
  std::ptrdiff_t i = 0;
  for (; i + V::kLanes <= count; i += V::kLanes) {
    const std::ptrdiff_t next = i + V::kLanes - 1;
    const auto values = blended(i, 0);
    const auto steps = V::Sub16(blended(i, 1), values);
    V::StoreLanes(columns[i].values, columns[next].values, values);
    V::StoreLanes(columns[i].steps, columns[next].steps, steps);
  }
  NarrowerThan<V>(kToneGridPlain, kToneGridSse)
      .blend_rows(top + i, bottom + i, fraction, scale, columns + i, count - i);
}

// Two columns at the tones of a lane's pixels; those of each lane are its own.
template <class V>
struct ColumnPairs {
  using Reg = typename V::Reg;

  ColumnPairs(const GridColumn* first, const GridColumn* second)
      : left(V::LoadLanes(first[0].values, second[0].values)),
        left_steps(V::LoadLanes(first[0].steps, second[0].steps)),
        right(V::LoadLanes(first[1].values, second[1].values)),
        right_steps(V::LoadLanes(first[1].steps, second[1].steps)) {}

  Reg AtTones(Reg tones, Reg shares) const {
    // Bytes 2 z and 2 z + 1 of the tables, for tone z * 4096 + rest.
    const auto nodes = V::ShiftRightU16(tones, 12);
    const auto order = V::Add16(V::MulLow16(nodes, V::Set16(0x0202)), V::Set16(0x0100));
    const auto rest = V::And(V::ShiftLeft16(tones, 3), V::Set16(0x7FF8));
    const auto at = [&](Reg values, Reg steps) {
      return V::Add16(V::Shuffle8(values, order), V::MulRound15(V::Shuffle8(steps, order), rest));
    };
    const auto from = at(left, left_steps);
    return V::Add16(from, V::MulRound15(V::Sub16(at(right, right_steps), from), shares));
  }

  Reg left;
  Reg left_steps;
  Reg right;
  Reg right_steps;
};

template <class V>
void SliceRow(const int16_t* tone, const int16_t* fine_detail, const GridColumn* columns,
              int32_t scale, const SoftLimit& limit, int16_t* detail, std::ptrdiff_t pixels) {
  const VectorLimit<V> limited(limit);
  const std::ptrdiff_t cell = std::ptrdiff_t{1} << scale;
  const auto column_of = [&](std::ptrdiff_t x) { return (2 * x + 1 + cell) >> (scale + 1); };
  const auto share_of = [&](std::ptrdiff_t x) {
    return Sse::Set16(Share15((2 * x + 1 + cell) & (2 * cell - 1), scale));
  };
  alignas(16) static constexpr int16_t kTwos[] = {0, 2, 4, 6, 8, 10, 12, 14};
  const auto shares_on = V::ShiftLeft16(V::LoadToAllLanes(kTwos), 14 - scale);
  const std::ptrdiff_t last_column = column_of(pixels - 1);
  // Eight pixels from here on, and from every eighth, lie between the same columns.
  const std::ptrdiff_t first = cell == kLaneWords ? -kLaneWords / 2 : 0;
  for (std::ptrdiff_t x = first; x < pixels; x += kLaneWords * V::kLanes) {
    const std::ptrdiff_t next = x + kLaneWords;
    const std::ptrdiff_t next_column = column_of(next);
    const ColumnPairs<V> pairs(columns + column_of(x),
                               columns + (next_column < last_column ? next_column : last_column));
    const auto shares = V::Add16(V::SetLanes(share_of(x), share_of(next)), shares_on);
    const auto pull = pairs.AtTones(V::Load(tone + x), shares);
    V::Store(detail + x, V::Sub16(V::Load(fine_detail + x), limited(pull)));
  }
}

template <class V>
constexpr ToneGridKernels kToneGridOf = {AddRow<V>, BlendRows<V>, SliceRow<V>};

}  // namespace
}  // namespace ovra
