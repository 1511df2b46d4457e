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

// (2 * responses + 3 * count) / (6 * count), rounded down. Moved up by the least value that it can
// have, truncating is rounding down; and a quotient of doubles is right, since none of these lies
// within the precision of a double below a whole number without being one.
int16_t NodeValue(int64_t responses, int64_t count) {
  const auto numerator = static_cast<double>(2 * responses + 3 * count + kGridTone * 6 * count);
  return static_cast<int16_t>(static_cast<int32_t>(numerator / static_cast<double>(6 * count)) -
                              kGridTone);
}

std::ptrdiff_t CellsAlong(std::ptrdiff_t samples, int32_t cell_bits) {
  return ((samples - 1) >> cell_bits) + 1;
}

// Sums of several cells.
struct WeighedSums {
  int64_t responses[kGridNodes];
  int64_t count;

  void Add(int32_t weight, const GridCellSums& cell) {
    for (int j = 0; j < kGridNodes; ++j) responses[j] += int64_t{weight} * cell.responses[j];
    count += int64_t{weight} * cell.count;
  }
};

// A cell twice and those above and below it, where there are any.
WeighedSums WeighedColumn(const GridCellSums* above, const GridCellSums* at,
                          const GridCellSums* below, std::ptrdiff_t column) {
  WeighedSums sums = {};
  sums.Add(2, at[column]);
  if (above != nullptr) sums.Add(1, above[column]);
  if (below != nullptr) sums.Add(1, below[column]);
  return sums;
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
    GridCellSums& sums = SumsOfRow(row)[column];
    sums.count = static_cast<int32_t>(width * height);
    for (int j = 0; j < kGridNodes; ++j) sums.responses[j] = limited.Response(j);
  }
}

// Each cell with its neighbours, which weigh half as much: up and down first.
void ToneGrid::MakeNodes(std::ptrdiff_t row) {
  const GridCellSums* const above = row > 0 ? SumsOfRow(row - 1) : nullptr;
  const GridCellSums* const below = row + 1 < rows_ ? SumsOfRow(row + 1) : nullptr;
  const GridCellSums* const at = SumsOfRow(row);
  WeighedSums before = {};
  WeighedSums middle = WeighedColumn(above, at, below, 0);
  for (std::ptrdiff_t column = 0; column < columns_; ++column) {
    const bool is_last = column + 1 == columns_;
    const WeighedSums behind =
        is_last ? WeighedSums{} : WeighedColumn(above, at, below, column + 1);
    const int64_t count = before.count + 2 * middle.count + behind.count;
    int16_t* const values = cells_[static_cast<size_t>(row * columns_ + column)].values;
    for (int j = 0; j < kGridNodes; ++j) {
      const int64_t responses = before.responses[j] + 2 * middle.responses[j] + behind.responses[j];
      values[j] = NodeValue(responses, count);
    }
    before = middle;
    middle = behind;
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
