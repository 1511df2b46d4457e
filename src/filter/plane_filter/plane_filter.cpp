// SPDX-License-Identifier: MIT
#include "filter/plane_filter/plane_filter.h"

#include <iterator>
#include <numeric>

#include "core/wrapping.h"

namespace ovra {
namespace {

int32_t SumOfWeights(const int32_t* weights, uint32_t tap_count) {
  uint32_t sum = 0;
  for (uint32_t k = 0; k < tap_count; ++k) sum = WrappingSum(sum, weights[k]);
  return static_cast<int32_t>(sum);
}

bool FitsPairs(const int32_t* weights, uint32_t tap_count) {
  return std::all_of(weights, weights + tap_count,
                     [](int32_t w) { return w == static_cast<int16_t>(w); });
}

bool IsThreeTaps(const PlaneKernel& kernel) {
  const int32_t* const w = kernel.weights;
  return kernel.taps == 3 && w[0] == 32 && w[1] == 64 && w[2] == 32;
}

}  // namespace

void FillWeightPairs(const int32_t* weights, size_t taps, int32_t* pairs) {
  for (size_t k = 0; k < taps; k += 2) {
    pairs[k / 2] = PackedPair(weights[k], k + 1 < taps ? weights[k + 1] : 0);
  }
}

bool IsMirroredMean(const PlaneKernel& kernel) {
  const int32_t* const end = kernel.weights + kernel.taps;
  return std::all_of(kernel.weights, end, [](int32_t w) { return w >= 0; }) &&
         std::accumulate(kernel.weights, end, int64_t{0}) == kPlaneUnitSum &&
         std::equal(kernel.weights, end, std::make_reverse_iterator(end));
}

CombineRowsKernel* SelectCombineRows(const PlaneKernel& kernel, PlaneSamples samples,
                                     KernelTier tier) {
  if (kernel.sum <= 0) return CombineRowsZero;
  const KernelTier usable = kernel.weight_pairs == nullptr ? KernelTier::kPlain : tier;
  const PlaneFilterKernels& kernels =
      ForTier(usable, kPlaneFilterPlain, kPlaneFilterSse, kPlaneFilterAvx2);
  if (IsThreeTaps(kernel)) return kernels.three_taps;
  if (kernel.sum != kPlaneUnitSum) return kernels.divide;
  if (!IsMirroredMean(kernel)) return kernels.shift;
  return samples == PlaneSamples::kLuminance ? kernels.luminance : kernels.mirrored;
}

bool SeparablePlaneFilter::Prepare(uint32_t width, uint32_t tap_count, const int32_t* weights,
                                   PlaneSamples samples, KernelTier tier) {
  const uint64_t pairs = (uint64_t{tap_count} + 1) / 2;
  if (!line_.Allocate(uint64_t{width} + tap_count) || !shifts_.Allocate(tap_count) ||
      !rows_.Allocate(tap_count) || !weight_pairs_.Allocate(pairs)) {
    return false;
  }
  for (size_t k = 0; k < tap_count; ++k) shifts_[k] = line_.data() + k;
  FillWeightPairs(weights, tap_count, weight_pairs_.data());
  width_ = static_cast<std::ptrdiff_t>(width);
  const int32_t sum = SumOfWeights(weights, tap_count);
  kernel_ = {weights, FitsPairs(weights, tap_count) ? weight_pairs_.data() : nullptr,
             static_cast<std::ptrdiff_t>(tap_count), sum, sum > 0 ? 1.0 / sum : 0.0};
  combine_ = SelectCombineRows(kernel_, samples, tier);
  return true;
}

void SeparablePlaneFilter::FilterRow(const int16_t* input, int16_t* output) {
  if (width_ == 0) return;
  int16_t* const middle = std::fill_n(line_.data(), Before(), input[0]);
  int16_t* const end = std::copy_n(input, width_, middle);
  std::fill_n(end, After(), input[width_ - 1]);
  combine_(shifts_.data(), kernel_, output, width_);
}

}  // namespace ovra
