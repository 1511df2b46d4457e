// SPDX-License-Identifier: MIT
#include "resample/small_resize/byte_reduction.h"

#include <algorithm>

namespace ovra {
namespace {

constexpr std::ptrdiff_t RoundUp(std::ptrdiff_t count, std::ptrdiff_t step) {
  return (count + step - 1) / step * step;
}

// The weight as high * 2^bits + low, low being signed.
struct SplitWeight {
  SplitWeight(int32_t weight, int32_t bits)
      : high((weight + (1 << bits >> 1)) >> bits), low(weight - high * (1 << bits)) {}

  int32_t high;
  int32_t low;
};

// The fewest low bits with which every high part fits a signed word.
int32_t LowBitsFor(const int32_t* weights, int32_t count) {
  int32_t greatest = 0;
  for (int32_t t = 0; t < count; ++t) greatest = std::max(greatest, std::abs(weights[t]));
  int32_t bits = kMinByteLowBits;
  while (greatest >> bits >= INT16_MAX) ++bits;
  return bits;
}

int32_t PairOf(int32_t first, int32_t second, int32_t bits) {
  const int32_t mask = (1 << bits) - 1;
  return static_cast<int32_t>(static_cast<uint32_t>(first & mask) |
                              static_cast<uint32_t>(second & mask) << bits);
}

}  // namespace

bool ByteReduction::Prepare(const ReductionColumns& columns, uint32_t channels,
                            const ByteReductionKernels& kernels) {
  const std::ptrdiff_t taps =
      RoundUp(*std::max_element(columns.count, columns.count + columns.columns), kByteColumnStep);
  if (kernels.weigh_rows == nullptr || taps > kMaxByteColumnTaps ||
      columns.intermediate_samples < kernels.min_samples) {
    return true;
  }
  channels_ = channels;
  samples_ = columns.intermediate_samples;
  const std::ptrdiff_t pixels = samples_ / static_cast<std::ptrdiff_t>(channels);
  const auto room = static_cast<uint64_t>(RoundUp(columns.columns, kByteColumnsAtOnce));
  job_.plane_spacing = RoundUp(pixels + taps, kByteColumnStep);
  job_.taps = taps;
  job_.columns = columns.columns;
  if (!intermediate_.Allocate(static_cast<uint64_t>(samples_ + taps)) ||
      !planes_.Allocate(channels == 1 ? 0 : static_cast<uint64_t>(job_.plane_spacing) * channels) ||
      !weights_.Allocate(room * 2 * static_cast<uint64_t>(taps)) || !first_.Allocate(room) ||
      !offsets_.Allocate(room)) {
    return false;
  }
  FillColumns(columns);
  job_.planes = channels == 1 ? intermediate_.data() : planes_.data();
  job_.weights = weights_.data();
  job_.first = first_.data();
  job_.offsets = offsets_.data();
  kernels_ = &kernels;
  weigh_columns_ = kernels.weigh_columns[channels == 1 ? 0 : channels - 2];
  return true;
}

// Columns beyond the last one, which fill the last group, weigh nothing.
void ByteReduction::FillColumns(const ReductionColumns& columns) {
  const std::ptrdiff_t room = RoundUp(columns.columns, kByteColumnsAtOnce);
  std::fill_n(weights_.data(), room * 2 * job_.taps, int16_t{0});
  std::fill_n(first_.data(), room, 0);
  std::fill_n(offsets_.data(), room, 0);
  for (std::ptrdiff_t i = 0; i < columns.columns; ++i) {
    const int32_t* const from = columns.weights + i * columns.weight_stride;
    int16_t* const high = weights_.data() + i * 2 * job_.taps;
    int32_t sum = 0;
    for (std::ptrdiff_t t = 0; t < columns.count[i]; ++t) {
      const SplitWeight split(from[t], kByteColumnLowBits);
      high[t] = static_cast<int16_t>(split.high);
      high[job_.taps + t] = static_cast<int16_t>(split.low);
      sum += from[t];
    }
    first_[static_cast<size_t>(i)] = columns.first[i];
    offsets_[static_cast<size_t>(i)] =
        kByteIntermediateOffset * (sum >> kByteColumnLowBits) + kByteColumnRounding;
  }
}

bool ByteReduction::Fits(const WeighedRows<uint8_t>& rows) {
  if (kernels_ == nullptr || rows.count > kMaxByteRows || rows.count == 0) return false;
  const int32_t bits = LowBitsFor(rows.weights, rows.count);
  if (bits > kMaxByteLowBits) return false;
  rows_.low_bits = bits;
  rows_.pairs = (rows.count + 1) / 2;
  rows_.pairs_at_once = 1 << (kMaxByteLowBits - bits);
  // An odd last row is paired with itself; the weight of its second self is 0.
  for (int32_t t = 0; t < 2 * rows_.pairs; ++t) {
    rows_.rows[t] = rows.rows[std::min(t, rows.count - 1)];
  }
  for (int32_t p = 0; p < rows_.pairs; ++p) {
    const SplitWeight first(rows.weights[2 * p], bits);
    const SplitWeight second(2 * p + 1 < rows.count ? rows.weights[2 * p + 1] : 0, bits);
    constexpr int32_t kByteBits = 8;
    constexpr int32_t kWordBits = 16;
    const int32_t low = PairOf(first.low, second.low, kByteBits);
    rows_.high[p] = PairOf(first.high, second.high, kWordBits);
    rows_.low[p] = PairOf(low, low, kWordBits);
  }
  return true;
}

void ByteReduction::Write(const SourceAhead& ahead, uint8_t* destination) {
  kernels_->weigh_rows(rows_, samples_, ahead, intermediate_.data());
  if (channels_ != 1) {
    kernels_->split[channels_ - 3](intermediate_.data(),
                                   samples_ / static_cast<std::ptrdiff_t>(channels_),
                                   planes_.data(), job_.plane_spacing);
  }
  weigh_columns_(job_, destination);
}

}  // namespace ovra
