// SPDX-License-Identifier: MIT
#include "resample/small_resize/reduction_rows.h"

#include <algorithm>
#include <cmath>

namespace ovra {
namespace {

// Samples of a row that the vertical pass takes at a time: narrow enough for the rows under one
// stretched kernel to stay in the second-level cache while the next destination rows use them again.
constexpr std::ptrdiff_t kTileSamples = 1024;

// Rows of bands that are copied rather than summed: at fewer the sums are read and written too
// often, and more cost memory.
constexpr int32_t kKeptRows = 24;

// Destination rows whose kernels cover one source row.
constexpr int32_t kOpenRows = 5;

}  // namespace

template <class Sample>
Status ReductionRows<Sample>::Prepare(const ResizePlan& plan, RowUse use, KernelTier tier) {
  const ResizeShape& shape = plan.shape;
  const ResizeRegion& region = shape.region;
  kernels_ = &ForTier(tier, kReductionPlain, kReductionSse, kReductionAvx2).template Of<Sample>();
  weigh_columns_ = kernels_->WeighColumnsOf(plan.format.channels);
  columns_ = ReductionAxis({shape.destination.width, shape.source.width, region.x, region.width,
                            plan.factors.horizontal},
                           plan.kernel.table);
  rows_ = ReductionAxis({shape.destination.height, shape.source.height, plan.FirstRegionRow(),
                         region.height, plan.factors.vertical},
                        plan.kernel.table);
  destination_height_ = shape.destination.height;
  if (!AllocateColumns(plan) || !AllocateRows(use)) return OVRA_ERROR_NO_MEMORY;
  FillColumns();
  Restart();
  return OVRA_OK;
}

template <class Sample>
bool ReductionRows<Sample>::AllocateColumns(const ResizePlan& plan) {
  const int32_t width = plan.shape.destination.width;
  const auto channels = static_cast<std::ptrdiff_t>(plan.format.channels);
  const int32_t first_column = columns_.First(0);
  first_sample_ = first_column * channels;
  samples_ = (columns_.Last(width - 1) - first_column + 1) * channels;
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
  return true;
}

// In the window are at most the rows under the kernels of one group.
template <class Sample>
bool ReductionRows<Sample>::AllocateRows(RowUse use) {
  const auto samples = static_cast<uint64_t>(samples_);
  const auto taps = static_cast<uint64_t>(rows_.MaxTaps());
  if (!row_weights_.Allocate(kGroup * taps) || !intermediate_.Allocate(samples, kGroup) ||
      !window_.Allocate(kGroup * (taps + 1))) {
    return false;
  }
  return use != RowUse::kBands || (kept_.Allocate(samples, kKeptRows) &&
                                   sums_.Allocate(samples + kSpareReductionSums, kOpenRows));
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
  kept_end_ = 0;
}

template <class Sample>
void ReductionRows<Sample>::Take(const uint8_t* row) {
  const int32_t number = taken_++;
  if (next_destination_ == destination_height_ || number < rows_.First(next_destination_)) {
    return;  // no kernel reaches it
  }
  if (window_rows_ == 0) window_first_ = number;
  window_[static_cast<size_t>(window_rows_++)] =
      reinterpret_cast<const Sample*>(row) + first_sample_;
}

// Rows of the kernel that are not in the window have been summed.
template <class Sample>
typename ReductionRows<Sample>::Part ReductionRows<Sample>::PartOf(int32_t destination_row,
                                                                   int32_t* weights) const {
  const int32_t weight_sum = rows_.Fill(destination_row, weights);
  const int32_t first = rows_.First(destination_row);
  const int32_t begin = std::max(first, window_first_);
  const int32_t end = std::min(rows_.Last(destination_row) + 1, window_first_ + window_rows_);
  if (begin >= end) return {{nullptr, nullptr, 0}, weight_sum, false};
  return {{window_.data() + (begin - window_first_), weights + (begin - first), end - begin},
          weight_sum,
          begin == first};
}

template <class Sample>
void ReductionRows<Sample>::Write(uint8_t* destination, std::ptrdiff_t stride, int32_t count) {
  Part parts[kGroup];
  const int64_t* sums[kGroup];
  for (int32_t k = 0; k < count; ++k) {
    const int32_t row = next_destination_ + k;
    parts[k] = PartOf(row, row_weights_.data() + std::ptrdiff_t{k} * rows_.MaxTaps());
    sums[k] = parts[k].begins ? nullptr : sums_.Row(row);
  }
  for (std::ptrdiff_t tile = 0; tile < samples_; tile += kTileSamples) {
    const std::ptrdiff_t samples = std::min(kTileSamples, samples_ - tile);
    for (int32_t k = 0; k < count; ++k) {
      kernels_->weigh_rows(parts[k].rows, tile, samples,
                           sums[k] == nullptr ? nullptr : sums[k] + tile, parts[k].weight_sum,
                           intermediate_.Row(k) + tile);
    }
  }
  for (int32_t k = 0; k < count; ++k) {
    weigh_columns_(intermediate_.Row(k), column_job_,
                   reinterpret_cast<Sample*>(destination + k * stride));
  }
  next_destination_ += count;
  if (next_destination_ < destination_height_) DropRowsBefore(rows_.First(next_destination_));
}

template <class Sample>
void ReductionRows<Sample>::DropRowsBefore(int32_t row) {
  const int32_t dropped = std::clamp(row - window_first_, 0, window_rows_);
  std::copy(window_.data() + dropped, window_.data() + window_rows_, window_.data());
  window_first_ += dropped;
  window_rows_ -= dropped;
}

template <class Sample>
void ReductionRows<Sample>::KeepTakenRows() {
  if (next_destination_ == destination_height_) window_rows_ = 0;
  if (window_rows_ > kKeptRows) return SumTakenRows();
  for (int32_t k = 0; k < window_rows_; ++k) {
    const int32_t row = window_first_ + k;
    if (row < kept_end_) continue;
    Sample* const kept = kept_.Row(row);
    std::copy_n(window_[static_cast<size_t>(k)], samples_, kept);
    window_[static_cast<size_t>(k)] = kept;
  }
  kept_end_ = taken_;
}

// Every destination row that is open reaches beyond the rows taken, or to the last one.
template <class Sample>
void ReductionRows<Sample>::SumTakenRows() {
  const int32_t end = window_first_ + window_rows_;
  for (int32_t row = next_destination_; row < destination_height_ && rows_.First(row) < end;
       ++row) {
    const Part part = PartOf(row, row_weights_.data());
    for (std::ptrdiff_t tile = 0; tile < samples_; tile += kTileSamples) {
      kernels_->sum_rows(part.rows, tile, std::min(kTileSamples, samples_ - tile), part.begins,
                         sums_.Row(row) + tile);
    }
  }
  window_first_ = end;
  window_rows_ = 0;
}

template class ReductionRows<uint8_t>;
template class ReductionRows<uint16_t>;

}  // namespace ovra
