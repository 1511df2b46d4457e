// SPDX-License-Identifier: MIT
// Strong reduction: the rows under a stretched kernel are weighed vertically into an intermediate
// row, and its pixels horizontally into a destination row.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/cpu.h"
#include "core/row_ring.h"
#include "core/status.h"
#include "core/work_memory.h"
#include "resample/resize_plan.h"
#include "resample/small_resize/kernels.h"
#include "resample/small_resize/reduction_axis.h"

namespace ovra {

// Rows that were taken are named by their addresses until no kernel reaches them any more. When
// they may go before that, a few are copied, and more are added to the sums of the destination rows
// that are open: never more than five at once, since the kernel reaches two destination rows to
// either side.
template <class Sample>
class ReductionRows {
 public:
  Status Prepare(const ResizePlan& plan, RowUse use, KernelTier tier);
  void Restart();

  int32_t NeededRow(int32_t j) const { return rows_.Last(j); }
  void Take(const uint8_t* row);
  void Write(uint8_t* destination, std::ptrdiff_t stride, int32_t count);
  int32_t RowsAtOnce() const { return kGroup; }
  void KeepTakenRows();

 private:
  // Neighbouring destination rows share most of their source rows, tile by tile.
  static constexpr int32_t kGroup = 4;

  // The part of a destination row's kernel that lies on rows from `from` on.
  struct Part {
    WeighedRows<Sample> rows;
    int32_t weight_sum;  // of the whole kernel
    bool begins;         // none was summed before
  };

  [[nodiscard]] bool AllocateColumns(const ResizePlan& plan);
  [[nodiscard]] bool AllocateRows(RowUse use);
  void FillColumns();
  Part PartOf(int32_t destination_row, int32_t* weights) const;
  void DropRowsBefore(int32_t row);
  void SumTakenRows();

  const ReductionKernelsOf<Sample>* kernels_ = nullptr;
  WeighColumns<Sample>* weigh_columns_ = nullptr;
  ReductionAxis columns_;
  ReductionAxis rows_;
  int32_t destination_height_ = 0;

  WorkMemory<int32_t> column_first_;
  WorkMemory<int32_t> column_count_;
  WorkMemory<int32_t> column_weights_;
  WorkMemory<double> column_weights_as_double_;
  WorkMemory<double> scratch_;
  ReductionColumns column_job_ = {};
  std::ptrdiff_t first_sample_ = 0;  // of a source row that any column reads
  std::ptrdiff_t samples_ = 0;       // from there on

  WorkMemory<int32_t> row_weights_;  // of kGroup destination rows
  RowRing<int32_t> intermediate_;
  WorkMemory<const Sample*> window_;
  RowRing<Sample> kept_;   // for bands
  RowRing<int64_t> sums_;  // for bands, of open destination rows
  int32_t taken_ = 0;
  int32_t next_destination_ = 0;
  int32_t window_first_ = 0;  // the source row of window_[0]
  int32_t window_rows_ = 0;
  int32_t kept_end_ = 0;  // rows of the window before this one are copies
};

}  // namespace ovra
