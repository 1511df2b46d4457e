// SPDX-License-Identifier: MIT
// A coarse grid over a picture and its tones, whose nodes say how far the mean of what is near in both
// lies from them: J. Chen, S. Paris and F. Durand, Real-time edge-aware image processing with the
// bilateral grid, 2007, without normalisation.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/work_memory.h"
#include "tone/pyramid/pyramid.h"
#include "tone/tone_grid/kernels.h"

namespace ovra {

// What a cell's samples come to: for each node the sum of the response to their distance from its tone,
// and how many they are.
struct GridCellSums {
  int32_t responses[kGridNodes];
  int32_t count;
};

class ToneGrid {
 public:
  // Cells of 2^scale pixels, filled from samples that stand for 2^sample_bits pixels each way.
  [[nodiscard]] bool Allocate(PlaneSize samples, int32_t scale, int32_t sample_bits);

  // From all rows of the samples, in order.
  void Fill(RowSource* samples, const ToneGridKernels& kernels);

  // Row y of the picture: what pulls each tone to its surroundings, limited and taken from the detail.
  void Slice(std::ptrdiff_t y, const int16_t* tone, const int16_t* fine_detail,
             const SoftLimit& limit, int16_t* detail, std::ptrdiff_t pixels,
             const ToneGridKernels& kernels);

 private:
  static constexpr int kRing = 3;  // a row of cells and its neighbours

  GridCellSums* SumsOfRow(std::ptrdiff_t row) { return sums_.data() + row % kRing * columns_; }
  void SumRow(std::ptrdiff_t row, RowSource* samples, const ToneGridKernels& kernels);
  void MakeNodes(std::ptrdiff_t row);

  PlaneSize samples_;
  int32_t scale_ = 0;
  int32_t cell_bits_ = 0;  // of samples
  std::ptrdiff_t columns_ = 0;
  std::ptrdiff_t rows_ = 0;
  WorkMemory<int32_t> limited_sums_;
  WorkMemory<GridCellSums> sums_;
  WorkMemory<GridCell> cells_;
  WorkMemory<GridColumn> blended_;
};

}  // namespace ovra
