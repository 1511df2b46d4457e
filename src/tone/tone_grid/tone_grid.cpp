// SPDX-License-Identifier: MIT
#include "tone/tone_grid/tone_grid.h"

#include <algorithm>

namespace ovra {
namespace {

// The response of node j to a sample at distance e from its tone is 3 e up to the distance of the next
// node, and falls from there to 0 at the fourth one. That is
//
//   4 * limit(e, -4096, 4096) - limit(e, -16384, 16384)
//
// and sums of limited distances are differences of the sums T(m) of min(sample, 4096 m), in which all
// constants cancel.
struct LimitedSums {
  const int32_t* sums;  // T(1) .. T(8); samples are below 4096 * 8
  int64_t count;

  int64_t operator()(int m) const {
    return m <= 0 ? m * int64_t{kGridTone} * count : sums[std::min(m, kGridSums) - 1];
  }
  int32_t Response(int node) const {
    const LimitedSums& t = *this;
    return static_cast<int32_t>(4 * (t(node + 1) - t(node - 1)) - (t(node + 4) - t(node - 4)));
  }
};

int64_t FloorDivide(int64_t a, int64_t b) {
  const int64_t quotient = a / b;
  return quotient * b > a ? quotient - 1 : quotient;
}

std::ptrdiff_t CellsAlong(std::ptrdiff_t samples, int32_t cell_bits) {
  return ((samples - 1) >> cell_bits) + 1;
}

}  // namespace

bool ToneGrid::Allocate(PlaneSize samples, int32_t scale, int32_t sample_bits) {
  samples_ = samples;
  scale_ = scale;
  cell_bits_ = scale - sample_bits;
  columns_ = CellsAlong(samples.width, cell_bits_);
  rows_ = CellsAlong(samples.height, cell_bits_);
  const auto columns = static_cast<uint64_t>(columns_);
  return limited_sums_.Allocate(columns * kGridSums) && sums_.Allocate(columns * kRing) &&
         cells_.Allocate(columns * static_cast<uint64_t>(rows_)) && blended_.Allocate(columns + 2);
}

void ToneGrid::Fill(RowSource* samples, const ToneGridKernels& kernels) {
  for (std::ptrdiff_t row = 0; row < rows_; ++row) {
    SumRow(row, samples, kernels);
    if (row > 0) MakeNodes(row - 1);
  }
  MakeNodes(rows_ - 1);
}

void ToneGrid::SumRow(std::ptrdiff_t row, RowSource* samples, const ToneGridKernels& kernels) {
  const std::ptrdiff_t cell = std::ptrdiff_t{1} << cell_bits_;
  const std::ptrdiff_t height = std::min(cell, samples_.height - row * cell);
  std::fill_n(limited_sums_.data(), columns_ * kGridSums, 0);
  for (std::ptrdiff_t y = 0; y < height; ++y) {
    kernels.add_row(samples->Next(), samples_.width, cell_bits_, limited_sums_.data());
  }
  for (std::ptrdiff_t column = 0; column < columns_; ++column) {
    const std::ptrdiff_t width = std::min(cell, samples_.width - column * cell);
    const LimitedSums limited = {limited_sums_.data() + column * kGridSums, width * height};
    CellSums& sums = SumsOfRow(row)[column];
    sums.count = static_cast<int32_t>(width * height);
    for (int j = 0; j < kGridNodes; ++j) sums.responses[j] = limited.Response(j);
  }
}

// Each cell with its neighbours, which weigh half as much.
void ToneGrid::MakeNodes(std::ptrdiff_t row) {
  const std::ptrdiff_t top = std::max<std::ptrdiff_t>(row - 1, 0);
  const std::ptrdiff_t bottom = std::min(row + 1, rows_ - 1);
  for (std::ptrdiff_t column = 0; column < columns_; ++column) {
    int64_t count = 0;
    int64_t responses[kGridNodes] = {};
    for (std::ptrdiff_t y = top; y <= bottom; ++y) {
      const std::ptrdiff_t last = std::min(column + 1, columns_ - 1);
      for (std::ptrdiff_t x = std::max<std::ptrdiff_t>(column - 1, 0); x <= last; ++x) {
        const int32_t weight = (y == row ? 2 : 1) * (x == column ? 2 : 1);
        const CellSums& sums = SumsOfRow(y)[x];
        count += weight * int64_t{sums.count};
        for (int j = 0; j < kGridNodes; ++j) responses[j] += weight * int64_t{sums.responses[j]};
      }
    }
    int16_t* const values = cells_[static_cast<size_t>(row * columns_ + column)].values;
    for (int j = 0; j < kGridNodes; ++j) {
      values[j] = static_cast<int16_t>(FloorDivide(2 * responses[j] + 3 * count, 6 * count));
    }
  }
}

void ToneGrid::Slice(std::ptrdiff_t y, const int16_t* tone, const int16_t* fine_detail,
                     const SoftLimit& limit, int16_t* detail, std::ptrdiff_t pixels,
                     const ToneGridKernels& kernels) {
  const std::ptrdiff_t position = 2 * y + 1 + (std::ptrdiff_t{1} << scale_);
  const std::ptrdiff_t below = position >> (scale_ + 1);
  const auto fraction = static_cast<int32_t>(position & ((2 << scale_) - 1));
  const GridCell* const top = cells_.data() + std::max<std::ptrdiff_t>(below - 1, 0) * columns_;
  const GridCell* const bottom = cells_.data() + std::min(below, rows_ - 1) * columns_;
  GridColumn* const blended = blended_.data();
  kernels.blend_rows(top, bottom, fraction, scale_, blended + 1, columns_);
  blended[0] = blended[1];
  blended[columns_ + 1] = blended[columns_];
  kernels.slice_row(tone, fine_detail, blended, scale_, limit, detail, pixels);
}

}  // namespace ovra
