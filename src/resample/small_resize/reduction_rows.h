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
#include "resample/small_resize/byte_reduction.h"
#include "resample/small_resize/kernels.h"
#include "resample/small_resize/reduction_axis.h"

namespace ovra {

// Rows are read where they are; in bands, and where they would drive each other out of the cache, they
// are copied and kept until no kernel reaches them any more. Where the kernel covers more rows than are kept, those are added
// to the sums of the destination rows that are open: never more than five at once, since the kernel
// reaches two destination rows to either side.
template <class Sample>
class ReductionRows {
 public:
  Status Prepare(const ResizePlan& plan, RowMemory memory, KernelTier tier);
  void Restart();

  int32_t NeededRow(int32_t j) const { return rows_.Last(j); }
  void Take(const uint8_t* row);
  void Write(uint8_t* destination);

 private:
  // With fewer rows the sums are read and written too often, and copies of more cost memory.
  static constexpr int32_t kCopiedRows = 24;
  static constexpr int32_t kMaxKeptRows = kMaxReductionRows;  // where they are, or of bytes

  // The rows of a destination row's kernel that are kept.
  struct Part {
    WeighedRows<Sample> rows;
    int32_t weight_sum;  // of the whole kernel
    bool begins;         // none was summed before
  };

  [[nodiscard]] bool PrepareBytes(const ResizePlan& plan, KernelTier tier);
  [[nodiscard]] bool PrepareColumns(const ResizePlan& plan);
  [[nodiscard]] bool AllocateRows();
  void FillColumns();
  Part PartOf(int32_t destination_row);
  void Weigh(const Part& part, Sample* destination);
  SourceAhead Ahead() const;
  void DropRowsBefore(int32_t row);
  void SumKeptRows();

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

  ByteReduction byte_reduction_;
  WorkMemory<int32_t> row_weights_;  // of one destination row
  WorkMemory<int32_t> intermediate_;
  RowRing<Sample> kept_;                     // unless rows stay
  const Sample* window_[kMaxKeptRows] = {};  // the rows that are kept, from the first one on
  RowRing<int64_t> sums_;                    // of open destination rows
  int32_t rows_to_keep_ = 0;
  const uint8_t* source_end_ = nullptr;  // of the last row taken: not to be read
  std::ptrdiff_t source_stride_ = 0;
  bool rows_stay_ = false;  // where they are, as long as they are needed
  int32_t taken_ = 0;
  int32_t next_destination_ = 0;
  int32_t first_needed_ = 0;  // by the next destination row
  int32_t window_first_ = 0;  // the source row of window_[0]
  int32_t window_rows_ = 0;
};

}  // namespace ovra
