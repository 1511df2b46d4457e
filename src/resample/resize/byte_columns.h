// SPDX-License-Identifier: MIT
// The horizontal pass of 8-bit samples with kernels of few taps, for registers of any width. The
// channels of a source row are taken apart first, with its edges repeated on both sides, so that no
// tap lies outside and neighbouring columns find their samples within the same 16 bytes.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/status.h"
#include "core/work_memory.h"
#include "resample/resize/axis_taps.h"
#include "resample/resize/kernels.h"
#include "resample/resize_plan.h"

namespace ovra {

class ByteColumns {
 public:
  // Takes memory and makes the tables, where the columns are of the kind; they are of no use otherwise.
  Status Prepare(const ResizePlan& plan, const AxisTaps& taps, const ByteColumnsKernels& kernels);

  bool Usable() const { return run_ != nullptr; }

  // Writes whole groups of columns: up to kMaxByteColumnsGroup - 1 more than there are.
  void Run(const uint8_t* source, int16_t* out) const { run_(pass_, source, out); }

 private:
  // First taps of the columns of a lane. Columns beyond the last one are like it.
  struct LaneTaps {
    int64_t first[kByteColumnsInLane];

    int64_t Least(int begin, int end) const;
    int64_t Reach(int begin, int end) const;  // bytes from the least on that a pair of taps needs
  };

  int64_t FirstTap(int32_t column) const;
  LaneTaps TapsOfLane(int32_t lane) const;
  bool FindWindows();
  [[nodiscard]] bool Allocate();
  void FillShuffles();
  bool FillWeights();
  int8_t* GroupTable(int32_t group) { return tables_.data() + group * pass_.group_bytes; }

  AxisTaps taps_;
  KernelSupport support_ = {};
  int32_t lanes_ = 0;
  int32_t lane_count_ = 0;
  int32_t windows_ = 1;
  int32_t width_ = 0;
  int32_t source_width_ = 0;
  int64_t first_column_ = 0;  // of the source, in the planes
  int64_t plane_columns_ = 0;
  uint32_t channels_ = 0;

  WorkMemory<int8_t> tables_;
  WorkMemory<int32_t> starts_;
  WorkMemory<uint8_t> planes_;
  ByteColumnsPass pass_ = {};
  ByteColumnsRow* run_ = nullptr;
};

}  // namespace ovra
