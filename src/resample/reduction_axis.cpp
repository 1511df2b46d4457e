// SPDX-License-Identifier: MIT
#include "resample/reduction_axis.h"

#include <algorithm>
#include <cmath>

#include "resample/kernel_table.h"

namespace ovra {
namespace {

// The kernel reaches two destination samples to either side.
constexpr double kKernelReach = 2.0;

// The kernel is stretched for a reduction and never squeezed for an enlargement, which would leave
// destination samples between the taps.
double TapScale(double scale) {
  return std::min(scale, 1.0);
}

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

bool ReductionAxis::Build(int32_t destination_size, int32_t source_size, int64_t region_start,
                          int32_t region_size, double scale, const float* kernel_table) {
  // Samples within the reach of the kernel, but no more than there are after folding.
  max_taps_ = std::min(static_cast<int64_t>(2.0 * kKernelReach / TapScale(scale)) + 1,
                       int64_t{source_size});
  const auto sets = static_cast<uint64_t>(destination_size);
  const auto taps = static_cast<uint64_t>(max_taps_);
  if (!first_.Allocate(sets) || !count_.Allocate(sets) || !weights_.Allocate(sets * taps) ||
      !weights_as_double_.Allocate(sets * taps)) {
    return false;
  }
  const double centre = static_cast<double>(region_start) + (region_size - 1) * 0.5;
  first_sample_ = source_size - 1;
  last_sample_ = 0;
  for (int32_t i = 0; i < destination_size; ++i) {
    const double from_centre = i - (destination_size - 1) * 0.5;
    BuildSet(i, from_centre * (1.0 / scale) + centre, TapScale(scale), source_size, kernel_table);
    const Taps set = (*this)[i];
    first_sample_ = std::min(first_sample_, set.first);
    last_sample_ = std::max(last_sample_, set.first + set.count - 1);
  }
  return true;
}

void ReductionAxis::BuildSet(int32_t i, double position, double tap_scale, int32_t source_size,
                             const float* kernel_table) {
  const double reach = kKernelReach / tap_scale;
  const auto low = static_cast<int64_t>(std::ceil(position - reach));
  const auto high = static_cast<int64_t>(std::floor(position + reach));
  const auto clamp_to_source = [source_size](int64_t sample) {
    return std::clamp<int64_t>(sample, 0, source_size - 1);
  };
  const auto value_at = [=](int64_t sample) {
    return KernelValue(kernel_table, std::abs(static_cast<double>(sample) - position) * tap_scale);
  };

  KernelSums sums;
  for (int64_t sample = low; sample <= high; ++sample) {
    const double value = value_at(sample);
    sums.sum += value;
    sums.absolute += std::abs(value);
  }

  const int64_t first = clamp_to_source(low);
  const int64_t offset = i * max_taps_;
  int32_t* const weights = weights_.data() + offset;
  first_[static_cast<size_t>(i)] = first;
  const auto count = static_cast<int32_t>(std::min(clamp_to_source(high) - first + 1, max_taps_));
  count_[static_cast<size_t>(i)] = count;
  std::fill(weights, weights + max_taps_, 0);
  if (sums.Usable()) {
    int32_t total = 0;
    for (int64_t sample = low; sample <= high; ++sample) {
      const double exact = value_at(sample) / sums.sum * kReductionUnity;
      const auto weight = static_cast<int32_t>(exact + (exact < 0 ? -0.5 : 0.5));
      weights[std::min<int64_t>(clamp_to_source(sample) - first, count - 1)] += weight;
      total += weight;
    }
    // Rounding leaves a remainder; given to the largest weight, it keeps constant pictures constant.
    *std::max_element(weights, weights + count) += kReductionUnity - total;
  }
  std::copy(weights, weights + max_taps_, weights_as_double_.data() + offset);
}

ReductionAxis::Taps ReductionAxis::operator[](int32_t i) const {
  const int64_t offset = i * max_taps_;
  return {first_[static_cast<size_t>(i)], count_[static_cast<size_t>(i)], weights_.data() + offset,
          weights_as_double_.data() + offset};
}

}  // namespace ovra
