// SPDX-License-Identifier: MIT
#include "resample/resize_weights.h"

#include <cmath>
#include <limits>

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

// The kernel at so many tap distances; beyond the table the kernel is 0.
class Kernel {
 public:
  explicit Kernel(const AxisFilter& filter)
      : table_(filter.table),
        step_((1.0 / static_cast<double>(filter.stretch)) * kKernelTableSteps) {}

  double At(double distance) const {
    const auto entry = SaturatedTrunc<int32_t>(distance * step_);
    return entry >= 0 && entry < kKernelTableEntries ? static_cast<double>(table_[entry]) : 0.0;
  }

 private:
  const float* table_;
  double step_;
};

// Distance of tap t from the position, which lies `fraction` to the right of tap 0.
double TapDistance(double fraction, int32_t t) {
  return t <= 0 ? fraction - t : t - fraction;
}

// The weights of a position that lies `fraction` to the right of its centre tap. Answers their
// sum.
uint32_t FillWeights(const Kernel& kernel, double fraction, int32_t taps, int16_t* weights) {
  const int32_t first = -TapsBeforeCentre(taps);
  double kernel_sum = 0.0;
  for (int32_t k = 0; k < taps; ++k) kernel_sum += kernel.At(TapDistance(fraction, first + k));
  const bool usable = std::isfinite(kernel_sum) && kernel_sum != 0.0;
  uint32_t weight_sum = 0;
  for (int32_t k = 0; k < taps; ++k) {
    const double value = kernel.At(TapDistance(fraction, first + k));
    weights[k] = usable ? SaturatedTrunc<int16_t>(value / kernel_sum * kUnitWeight) : int16_t{0};
    weight_sum += static_cast<uint32_t>(weights[k]);
  }
  return weight_sum;
}

}  // namespace

void BuildWeightSets(const AxisGeometry& geometry, const AxisFilter& filter, AxisWeights* axis) {
  const Kernel kernel(filter);
  const int32_t count = geometry.destination_extent;
  const double centre =
      static_cast<double>(geometry.region_start) + (geometry.region_extent - 1) * 0.5;
  // An even number of samples has none in the middle: two lie half a step to either side.
  const double phase = count % 2 == 0 ? 0.5 : 0.0;
  const double step = 1.0 / (geometry.scale == 0.0 ? 1.0 : geometry.scale);
  for (int32_t i = 0; i < count; ++i) {
    const int32_t k = i - count / 2;
    const double position = (k + phase) * step + centre;
    const double whole = std::floor(position);
    int16_t* const weights = axis->weights.data() + int64_t{i} * axis->weight_stride;
    for (int32_t tap = axis->taps; tap < axis->weight_stride; ++tap) weights[tap] = 0;
    axis->sets[static_cast<size_t>(i)] = {
        SaturatedTrunc<int32_t>(whole),
        FillWeights(kernel, position - whole, axis->taps, weights),
    };
  }
}

}  // namespace ovra
