// SPDX-License-Identifier: MIT
// The two passes of a strong reduction of 8-bit samples in 16-bit multiplications, for kernels whose
// rows are all kept. The bytes are those of the general form.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/work_memory.h"
#include "resample/small_resize/kernels.h"

namespace ovra {

class ByteReduction {
 public:
  // For rows of `samples` samples, of which the columns are made. Where these are not for the
  // kernels, nothing is taken. False when there is no memory.
  [[nodiscard]] bool Prepare(const ReductionAxis& columns, int32_t width, std::ptrdiff_t samples,
                             uint32_t channels, const ByteReductionKernels& kernels);

  bool Usable() const { return kernels_ != nullptr; }

  // The destination row of these rows, up to kMaxReductionRows, whose weights are words.
  void Write(const WeighedRows<uint8_t>& rows, const SourceAhead& ahead, uint8_t* destination);

 private:
  void FillColumns(const ReductionAxis& columns);

  const ByteReductionKernels* kernels_ = nullptr;
  WeighByteColumns* weigh_columns_ = nullptr;
  WeighedByteRows rows_ = {};
  ByteReductionColumns job_ = {};
  std::ptrdiff_t samples_ = 0;
  uint32_t channels_ = 0;

  WorkMemory<int16_t> intermediate_;
  WorkMemory<int16_t> planes_;
  WorkMemory<int16_t> weights_;
  WorkMemory<int32_t> first_;
  WorkMemory<int32_t> offsets_;
};

}  // namespace ovra
