// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/cpu.h"

namespace ovra {

// Forms the two colour differences of `width` three-byte pixels: four times the distance of the
// first and of the third channel from a luminance of 19, 38 and 7 parts in 64.
using ColorDifferenceKernel = void(const uint8_t* pixels, int16_t* first, int16_t* second,
                                   std::ptrdiff_t width);

// Counts the samples at which two rows of blurred colour differences (below 2^14 in magnitude)
// differ by a middling amount, at least kMiddlingDifference and less than twice that.
using CountMiddlingKernel = uint32_t(const int16_t* a, const int16_t* b, std::ptrdiff_t width);

inline constexpr int32_t kMiddlingDifference = 10;

ColorDifferenceKernel ColorDifferencePlain;
ColorDifferenceKernel ColorDifferenceSse;
ColorDifferenceKernel ColorDifferenceAvx2;

CountMiddlingKernel CountMiddlingPlain;
CountMiddlingKernel CountMiddlingSse;
CountMiddlingKernel CountMiddlingAvx2;

inline ColorDifferenceKernel* SelectColorDifference(KernelTier tier) {
  if (tier == KernelTier::kAvx2) return ColorDifferenceAvx2;
  if (tier == KernelTier::kSse) return ColorDifferenceSse;
  return ColorDifferencePlain;
}

inline CountMiddlingKernel* SelectCountMiddling(KernelTier tier) {
  if (tier == KernelTier::kAvx2) return CountMiddlingAvx2;
  if (tier == KernelTier::kSse) return CountMiddlingSse;
  return CountMiddlingPlain;
}

}  // namespace ovra
