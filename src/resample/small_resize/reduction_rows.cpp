// SPDX-License-Identifier: MIT
#include "resample/small_resize/reduction_rows.h"

#include <algorithm>
#include <cmath>

namespace ovra {
namespace {

// Destination rows whose kernels cover one source row.
constexpr int32_t kOpenRows = 5;

// Whether so many rows, of each of which some lines are read or asked for, would meet in the same sets
// of the first-level cache and drive each other out.
bool RowsCollide(std::ptrdiff_t stride, int32_t rows) {
  constexpr int32_t kLines = 4;
  constexpr std::ptrdiff_t kLineBytes = 64;
  constexpr int32_t kSets = 64;
  constexpr int32_t kWays = 8;
  int32_t lines[kSets] = {};
  for (int32_t row = 0; row < rows; ++row) {
    const auto first = static_cast<size_t>(row * stride / kLineBytes);
    for (size_t line = first; line < first + kLines; ++line) {
      if (++lines[line % kSets] > kWays) return true;
    }
  }
  return false;
}

}  // namespace

template <class Sample>
Status ReductionRows<Sample>::Prepare(const ResizePlan& plan, RowMemory memory, KernelTier tier) {
  const ResizeShape& shape = plan.shape;
  const ResizeRegion& region = shape.region;
  kernels_ = &ForTier(tier, kReductionPlain, kReductionSse, kReductionAvx2).template Of<Sample>();
  weigh_columns_ = kernels_->WeighColumnsOf(plan.format.channels);
  const auto depth_bits = static_cast<int32_t>(plan.format.depth_bits);
  columns_ = ReductionAxis({shape.destination.width, shape.source.width, region.x, region.width,
                            plan.factors.horizontal},
                           plan.kernel.table, depth_bits);
  rows_ = ReductionAxis({shape.destination.height, shape.source.height, plan.FirstRegionRow(),
                         region.height, plan.factors.vertical},
                        plan.kernel.table, depth_bits);
  destination_height_ = shape.destination.height;
  source_stride_ = plan.SourceStride();
  rows_stay_ =
      RowsStay(memory) && !RowsCollide(source_stride_, std::min(rows_.MaxTaps(), kMaxKeptRows));
  const auto channels = static_cast<std::ptrdiff_t>(plan.format.channels);
  first_sample_ = columns_.First(0) * channels;
  samples_ = (columns_.Last(shape.destination.width - 1) + 1) * channels - first_sample_;
  const bool complete = PrepareBytes(plan, tier) &&
                        (byte_reduction_.Usable() || PrepareColumns(plan)) && AllocateRows();
  if (!complete) return OVRA_ERROR_NO_MEMORY;
  Restart();
  return OVRA_OK;
}

template <class Sample>
bool ReductionRows<Sample>::PrepareBytes(const ResizePlan& plan, KernelTier tier) {
  if constexpr (sizeof(Sample) == 1) {
    const ReductionKernels& kernels = ForTier(tier, kReductionPlain, kReductionSse, kReductionAvx2);
    if (rows_.MaxTaps() > kMaxReductionRows || !rows_.HasWords()) return true;
    return byte_reduction_.Prepare(columns_, plan.shape.destination.width, samples_,
                                   plan.format.channels, kernels.bytes);
  }
  return true;
}

template <class Sample>
bool ReductionRows<Sample>::PrepareColumns(const ResizePlan& plan) {
  const int32_t width = plan.shape.destination.width;
  const std::ptrdiff_t stride = (std::ptrdiff_t{columns_.MaxTaps()} + kReductionWeightStep - 1) /
                                kReductionWeightStep * kReductionWeightStep;
  const auto sets = static_cast<uint64_t>(width);
  const auto weights = sets * static_cast<uint64_t>(stride);
  if (!column_first_.Allocate(sets) || !column_count_.Allocate(sets) ||
      !column_weights_.Allocate(weights) || !column_weights_as_double_.Allocate(weights) ||
      !scratch_.Allocate(static_cast<uint64_t>(samples_) + kReductionWeightStep)) {
    return false;
  }
  column_job_ = {column_first_.data(),
                 column_count_.data(),
                 column_weights_.data(),
                 column_weights_as_double_.data(),
                 stride,
                 width,
                 samples_,
                 static_cast<int32_t>(plan.format.MaxSample()),
                 scratch_.data()};
  FillColumns();
  return true;
}

template <class Sample>
bool ReductionRows<Sample>::AllocateRows() {
  const auto samples = static_cast<uint64_t>(samples_);
  const int32_t taps = rows_.MaxTaps();
  const bool general = !byte_reduction_.Usable();
  rows_to_keep_ = std::min(taps, rows_stay_ || !general ? kMaxKeptRows : kCopiedRows);
  if (!row_weights_.Allocate(static_cast<uint64_t>(taps)) ||
      (general && !intermediate_.Allocate(samples)) ||
      (!rows_stay_ && !kept_.Allocate(samples, static_cast<uint64_t>(rows_to_keep_)))) {
    return false;
  }
  return taps <= rows_to_keep_ || sums_.Allocate(samples + kSpareReductionSums, kOpenRows);
}

template <class Sample>
void ReductionRows<Sample>::FillColumns() {
  const int32_t first_column = columns_.First(0);
  const std::ptrdiff_t stride = column_job_.weight_stride;
  for (int32_t i = 0; i < column_job_.columns; ++i) {
    const auto k = static_cast<size_t>(i);
    int32_t* const weights = column_weights_.data() + i * stride;
    std::fill(weights + columns_.MaxTaps(), weights + stride, 0);
    columns_.Fill(i, weights);
    std::copy(weights, weights + stride, column_weights_as_double_.data() + i * stride);
    column_first_[k] = columns_.First(i) - first_column;
    column_count_[k] = std::min(columns_.Last(i) - columns_.First(i) + 1, columns_.MaxTaps());
  }
}

template <class Sample>
void ReductionRows<Sample>::Restart() {
  taken_ = 0;
  next_destination_ = 0;
  window_first_ = 0;
  window_rows_ = 0;
  first_needed_ = rows_.First(0);
}

template <class Sample>
void ReductionRows<Sample>::Take(const uint8_t* row) {
  const int32_t number = taken_++;
  source_end_ = row + source_stride_;
  if (next_destination_ == destination_height_ || number < first_needed_) {
    return;  // no kernel reaches it
  }
  if (window_rows_ == rows_to_keep_) SumKeptRows();
  if (window_rows_ == 0) window_first_ = number;
  const Sample* const samples = reinterpret_cast<const Sample*>(row) + first_sample_;
  if (rows_stay_) {
    window_[window_rows_++] = samples;
  } else {
    std::copy_n(samples, samples_, kept_.Row(number));
    window_[window_rows_++] = kept_.Row(number);
  }
}

// Rows of the kernel that are not kept have been summed.
template <class Sample>
typename ReductionRows<Sample>::Part ReductionRows<Sample>::PartOf(int32_t destination_row) {
  int32_t* const weights = row_weights_.data();
  const int32_t weight_sum = rows_.Fill(destination_row, weights);
  const int32_t first = rows_.First(destination_row);
  const int32_t begin = std::max(first, window_first_);
  const int32_t end = std::min(rows_.Last(destination_row) + 1, window_first_ + window_rows_);
  if (begin >= end) return {{nullptr, nullptr, 0}, weight_sum, false};
  return {{window_ + (begin - window_first_), weights + (begin - first), end - begin},
          weight_sum,
          begin == first};
}

template <class Sample>
void ReductionRows<Sample>::Write(uint8_t* destination) {
  Weigh(PartOf(next_destination_), reinterpret_cast<Sample*>(destination));
  ++next_destination_;
  if (next_destination_ == destination_height_) return;
  first_needed_ = rows_.First(next_destination_);
  DropRowsBefore(first_needed_);
}

template <class Sample>
void ReductionRows<Sample>::Weigh(const Part& part, Sample* destination) {
  if constexpr (sizeof(Sample) == 1) {
    if (byte_reduction_.Usable()) {
      return byte_reduction_.Write(part.rows, Ahead(), destination);
    }
  }
  kernels_->weigh_rows(part.rows, samples_, part.begins ? nullptr : sums_.Row(next_destination_),
                       part.weight_sum, intermediate_.data());
  weigh_columns_(intermediate_.data(), column_job_, destination);
}

// The rows that the next destination row waits for, as if they followed those taken.
template <class Sample>
SourceAhead ReductionRows<Sample>::Ahead() const {
  const int32_t next = next_destination_ + 1;
  if (next >= destination_height_) return {source_end_, 0};
  constexpr int64_t kMostBytes = 256 * 1024;  // more would not be in the cache any longer
  const int64_t bytes = int64_t{rows_.Last(next) + 1 - taken_} * source_stride_;
  return {source_end_, static_cast<std::ptrdiff_t>(std::min(bytes, kMostBytes))};
}

template <class Sample>
void ReductionRows<Sample>::DropRowsBefore(int32_t row) {
  const int32_t dropped = std::clamp(row - window_first_, 0, window_rows_);
  std::copy(window_ + dropped, window_ + window_rows_, window_);
  window_first_ += dropped;
  window_rows_ -= dropped;
}

// Every destination row that is open reaches beyond the rows kept.
template <class Sample>
void ReductionRows<Sample>::SumKeptRows() {
  const int32_t end = window_first_ + window_rows_;
  for (int32_t row = next_destination_; row < destination_height_ && rows_.First(row) < end;
       ++row) {
    const Part part = PartOf(row);
    kernels_->sum_rows(part.rows, samples_, part.begins, sums_.Row(row));
  }
  window_first_ = end;
  window_rows_ = 0;
}

template class ReductionRows<uint8_t>;
template class ReductionRows<uint16_t>;

}  // namespace ovra
