// SPDX-License-Identifier: MIT
#include "resample/resize/engine_rows.h"

#include <algorithm>
#include <limits>

#include "core/rows.h"

namespace ovra {
namespace {

// The product, or the largest number when it does not fit.
uint64_t SaturatedProduct(uint64_t a, uint64_t b) {
  constexpr uint64_t kMax = std::numeric_limits<uint64_t>::max();
  return b != 0 && a > kMax / b ? kMax : a * b;
}

}  // namespace

template <class Sample>
Status EngineRows<Sample>::Prepare(const ResizePlan& plan, RowMemory memory, KernelTier tier) {
  const ResizeShape& shape = plan.shape;
  const int32_t row_taps = plan.kernel.vertical.taps;
  const ResizeKernelsOf<Sample>& kernels =
      ForTier(tier, kResizePlain, kResizeSse, kResizeAvx2).template Of<Sample>();
  combine_rows_ = kernels.Vertical(row_taps);
  combine_rows_of_any_taps_ = kernels.vertical_of_any_taps;
  tap_arrays_for_each_row_ = combine_rows_ == nullptr && memory == RowMemory::kRowByRow;
  source_height_ = shape.source.height;
  destination_height_ = shape.destination.height;
  vertical_pass_.taps = row_taps;
  if (!AllocateRows(plan)) return OVRA_ERROR_NO_MEMORY;
  const Status status = PrepareColumns(plan, tier);
  if (status != OVRA_OK) return status;

  rows_ = AxisTaps(
      {shape.destination.height, plan.FirstRegionRow(), shape.region.height, plan.factors.vertical},
      plan.kernel.table, plan.kernel.vertical);
  vertical_pass_ = {
      ring_.Row(0),
      ring_.Row(1) - ring_.Row(0),
      row_taps,
      0,
      row_weights_.data(),
      std::ptrdiff_t{shape.destination.width} * static_cast<std::ptrdiff_t>(plan.format.channels),
      static_cast<int32_t>(plan.format.MaxSample())};
  Restart();
  return OVRA_OK;
}

// The rows of the ring hold whole groups of columns.
template <class Sample>
bool EngineRows<Sample>::AllocateRows(const ResizePlan& plan) {
  const auto width = static_cast<uint64_t>(plan.shape.destination.width);
  const uint64_t room = (width + kMaxByteColumnsGroup - 1) / kMaxByteColumnsGroup *
                        kMaxByteColumnsGroup * plan.format.channels;
  const auto row_taps = static_cast<uint64_t>(plan.kernel.vertical.taps);
  const bool complete =
      ring_.Allocate(room, row_taps) &&
      row_weights_.Allocate(static_cast<uint64_t>(WeightStride(plan.kernel.vertical.taps)));
  const bool has_tap_arrays = combine_rows_ != nullptr || tap_arrays_for_each_row_;
  return complete && (has_tap_arrays || AllocateTapArrays());
}

template <class Sample>
Status EngineRows<Sample>::PrepareColumns(const ResizePlan& plan, KernelTier tier) {
  const ResizeShape& shape = plan.shape;
  const ResizeKernels& kernels = ForTier(tier, kResizePlain, kResizeSse, kResizeAvx2);
  const int32_t taps = plan.kernel.horizontal.taps;
  const AxisTaps axis(
      {shape.destination.width, shape.region.x, shape.region.width, plan.factors.horizontal},
      plan.kernel.table, plan.kernel.horizontal);
  if constexpr (sizeof(Sample) == 1) {
    const Status status = byte_columns_.Prepare(plan, axis, kernels.byte_columns);
    if (status != OVRA_OK || byte_columns_.Usable()) return status;
  }
  if (!FillColumns(plan, axis)) return OVRA_ERROR_NO_MEMORY;
  horizontal_pass_ = {columns_.data(),
                      column_weights_.data(),
                      WeightStride(taps),
                      taps,
                      TapsBeforeCentre(taps),
                      shape.source.width,
                      shape.destination.width,
                      0,
                      0,
                      plan.SourceStride()};
  const HorizontalKernel<Sample>& horizontal =
      kernels.Of<Sample>().Horizontal(taps, plan.format.channels);
  filter_row_ = horizontal.run;
  FindInnerColumns(horizontal.pixels_read == 0 ? taps : horizontal.pixels_read);
  return OVRA_OK;
}

template <class Sample>
bool EngineRows<Sample>::AllocateTapArrays() {
  const auto taps = static_cast<uint64_t>(vertical_pass_.taps);
  return tap_slots_.Allocate(taps) && tap_weights_.Allocate(taps);
}

template <class Sample>
bool EngineRows<Sample>::FillColumns(const ResizePlan& plan, const AxisTaps& taps) {
  const auto width = static_cast<uint64_t>(plan.shape.destination.width);
  const std::ptrdiff_t stride = WeightStride(plan.kernel.horizontal.taps);
  if (!columns_.Allocate(width) ||
      !column_weights_.Allocate(SaturatedProduct(width, static_cast<uint64_t>(stride)))) {
    return false;
  }
  for (int32_t i = 0; i < plan.shape.destination.width; ++i) {
    columns_[static_cast<size_t>(i)] = {
        taps.CentreOf(i),
        taps.FillWeights(taps.FractionOf(i), column_weights_.data() + i * stride)};
  }
  return true;
}

// Finds the columns whose `pixels_read` pixels from the first tap on lie inside the source. Centres
// rise or fall steadily, so that these columns stand side by side.
template <class Sample>
void EngineRows<Sample>::FindInnerColumns(int32_t pixels_read) {
  HorizontalPass& pass = horizontal_pass_;
  const auto is_inner = [&pass, pixels_read](int32_t column) {
    const int64_t first = int64_t{pass.sets[column].centre} - pass.taps_before_centre;
    return first >= 0 && first + pixels_read <= pass.source_width;
  };
  int32_t begin = 0;
  while (begin < pass.destination_width && !is_inner(begin)) ++begin;
  int32_t end = begin;
  while (end < pass.destination_width && is_inner(end)) ++end;
  pass.inner_begin = begin;
  pass.inner_end = end;
}

template <class Sample>
void EngineRows<Sample>::Restart() {
  next_destination_ = 0;
  taken_ = 0;
  filtered_ = -1;
  next_ = std::numeric_limits<int64_t>::min();
  slot_ = 0;
  FindWindow();
}

template <class Sample>
int32_t EngineRows<Sample>::NeededRow(int32_t j) const {
  return static_cast<int32_t>(ClampedRow(int64_t{rows_.CentreOf(j)} + vertical_pass_.taps / 2));
}

template <class Sample>
int64_t EngineRows<Sample>::ClampedRow(int64_t row) const {
  return std::clamp<int64_t>(row, 0, source_height_ - 1);
}

// Where a centre lies above the last one, which negative factors bring about, nothing is lacking:
// the ring keeps its rows.
template <class Sample>
void EngineRows<Sample>::FindWindow() {
  if (next_destination_ == destination_height_) {
    window_end_ = std::numeric_limits<int64_t>::min();
    return;
  }
  const int64_t centre = rows_.CentreOf(next_destination_);
  next_ = std::max(next_, centre - TapsBeforeCentre(vertical_pass_.taps));
  window_end_ = centre + vertical_pass_.taps / 2;
  RepeatEdgeRow();
}

template <class Sample>
void EngineRows<Sample>::Filter(const uint8_t* row, Intermediate<Sample>* out) {
  if constexpr (sizeof(Sample) == 1) {
    if (byte_columns_.Usable()) return byte_columns_.Run(row, out);
  }
  filter_row_(horizontal_pass_, reinterpret_cast<const Sample*>(row), out);
}

template <class Sample>
void EngineRows<Sample>::Take(const uint8_t* row) {
  const int64_t number = taken_++;
  if (next_ > window_end_ || ClampedRow(next_) != number) return;  // no tap reads it
  Filter(row, ring_.Row(slot_));
  filtered_ = number;
  ++next_;
  slot_ = slot_ + 1 == vertical_pass_.taps ? 0 : slot_ + 1;
  RepeatEdgeRow();
}

// Rows above the image and below it repeat its edge rows, which are filtered once.
template <class Sample>
void EngineRows<Sample>::RepeatEdgeRow() {
  for (; next_ <= window_end_ && ClampedRow(next_) == filtered_; ++next_) {
    const int32_t previous = slot_ == 0 ? vertical_pass_.taps - 1 : slot_ - 1;
    std::copy_n(ring_.Row(previous), vertical_pass_.samples, ring_.Row(slot_));
    slot_ = slot_ + 1 == vertical_pass_.taps ? 0 : slot_ + 1;
  }
}

// Row by row, the generic form takes its work memory anew, and leaves out a row that gets none.
template <class Sample>
void EngineRows<Sample>::Write(uint8_t* destination) {
  auto* const out = reinterpret_cast<Sample*>(destination);
  vertical_pass_.oldest = slot_;
  const double fraction = rows_.FractionOf(next_destination_);
  if (fraction != row_fraction_) rows_.FillWeights(fraction, row_weights_.data());
  row_fraction_ = fraction;
  if (combine_rows_ != nullptr) {
    combine_rows_(vertical_pass_, out);
  } else if (!tap_arrays_for_each_row_ || AllocateTapArrays()) {
    combine_rows_of_any_taps_(vertical_pass_, tap_slots_.data(), tap_weights_.data(), out);
  }
  ++next_destination_;
  FindWindow();
}

template class EngineRows<uint8_t>;
template class EngineRows<uint16_t>;

}  // namespace ovra
