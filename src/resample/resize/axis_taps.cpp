// SPDX-License-Identifier: MIT
#include "resample/resize/axis_taps.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "core/wrapping.h"
#include "resample/kernel_table.h"

namespace ovra {
namespace {

// Truncates toward zero; what is beyond the type saturates, and what is not a number becomes 0.
template <class Integer>
Integer SaturatedTrunc(double value) {
  using Limits = std::numeric_limits<Integer>;
  if (std::isnan(value)) return 0;
  if (value <= static_cast<double>(Limits::min())) return Limits::min();
  if (value >= static_cast<double>(Limits::max())) return Limits::max();
  return static_cast<Integer>(value);
}

// The same for numbers, without branches.
int16_t Truncated(double value) {
  using Limits = std::numeric_limits<int16_t>;
  return static_cast<int16_t>(std::clamp<double>(value, Limits::min(), Limits::max()));
}

// Distance of tap t from the position, which lies `fraction` to the right of tap 0.
double TapDistance(double fraction, int32_t t) {
  return t <= 0 ? fraction - t : t - fraction;
}

}  // namespace

AxisTaps::AxisTaps(const AxisGeometry& geometry, const float* table, KernelSupport support)
    : table_(table),
      table_step_((1.0 / static_cast<double>(support.stretch)) * kKernelTableSteps),
      taps_(support.taps),
      half_extent_(geometry.destination_extent / 2),
      // An even number of samples has none in the middle: two lie half a step to either side.
      phase_(geometry.destination_extent % 2 == 0 ? 0.5 : 0.0),
      step_(1.0 / (geometry.scale == 0.0 ? 1.0 : geometry.scale)),
      centre_(static_cast<double>(geometry.region_start) + (geometry.region_extent - 1) * 0.5) {}

double AxisTaps::PositionOf(int32_t i) const {
  return ((i - half_extent_) + phase_) * step_ + centre_;
}

int32_t AxisTaps::CentreOf(int32_t i) const {
  return SaturatedTrunc<int32_t>(std::floor(PositionOf(i)));
}

double AxisTaps::FractionOf(int32_t i) const {
  const double position = PositionOf(i);
  return position - std::floor(position);
}

// Beyond the table the kernel is 0. A distance that is no number is none.
double AxisTaps::KernelAt(double distance) const {
  const double entry = distance * table_step_;
  if (entry < kKernelTableEntries) return static_cast<double>(table_[static_cast<int32_t>(entry)]);
  return std::isnan(entry) ? static_cast<double>(table_[0]) : 0.0;
}

uint32_t AxisTaps::FillWeights(double fraction, int16_t* weights) const {
  constexpr int32_t kFewTaps = 16;
  double values[kFewTaps];  // of few taps, looked up once
  const bool few = taps_ <= kFewTaps;
  const int32_t first = -TapsBeforeCentre(taps_);
  double kernel_sum = 0.0;
  for (int32_t k = 0; k < taps_; ++k) {
    const double value = KernelAt(TapDistance(fraction, first + k));
    if (few) values[k] = value;
    kernel_sum += value;
  }
  const bool usable = std::isfinite(kernel_sum) && kernel_sum != 0.0;
  uint32_t weight_sum = 0;
  for (int32_t k = 0; k < taps_; ++k) {
    const double value = few ? values[k] : KernelAt(TapDistance(fraction, first + k));
    weights[k] = usable ? Truncated(value / kernel_sum * kUnitWeight) : int16_t{0};
    weight_sum = WrappingSum(weight_sum, weights[k]);
  }
  for (int32_t k = taps_; k < WeightStride(taps_); ++k) weights[k] = 0;
  return weight_sum;
}

}  // namespace ovra
