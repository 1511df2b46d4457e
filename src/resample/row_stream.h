// SPDX-License-Identifier: MIT
// The rows of a resized picture, one after the other, while those of its source come in.
#pragma once

#include <cstddef>
#include <cstdint>
#include <variant>

#include "core/cpu.h"
#include "core/work_memory.h"
#include "resample/resize/engine_rows.h"
#include "resample/resize_plan.h"
#include "resample/small_resize/reduction_rows.h"

namespace ovra {

// A maker of rows has these operations, as EngineRows, ReductionRows and CopiedRows do. All rows
// are numbered in memory order.
//
//   Status Prepare(plan, use, tier)   takes all memory; the plan's table is read later, too
//   void Restart()                    begins a new picture
//   int32_t NeededRow(j) const        the last source row that destination row j waits for
//   void Take(row)                    the next source row. It must stay until KeepTakenRows, or
//                                     until the destination rows that need it are written
//   void Write(destination, stride, count)  the next `count` destination rows, all of whose rows
//                                           have been taken
//   int32_t RowsAtOnce() const        how many rows it had best write at a time, and the most
//   void KeepTakenRows()              copies what is still needed of rows outside the maker

// Rows that pass through, padding included.
class CopiedRows {
 public:
  Status Prepare(const ResizePlan& plan, RowUse use, KernelTier tier);
  void Restart() { row_ = nullptr; }
  int32_t NeededRow(int32_t j) const { return j; }
  void Take(const uint8_t* row) { row_ = row; }
  void Write(uint8_t* destination, std::ptrdiff_t stride, int32_t count);
  int32_t RowsAtOnce() const { return 1; }
  void KeepTakenRows();

 private:
  WorkMemory<uint8_t> kept_;
  std::ptrdiff_t bytes_ = 0;
  const uint8_t* row_ = nullptr;  // the last one taken; null when it was written
};

// Source rows that are at hand: `count` rows from number `first` on.
struct SourceRows {
  const uint8_t* data;
  int32_t first;
  int32_t count;
};

class RowStream {
 public:
  Status Prepare(const ResizePlan& plan, RowUse use, KernelTier tier);

  // Begins a new picture.
  void Restart();

  std::ptrdiff_t DestinationStride() const { return destination_stride_; }

  // Source rows taken, and destination rows written, of the present picture.
  int32_t Taken() const { return taken_; }
  int32_t Written() const { return written_; }

  // Writes up to `room` destination rows, `stride` bytes apart. A source row is taken only when the
  // next destination row needs it, or when no row is left to write. Begins with source row Taken(),
  // which `source` must reach.
  void Run(const SourceRows& source, uint8_t* destination, std::ptrdiff_t stride, int32_t room);

  // From here on the rows of `source` may go.
  void KeepTakenRows();

 private:
  template <class Maker>
  void RunWith(Maker* maker, const SourceRows& source, uint8_t* destination, std::ptrdiff_t stride,
               int32_t room);

  std::variant<CopiedRows, EngineRows<uint8_t>, EngineRows<uint16_t>, ReductionRows<uint8_t>,
               ReductionRows<uint16_t>>
      maker_;
  std::ptrdiff_t source_stride_ = 0;
  std::ptrdiff_t destination_stride_ = 0;
  int32_t destination_height_ = 0;
  int32_t taken_ = 0;
  int32_t written_ = 0;
};

}  // namespace ovra
