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
// are numbered in memory order. It keeps no pointer to a row but where RowsStay.
//
//   Status Prepare(plan, memory, tier)  takes all memory; the plan's table is read later, too
//   void Restart()                      begins a new picture
//   int32_t NeededRow(j) const          the last source row that destination row j waits for
//   void Take(row)                      the next source row
//   void Write(destination)             the next destination row

// Rows that pass through, padding included.
class CopiedRows {
 public:
  Status Prepare(const ResizePlan& plan, RowMemory memory, KernelTier tier);
  void Restart() {}
  int32_t NeededRow(int32_t j) const { return j; }
  void Take(const uint8_t* row);
  void Write(uint8_t* destination);

 private:
  WorkMemory<uint8_t> row_;
  std::ptrdiff_t bytes_ = 0;
};

// Source rows that are at hand: `count` rows from number `first` on.
struct SourceRows {
  const uint8_t* data;
  int32_t first;
  int32_t count;
};

class RowStream {
 public:
  Status Prepare(const ResizePlan& plan, RowMemory memory, KernelTier tier);

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
