// SPDX-License-Identifier: MIT
#include "resample/small_resize/reduction_axis.h"

#include <algorithm>
#include <cmath>

#include "resample/kernel_table.h"

namespace ovra {
namespace {

// The kernel reaches two destination samples to either side.
constexpr double kKernelReach = 2.0;

// The kernel's value `distance` destination samples from its centre, linearly between the entries:
// a look-up in steps would jump where a distance falls on a step, and mirrored pictures with it.
double KernelValue(const float* kernel_table, double distance) {
  const double position = distance * kKernelTableSteps;
  if (!(position < kKernelTableEntries - 1)) return 0.0;
  const auto index = static_cast<int32_t>(position);
  const double below = kernel_table[index];
  const double above = kernel_table[index + 1];
  return below + (above - below) * (position - index);
}

struct KernelSums {
  double sum = 0.0;
  double absolute = 0.0;

  // Whether weights can be formed. Also false when one of the sums is not a number.
  bool Usable() const {
    return std::abs(sum) > 0.0 && absolute <= kMaxReductionGain * std::abs(sum) &&
           std::isfinite(absolute);
  }
};

}  // namespace

ReductionAxis::ReductionAxis(const ReductionGeometry& geometry, const float* kernel_table)
    : kernel_table_(kernel_table),
      source_size_(geometry.source_size),
      half_span_((geometry.destination_size - 1) * 0.5),
      step_(1.0 / geometry.scale),
      centre_(static_cast<double>(geometry.region_start) + (geometry.region_size - 1) * 0.5),
      // The kernel is stretched for a reduction and never squeezed for an enlargement, which would
      // leave destination samples between the taps.
      tap_scale_(std::min(geometry.scale, 1.0)),
      reach_(kKernelReach / tap_scale_) {
  const auto taps = static_cast<int64_t>(2.0 * kKernelReach / tap_scale_) + 1;
  max_taps_ = static_cast<int32_t>(std::min(taps, int64_t{source_size_}));
}

double ReductionAxis::PositionOf(int32_t i) const {
  return (i - half_span_) * step_ + centre_;
}

int32_t ReductionAxis::Clamp(double sample) const {
  return static_cast<int32_t>(
      std::clamp<int64_t>(static_cast<int64_t>(sample), 0, source_size_ - 1));
}

int32_t ReductionAxis::First(int32_t i) const {
  return Clamp(std::ceil(PositionOf(i) - reach_));
}

int32_t ReductionAxis::Last(int32_t i) const {
  return Clamp(std::floor(PositionOf(i) + reach_));
}

double ReductionAxis::ValueAt(int64_t sample, double position) const {
  return KernelValue(kernel_table_, std::abs(static_cast<double>(sample) - position) * tap_scale_);
}

int32_t ReductionAxis::Fill(int32_t i, int32_t* weights) const {
  std::fill(weights, weights + max_taps_, 0);
  const double position = PositionOf(i);
  const auto low = static_cast<int64_t>(std::ceil(position - reach_));
  const auto high = static_cast<int64_t>(std::floor(position + reach_));
  KernelSums sums;
  for (int64_t sample = low; sample <= high; ++sample) {
    const double value = ValueAt(sample, position);
    sums.sum += value;
    sums.absolute += std::abs(value);
  }
  if (!sums.Usable()) return 0;

  const int64_t first = First(i);
  const int64_t count = std::min<int64_t>(Last(i) - first + 1, max_taps_);
  int32_t total = 0;
  for (int64_t sample = low; sample <= high; ++sample) {
    const double exact = ValueAt(sample, position) / sums.sum * kReductionUnity;
    const auto weight = static_cast<int32_t>(exact + (exact < 0 ? -0.5 : 0.5));
    const int64_t tap = std::clamp<int64_t>(sample, 0, source_size_ - 1) - first;
    weights[std::min(tap, count - 1)] += weight;
    total += weight;
  }
  // Rounding leaves a remainder; given to the largest weight, it keeps constant pictures constant.
  *std::max_element(weights, weights + count) += kReductionUnity - total;
  return kReductionUnity;
}

}  // namespace ovra
