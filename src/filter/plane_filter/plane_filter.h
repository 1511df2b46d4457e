// SPDX-License-Identifier: MIT
// Separable filter over planes of signed 16-bit samples, row by row.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "core/cpu.h"
#include "core/work_memory.h"
#include "filter/plane_filter/kernels.h"

namespace ovra {

// Writes PlaneKernel::weight_pairs for so many weights.
void FillWeightPairs(const int32_t* weights, size_t taps, int32_t* pairs);

// Whether the weights read the same from both ends, are not negative and sum to kPlaneUnitSum: then
// no sample becomes greater.
bool IsMirroredMean(const PlaneKernel& kernel);

// What a plane holds: numbers below 2^13 in magnitude, or 0..kMaxMeanSample.
enum class PlaneSamples { kSigned, kLuminance };

// The kernel that applies these weights.
CombineRowsKernel* SelectCombineRows(const PlaneKernel& kernel, PlaneSamples samples,
                                     KernelTier tier);

// One kernel made ready for rows of one width. Horizontal and vertical filtering are separate
// steps, so that a caller may keep as many rows as it likes.
//
// Samples are below 2^13 in magnitude. Weight k belongs to the sample at offset k - Before(); samples beyond the ends of a row are those
// at its ends. Sums are formed modulo 2^32 and give a sample, of which the low 16 bits are kept:
//
//   weights sum to 128         sum >> 7, rounding down
//   to another positive number sum / that number, truncating toward zero
//   to zero or less            0
//
// The sum of the weights is a 32-bit word too.
class SeparablePlaneFilter {
 public:
  // False when there is no memory. The weights belong to the caller and must outlive the filter; a
  // tap count of 0 is a kernel that sums to 0.
  [[nodiscard]] bool Prepare(uint32_t width, uint32_t tap_count, const int32_t* weights,
                             PlaneSamples samples, KernelTier tier);

  // Taps before and after the one in the middle; an even kernel reaches further after it.
  std::ptrdiff_t Before() const { return kernel_.taps == 0 ? 0 : (kernel_.taps - 1) >> 1; }
  std::ptrdiff_t After() const { return kernel_.taps >> 1; }

  // Filters one row horizontally. `output` may be `input`.
  void FilterRow(const int16_t* input, int16_t* output);

  // Forms row `y` of a plane of `height` rows vertically, those at its top and bottom repeated.
  // rows.Row(j) is row j, for all rows that the kernel reaches from `y`.
  template <class Rows>
  void CombineRows(const Rows& rows, std::ptrdiff_t height, std::ptrdiff_t y, int16_t* output) {
    for (std::ptrdiff_t k = 0; k < kernel_.taps; ++k) {
      const int64_t row = std::clamp<int64_t>(int64_t{y} + k - Before(), 0, height - 1);
      rows_[static_cast<size_t>(k)] = rows.Row(static_cast<std::ptrdiff_t>(row));
    }
    combine_(rows_.data(), kernel_, output, width_);
  }

 private:
  PlaneKernel kernel_ = {};
  CombineRowsKernel* combine_ = nullptr;
  std::ptrdiff_t width_ = 0;
  WorkMemory<int16_t> line_;           // a row with its ends repeated
  WorkMemory<const int16_t*> shifts_;  // line_ as the taps see it
  WorkMemory<const int16_t*> rows_;
  WorkMemory<int32_t> weight_pairs_;
};

}  // namespace ovra
