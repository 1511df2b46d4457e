// SPDX-License-Identifier: MIT
// The resize engine: source rows are filtered horizontally into a ring of as many rows as the
// vertical kernel has taps, and the rows of the ring are combined into destination rows.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/cpu.h"
#include "core/row_ring.h"
#include "core/status.h"
#include "core/work_memory.h"
#include "resample/resize/axis_taps.h"
#include "resample/resize/byte_columns.h"
#include "resample/resize/kernels.h"
#include "resample/resize_plan.h"

namespace ovra {

template <class Sample>
class EngineRows {
 public:
  Status Prepare(const ResizePlan& plan, RowMemory memory, KernelTier tier);
  void Restart();

  int32_t NeededRow(int32_t j) const;
  void Take(const uint8_t* row);
  void Write(uint8_t* destination);

 private:
  [[nodiscard]] bool AllocateRows(const ResizePlan& plan);
  Status PrepareColumns(const ResizePlan& plan, KernelTier tier);
  [[nodiscard]] bool FillColumns(const ResizePlan& plan, const AxisTaps& taps);
  void FindInnerColumns(int32_t pixels_read);
  [[nodiscard]] bool AllocateTapArrays();

  void Filter(const uint8_t* row, Intermediate<Sample>* out);
  void FindWindow();
  void RepeatEdgeRow();
  int64_t ClampedRow(int64_t row) const;

  AxisTaps rows_;
  WorkMemory<int16_t> row_weights_;
  // Whose weights they are: often those of the next row, too.
  double row_fraction_ = AxisTaps::kNoFraction;
  ByteColumns byte_columns_;  // where they are usable; the others take what follows
  WorkMemory<TapSet> columns_;
  WorkMemory<int16_t> column_weights_;
  RowRing<Intermediate<Sample>> ring_;
  HorizontalPass horizontal_pass_ = {};
  VerticalPass<Sample> vertical_pass_ = {};
  HorizontalRow<Sample>* filter_row_ = nullptr;
  VerticalRow<Sample>* combine_rows_ = nullptr;  // null: the form with tap arrays
  VerticalRowOfAnyTaps<Sample>* combine_rows_of_any_taps_ = nullptr;
  WorkMemory<int32_t> tap_slots_;
  WorkMemory<int32_t> tap_weights_;
  bool tap_arrays_for_each_row_ = false;

  int32_t source_height_ = 0;
  int32_t destination_height_ = 0;
  int32_t next_destination_ = 0;
  int64_t taken_ = 0;
  int64_t filtered_ = 0;    // the source row that stands in the ring last
  int64_t next_ = 0;        // the row of the window that the ring lacks first, not clamped
  int64_t window_end_ = 0;  // the last row under the kernel of the next destination row
  int32_t slot_ = 0;        // where the next row goes, and the oldest one stands
};

}  // namespace ovra
