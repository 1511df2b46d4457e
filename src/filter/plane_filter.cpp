// SPDX-License-Identifier: MIT
#include "filter/plane_filter.h"

#include <algorithm>

namespace ovra {
namespace {

int32_t SumOfWeights(const int32_t* weights, uint32_t tap_count) {
  uint32_t sum = 0;
  for (uint32_t k = 0; k < tap_count; ++k) sum += static_cast<uint32_t>(weights[k]);
  return static_cast<int32_t>(sum);
}

}  // namespace

bool PlaneFilter::Prepare(uint32_t width, uint32_t tap_count, const int32_t* weights,
                          KernelTier tier) {
  if (!line_.Allocate(uint64_t{width} + tap_count) || !shifts_.Allocate(tap_count) ||
      !rows_.Allocate(tap_count)) {
    return false;
  }
  width_ = static_cast<std::ptrdiff_t>(width);
  kernel_ = {weights, static_cast<std::ptrdiff_t>(tap_count), SumOfWeights(weights, tap_count)};
  combine_ = SelectCombineRows(kernel_, tier);
  for (size_t k = 0; k < tap_count; ++k) shifts_[k] = line_.data() + k;
  return true;
}

void PlaneFilter::FilterRow(const int16_t* input, int16_t* output) {
  if (width_ == 0) return;
  int16_t* const middle = std::fill_n(line_.data(), Before(), input[0]);
  int16_t* const end = std::copy_n(input, width_, middle);
  std::fill_n(end, After(), input[width_ - 1]);
  combine_(shifts_.data(), kernel_, output, width_);
}

void PlaneFilter::FilterColumns(const int16_t* plane, std::ptrdiff_t height, std::ptrdiff_t y,
                                int16_t* output) {
  for (std::ptrdiff_t k = 0; k < kernel_.taps; ++k) {
    const int64_t row = std::clamp<int64_t>(int64_t{y} + k - Before(), 0, height - 1);
    rows_[static_cast<size_t>(k)] = plane + static_cast<std::ptrdiff_t>(row) * width_;
  }
  CombineRows(rows_.data(), output);
}

Status SeparablePlaneFilter(const int16_t* input, int16_t* output, uint32_t width, uint32_t height,
                            uint32_t tap_count, const int32_t* weights, int16_t* scratch,
                            KernelTier tier) {
  PlaneFilter filter;
  if (!filter.Prepare(width, tap_count, weights, tier)) return OVRA_ERROR_NO_MEMORY;
  const auto row_samples = static_cast<std::ptrdiff_t>(width);
  const auto rows = static_cast<std::ptrdiff_t>(height);
  for (std::ptrdiff_t y = 0; y < rows; ++y) {
    filter.FilterRow(input + y * row_samples, scratch + y * row_samples);
  }
  for (std::ptrdiff_t y = 0; y < rows; ++y) {
    filter.FilterColumns(scratch, rows, y, output + y * row_samples);
  }
  return OVRA_OK;
}

}  // namespace ovra
