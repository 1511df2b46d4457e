// SPDX-License-Identifier: MIT
#include "resample/resize/byte_columns.h"

#include <algorithm>

namespace ovra {
namespace {

constexpr int32_t kMaxTaps = 8;
constexpr int8_t kShuffleZero = -1;

// Whole registers are read and written at the end of a plane.
constexpr int64_t kPlaneSpare = 64;

// Strong reductions by a caller's kernel would take planes much larger than the destination row.
constexpr int64_t kMaxPlaneColumns(int64_t width) {
  constexpr int64_t kSmallWidth = 64;
  return std::min(4 * width + kSmallWidth, int64_t{1} << 30);
}

// Sums of a part's weights, times 255 and with what rounding adds, stay within 16 signed bits.
constexpr int32_t kMaxPartSum = 120;

struct SplitWeight {
  int8_t high;
  int8_t low;
};

// Splits the weights of a column. False where sums of products could leave 16 bits.
bool SplitWeights(const int16_t* weights, int32_t taps, SplitWeight* split) {
  int32_t above = 0;
  int32_t below = 0;
  int32_t low = 0;
  for (int32_t k = 0; k < taps; ++k) {
    const int32_t part = weights[k] >> kByteLowBits;
    (part > 0 ? above : below) += part;
    split[k] = {static_cast<int8_t>(part),
                static_cast<int8_t>(weights[k] - (part << kByteLowBits))};
    low += split[k].low;
  }
  return above <= kMaxPartSum && below >= -kMaxPartSum && low <= kMaxPartSum;
}

}  // namespace

// Sets that lie outside the source altogether all read its edge, and need not lie further out.
int64_t ByteColumns::FirstTap(int32_t column) const {
  const int64_t first =
      int64_t{taps_.CentreOf(std::min(column, width_ - 1))} - TapsBeforeCentre(support_.taps);
  return std::clamp<int64_t>(first, -kMaxTaps, source_width_);
}

ByteColumns::LaneTaps ByteColumns::TapsOfLane(int32_t lane) const {
  LaneTaps taps;
  for (int32_t i = 0; i < kByteColumnsInLane; ++i) {
    taps.first[i] = FirstTap(lane * kByteColumnsInLane + i);
  }
  return taps;
}

int64_t ByteColumns::LaneTaps::Least(int begin, int end) const {
  return *std::min_element(first + begin, first + end);
}

int64_t ByteColumns::LaneTaps::Reach(int begin, int end) const {
  constexpr int64_t kPair = 2;
  return *std::max_element(first + begin, first + end) - Least(begin, end) + kPair;
}

// Finds the columns of the source that are read, and how many windows a lane needs.
bool ByteColumns::FindWindows() {
  constexpr int kHalf = kByteColumnsInLane / 2;
  int64_t least = FirstTap(0);
  int64_t greatest = least;
  windows_ = 1;
  for (int32_t lane = 0; lane < lane_count_; ++lane) {
    const LaneTaps taps = TapsOfLane(lane);
    if (taps.Reach(0, kByteColumnsInLane) > kByteWindow) windows_ = 2;
    if (taps.Reach(0, kHalf) > kByteWindow || taps.Reach(kHalf, kByteColumnsInLane) > kByteWindow) {
      return false;
    }
    least = std::min(least, taps.Least(0, kByteColumnsInLane));
    greatest = std::max(greatest, *std::max_element(taps.first, taps.first + kByteColumnsInLane));
  }
  first_column_ = least;
  plane_columns_ = greatest + 2 * pass_.pairs - least;
  return plane_columns_ <= kMaxPlaneColumns(width_);
}

bool ByteColumns::Allocate() {
  const auto groups = static_cast<uint64_t>(pass_.groups);
  return tables_.Allocate(groups * static_cast<uint64_t>(pass_.group_bytes)) &&
         starts_.Allocate(groups * static_cast<uint64_t>(lanes_ * windows_)) &&
         planes_.Allocate(static_cast<uint64_t>(pass_.plane_spacing) * channels_);
}

void ByteColumns::FillShuffles() {
  const int columns = kByteColumnsInLane / windows_;
  for (int32_t lane = 0; lane < lane_count_; ++lane) {
    const LaneTaps taps = TapsOfLane(lane);
    int8_t* const table = GroupTable(lane / lanes_) + lane % lanes_ * kByteWindow;
    int32_t* const starts = starts_.data() + std::ptrdiff_t{lane} * windows_;
    for (int32_t window = 0; window < windows_; ++window) {
      const int begin = window * columns;
      const int64_t start = taps.Least(begin, begin + columns);
      int8_t* const shuffle = table + window * lanes_ * kByteWindow;
      std::fill_n(shuffle, kByteWindow, kShuffleZero);
      for (int i = begin; i < begin + columns; ++i) {
        shuffle[2 * i] = static_cast<int8_t>(taps.first[i] - start);
        shuffle[2 * i + 1] = static_cast<int8_t>(shuffle[2 * i] + 1);
      }
      starts[window] = static_cast<int32_t>(start - first_column_);
    }
  }
}

bool ByteColumns::FillWeights() {
  const std::ptrdiff_t register_bytes = lanes_ * kByteWindow;
  const int32_t group_columns = lanes_ * kByteColumnsInLane;
  double last_fraction = AxisTaps::kNoFraction;
  SplitWeight split[kMaxTaps] = {};
  for (int32_t column = 0; column < lane_count_ * kByteColumnsInLane; ++column) {
    const double fraction = taps_.FractionOf(std::min(column, width_ - 1));
    if (fraction != last_fraction) {
      int16_t weights[kMaxTaps] = {};
      taps_.FillWeights(fraction, weights);
      if (!SplitWeights(weights, kMaxTaps, split)) return false;
      last_fraction = fraction;
    }
    int8_t* at =
        GroupTable(column / group_columns) + windows_ * register_bytes + column % group_columns * 2;
    for (int32_t k = 0; k < 2 * pass_.pairs; k += 2, at += 2 * register_bytes) {
      at[0] = split[k].high;
      at[1] = split[k + 1].high;
      at[register_bytes] = split[k].low;
      at[register_bytes + 1] = split[k + 1].low;
    }
  }
  return true;
}

Status ByteColumns::Prepare(const ResizePlan& plan, const AxisTaps& taps,
                            const ByteColumnsKernels& kernels) {
  taps_ = taps;
  support_ = plan.kernel.horizontal;
  pass_.pairs = (support_.taps + 1) / 2;
  lanes_ = kernels.lanes;
  width_ = plan.shape.destination.width;
  source_width_ = plan.shape.source.width;
  channels_ = plan.format.channels;
  if (lanes_ == 0 || support_.taps > kMaxTaps) {
    return OVRA_OK;
  }
  const int32_t group_columns = lanes_ * kByteColumnsInLane;
  pass_.groups = (width_ - 1) / group_columns + 1;
  lane_count_ = pass_.groups * lanes_;
  if (!FindWindows()) return OVRA_OK;

  pass_.group_bytes = (windows_ + 2 * pass_.pairs) * lanes_ * kByteWindow;
  pass_.plane_spacing = static_cast<std::ptrdiff_t>((plane_columns_ + 2 * kPlaneSpare - 1) /
                                                    kPlaneSpare * kPlaneSpare);
  if (!Allocate()) return OVRA_ERROR_NO_MEMORY;
  FillShuffles();
  if (!FillWeights()) return OVRA_OK;
  const int64_t inner_begin = std::clamp<int64_t>(-first_column_, 0, plane_columns_);
  const int64_t inner_end =
      std::clamp<int64_t>(source_width_ - first_column_, inner_begin, plane_columns_);
  pass_.tables = tables_.data();
  pass_.starts = starts_.data();
  pass_.planes = planes_.data();
  pass_.repeated_left = static_cast<std::ptrdiff_t>(inner_begin);
  pass_.first_column = static_cast<std::ptrdiff_t>(first_column_);
  pass_.inner = static_cast<std::ptrdiff_t>(inner_end - inner_begin);
  pass_.repeated_right = static_cast<std::ptrdiff_t>(plane_columns_ - inner_end);
  pass_.last_column = source_width_ - 1;
  pass_.source_stride = plan.SourceStride();
  run_ = kernels.rows[windows_ - 1][ChannelForm(channels_)];
  return OVRA_OK;
}

}  // namespace ovra
