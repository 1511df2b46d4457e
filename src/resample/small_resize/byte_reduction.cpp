// SPDX-License-Identifier: MIT
#include "resample/small_resize/byte_reduction.h"

#include <algorithm>

namespace ovra {
namespace {

constexpr std::ptrdiff_t RoundUp(std::ptrdiff_t count, std::ptrdiff_t step) {
  return (count + step - 1) / step * step;
}

int16_t WordOf(int32_t weight) {
  return static_cast<int16_t>(weight >> kWordLowBits);
}

// The first in the lower bits.
int32_t PairOf(int16_t first, int16_t second) {
  constexpr int32_t kWordBits = 16;
  return static_cast<int32_t>(static_cast<uint16_t>(first) |
                              static_cast<uint32_t>(static_cast<uint16_t>(second)) << kWordBits);
}

}  // namespace

bool ByteReduction::Prepare(const ReductionAxis& columns, int32_t width, std::ptrdiff_t samples,
                            uint32_t channels, const ByteReductionKernels& kernels) {
  const std::ptrdiff_t taps = RoundUp(columns.MaxTaps(), kByteColumnStep);
  if (kernels.weigh_rows == nullptr || !columns.HasWords() || samples < kernels.min_samples) {
    return true;
  }
  channels_ = channels;
  samples_ = samples;
  const std::ptrdiff_t pixels = samples_ / static_cast<std::ptrdiff_t>(channels);
  const auto room = static_cast<uint64_t>(RoundUp(width, kByteColumnsAtOnce));
  job_.plane_spacing = RoundUp(pixels + taps, kByteColumnStep);
  job_.taps = taps;
  job_.columns = width;
  if (!intermediate_.Allocate(static_cast<uint64_t>(samples_ + taps)) ||
      !planes_.Allocate(channels == 1 ? 0 : static_cast<uint64_t>(job_.plane_spacing) * channels) ||
      !weights_.Allocate(room * static_cast<uint64_t>(taps)) || !first_.Allocate(room) ||
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
void ByteReduction::FillColumns(const ReductionAxis& columns) {
  const std::ptrdiff_t room = RoundUp(job_.columns, kByteColumnsAtOnce);
  std::fill_n(weights_.data(), room * job_.taps, int16_t{0});
  std::fill_n(first_.data(), room, 0);
  std::fill_n(offsets_.data(), room, 0);
  const int32_t first_column = columns.First(0);
  int32_t weights[kMaxWordTaps];
  for (int32_t i = 0; i < job_.columns; ++i) {
    const int32_t sum = columns.Fill(i, weights);
    std::transform(weights, weights + columns.MaxTaps(), weights_.data() + i * job_.taps, WordOf);
    first_[static_cast<size_t>(i)] = columns.First(i) - first_column;
    offsets_[static_cast<size_t>(i)] =
        kByteIntermediateOffset * (sum >> kWordLowBits) + kByteColumnRounding;
  }
}

void ByteReduction::Write(const WeighedRows<uint8_t>& rows, const SourceAhead& ahead,
                          uint8_t* destination) {
  rows_.pairs = (rows.count + 1) / 2;
  // An odd last row is paired with itself; the weight of its second self is 0.
  for (int32_t t = 0; t < 2 * rows_.pairs; ++t) {
    rows_.rows[t] = rows.rows[std::min(t, rows.count - 1)];
  }
  for (int32_t p = 0; p < rows_.pairs; ++p) {
    const int32_t second = 2 * p + 1 < rows.count ? rows.weights[2 * p + 1] : 0;
    rows_.weights[p] = PairOf(WordOf(rows.weights[2 * p]), WordOf(second));
  }
  kernels_->weigh_rows(rows_, samples_, ahead, intermediate_.data());
  if (channels_ != 1) {
    kernels_->split[channels_ - 3](intermediate_.data(),
                                   samples_ / static_cast<std::ptrdiff_t>(channels_),
                                   planes_.data(), job_.plane_spacing);
  }
  weigh_columns_(job_, destination);
}

}  // namespace ovra
