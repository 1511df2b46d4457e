// SPDX-License-Identifier: MIT
#include "resample/resize/axis_taps.h"

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

TapSet AxisTaps::Fill(int32_t i, int16_t* weights) const {
  const double position = PositionOf(i);
  const double whole = std::floor(position);
  for (int32_t tap = taps_; tap < WeightStride(taps_); ++tap) weights[tap] = 0;
  return {SaturatedTrunc<int32_t>(whole), FillWeights(position - whole, weights)};
}

// Beyond the table the kernel is 0.
double AxisTaps::KernelAt(double distance) const {
  const auto entry = SaturatedTrunc<int32_t>(distance * table_step_);
  return entry >= 0 && entry < kKernelTableEntries ? static_cast<double>(table_[entry]) : 0.0;
}

// The weights of a position that lies `fraction` to the right of its centre tap. Answers their
// sum.
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
    weights[k] = usable ? SaturatedTrunc<int16_t>(value / kernel_sum * kUnitWeight) : int16_t{0};
    weight_sum = WrappingSum(weight_sum, weights[k]);
  }
  return weight_sum;
}

}  // namespace ovra
