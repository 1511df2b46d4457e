// SPDX-License-Identifier: MIT
#include "filter/edge_filter/classifier.h"

#include <cstddef>

#include "core/row_ring.h"
#include "core/work_memory.h"
#include "filter/edge_filter/kernels.h"
#include "filter/plane_filter/plane_filter.h"

namespace ovra {
namespace {

constexpr int32_t kFineWeights[] = {32, 64, 32};
constexpr int32_t kCoarseWeights[] = {1, 3, 8, 15, 23, 28, 23, 15, 8, 3, 1};
constexpr uint32_t kCoarseTaps = 11;
constexpr std::ptrdiff_t kDelay = kCoarseTaps / 2;  // rows needed below the one in hand

// One blur of one plane. Its rows come one by one and are kept as long as a kernel needs them: the
// planes of a large picture would cost more time than all the arithmetic.
class RowBlur {
 public:
  template <uint32_t kTaps>
  [[nodiscard]] bool Prepare(uint32_t width, const int32_t (&weights)[kTaps], KernelTier tier) {
    return filter_.Prepare(width, kTaps, weights, PlaneSamples::kSigned, tier) &&
           filtered_.Allocate(width, kCoarseTaps) && blurred_.Allocate(width);
  }

  // Takes row `y` of the plane, in order.
  void AddRow(std::ptrdiff_t y, const int16_t* row) { filter_.FilterRow(row, filtered_.Row(y)); }

  // Row `y` of the blurred plane of `height` rows, after rows up to y + kDelay have come.
  const int16_t* Row(std::ptrdiff_t y, std::ptrdiff_t height) {
    filter_.CombineRows(filtered_, height, y, blurred_.data());
    return blurred_.data();
  }

 private:
  SeparablePlaneFilter filter_;
  RowRing<int16_t> filtered_;  // horizontally
  WorkMemory<int16_t> blurred_;
};

// One colour-difference plane on its way through both blurs.
class BandCounter {
 public:
  [[nodiscard]] bool Prepare(uint32_t width, CountMiddlingRow* count_middling, KernelTier tier) {
    width_ = static_cast<std::ptrdiff_t>(width);
    count_middling_ = count_middling;
    return plane_row_.Allocate(width) && fine_.Prepare(width, kFineWeights, tier) &&
           coarse_.Prepare(width, kCoarseWeights, tier);
  }

  int16_t* plane_row() { return plane_row_.data(); }

  // Takes plane_row() as row `y`.
  void AddRow(std::ptrdiff_t y) {
    fine_.AddRow(y, plane_row_.data());
    coarse_.AddRow(y, plane_row_.data());
  }

  void CountRow(std::ptrdiff_t y, std::ptrdiff_t height) {
    count_ += count_middling_(fine_.Row(y, height), coarse_.Row(y, height), width_);
  }

  // With so many pixels more that may count.
  bool ExceedsAFifthOf(double pixels, uint64_t more) const {
    return static_cast<double>(count_ + more) / pixels > 0.2;
  }

 private:
  std::ptrdiff_t width_ = 0;
  CountMiddlingRow* count_middling_ = nullptr;
  WorkMemory<int16_t> plane_row_;
  RowBlur fine_;
  RowBlur coarse_;
  uint64_t count_ = 0;
};

}  // namespace

bool HasMiddlingDetail(const uint8_t* source, uint32_t width, uint32_t height, KernelTier tier) {
  BandCounter first;
  BandCounter second;
  const EdgeFilterKernels& kernels =
      ForTier(tier, kEdgeFilterPlain, kEdgeFilterSse, kEdgeFilterAvx2);
  if (!first.Prepare(width, kernels.count_middling, tier) ||
      !second.Prepare(width, kernels.count_middling, tier)) {
    return false;
  }
  const auto row_pixels = static_cast<std::ptrdiff_t>(width);
  const auto rows = static_cast<std::ptrdiff_t>(height);
  const double pixels = static_cast<double>(uint64_t{width} * height);
  for (std::ptrdiff_t y = 0; y < rows + kDelay; ++y) {
    if (y < rows) {
      kernels.color_difference(source + 3 * row_pixels * y, first.plane_row(), second.plane_row(),
                               row_pixels);
      first.AddRow(y);
      second.AddRow(y);
    }
    if (y < kDelay) continue;
    first.CountRow(y - kDelay, rows);
    second.CountRow(y - kDelay, rows);
    // The counts only grow, and by no more than the pixels that are left.
    if (first.ExceedsAFifthOf(pixels, 0) || second.ExceedsAFifthOf(pixels, 0)) return true;
    const uint64_t left = uint64_t{width} * static_cast<uint64_t>(rows - 1 - (y - kDelay));
    if (!first.ExceedsAFifthOf(pixels, left) && !second.ExceedsAFifthOf(pixels, left)) return false;
  }
  return false;
}

}  // namespace ovra
