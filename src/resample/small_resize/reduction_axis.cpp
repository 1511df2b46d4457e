// SPDX-License-Identifier: MIT
#include "resample/small_resize/reduction_axis.h"

#include <algorithm>
#include <cmath>

#include "resample/kernel_table.h"

namespace ovra {
namespace {

// The kernel reaches two destination samples to either side.
constexpr double kKernelReach = 2.0;

// The kernel's value so many steps of the table from its centre, linearly between the entries: a
// look-up of whole steps would jump where a distance falls on one, and mirrored pictures with it.
double KernelValue(const float* kernel_table, double position) {
  if (!(position < kKernelTableEntries - 1)) return 0.0;
  const auto index = static_cast<int32_t>(position);
  const double below = kernel_table[index];
  const double above = kernel_table[index + 1];
  return below + (above - below) * (position - index);
}

// So many are looked up before they become weights, which then happens side by side.
constexpr int32_t kValuesAtOnce = 128;

// Writes values times scale, with so many low bits that are 0. Answers the sum.
int32_t RoundWeights(const double* values, int32_t count, double scale, int32_t low_bits,
                     int32_t* weights) {
  int32_t sum = 0;
  for (int32_t k = 0; k < count; ++k) {
    const double exact = values[k] * scale;
    weights[k] = static_cast<int32_t>(exact + std::copysign(0.5, exact)) * (1 << low_bits);
    sum += weights[k];
  }
  return sum;
}

// std::max_element follows a pointer, which takes a third of the time of a set of weights.
int32_t* FirstGreatest(int32_t* weights, int64_t count) {
  int32_t greatest = weights[0];
  for (int64_t k = 1; k < count; ++k) greatest = std::max(greatest, weights[k]);
  return std::find(weights, weights + count, greatest);
}

}  // namespace

struct ReductionAxis::KernelSums {
  double sum = 0.0;
  double absolute = 0.0;

  void Add(double value) {
    sum += value;
    absolute += std::abs(value);
  }

  // Whether weights can be formed. Also false when one of the sums is not a number.
  bool Usable() const {
    return std::abs(sum) > 0.0 && absolute <= kMaxReductionGain * std::abs(sum) &&
           std::isfinite(absolute);
  }
};

ReductionAxis::ReductionAxis(const ReductionGeometry& geometry, const float* kernel_table,
                             int32_t depth_bits)
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
  low_bits_ = depth_bits == 8 && taps <= kMaxWordTaps ? kWordLowBits : 0;
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

// Adds the kernel's values at `count` samples to the sums, and keeps them.
void ReductionAxis::AddValues(int64_t sample, int32_t count, double position, double* values,
                              KernelSums* sums) const {
  const double table_step = tap_scale_ * kKernelTableSteps;
  auto at = static_cast<double>(sample);
  for (int32_t k = 0; k < count; ++k, at += 1.0) {
    values[k] = KernelValue(kernel_table_, std::abs(at - position) * table_step);
    sums->Add(values[k]);
  }
}

int32_t ReductionAxis::Fill(int32_t i, int32_t* weights) const {
  const double position = PositionOf(i);
  const auto low = static_cast<int64_t>(std::ceil(position - reach_));
  const auto high = static_cast<int64_t>(std::floor(position + reach_));
  double values[kValuesAtOnce];
  const auto count_from = [high](int64_t sample) {
    return static_cast<int32_t>(std::min<int64_t>(high - sample + 1, kValuesAtOnce));
  };
  std::fill(weights, weights + max_taps_, 0);
  KernelSums sums;
  for (int64_t sample = low; sample <= high; sample += kValuesAtOnce) {
    AddValues(sample, count_from(sample), position, values, &sums);
  }
  if (!sums.Usable()) return 0;

  const int64_t first = First(i);
  const int64_t last_tap = std::min<int64_t>(Last(i) - first, max_taps_ - 1);
  const double scale = (kReductionUnity >> low_bits_) / sums.sum;
  const bool inside = low == first && high <= first + last_tap;
  int32_t remainder = kReductionUnity;
  for (int64_t sample = low; sample <= high; sample += kValuesAtOnce) {
    const int32_t count = count_from(sample);
    KernelSums again;
    // The values of few samples are still there.
    if (high - low >= kValuesAtOnce) AddValues(sample, count, position, values, &again);
    int32_t rounded[kValuesAtOnce];
    int32_t* const to = inside ? weights + (sample - first) : rounded;
    remainder -= RoundWeights(values, count, scale, low_bits_, to);
    for (int32_t k = 0; !inside && k < count; ++k) {
      weights[std::clamp<int64_t>(sample + k - first, 0, last_tap)] += rounded[k];
    }
  }
  // Given to the largest weight, what rounding leaves keeps constant pictures constant.
  *FirstGreatest(weights, last_tap + 1) += remainder;
  return kReductionUnity;
}

}  // namespace ovra
