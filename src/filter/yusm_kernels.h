// SPDX-License-Identifier: MIT
// Rows of the luminance unsharp mask's blur and correction. Both passes of the blur combine rows as
// the plane filter does; along a row, "row" k is the row itself from its column k on.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/cpu.h"
#include "filter/plane_filter_kernels.h"

namespace ovra {

// The weight sets that have kernels of their own.
enum class YUsmBlur {
  kGeneral,
  kThreeTaps,  // 32, 64, 32
  kFiveTaps,   // 8, 32, 48, 32, 8: along the row it is the former twice, truncated in between
};

// The weights 32, 64, 32 applied twice, truncated in between; five rows.
CombineRowsKernel SmoothTwicePlain;
CombineRowsKernel SmoothTwiceSse;
CombineRowsKernel SmoothTwiceAvx2;

// The weighted sums shifted right by 7 and limited to 0..1023.
CombineRowsKernel CombineRowsLimitedPlain;
CombineRowsKernel CombineRowsLimitedSse;
CombineRowsKernel CombineRowsLimitedAvx2;

struct YUsmTables {
  const int32_t* correction;  // 2048 entries, by luminance - blurred + 1024
  const int32_t* level;       // 1024 entries, by luminance
  int32_t shift;              // of their product: 16 or 14
};

// The deltas that correct a row's samples, from its luminance and blurred luminance, both 0..1023.
// deltas may be blurred.
using FindDeltasRow = void(const int16_t* luminance, const int16_t* blurred, int16_t* deltas,
                           std::ptrdiff_t columns, const YUsmTables& tables);

FindDeltasRow FindDeltasPlain;
FindDeltasRow FindDeltasAvx2;

struct YUsmKernels {
  CombineRowsKernel* blur_along;
  CombineRowsKernel* blur_across;
  FindDeltasRow* find_deltas;
};

YUsmKernels SelectYUsmKernels(YUsmBlur blur, KernelTier tier);

}  // namespace ovra
