// SPDX-License-Identifier: MIT
// Rows of the luminance unsharp mask's blur and correction.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/cpu.h"

namespace ovra {

// Rows of work memory go on for this many columns beyond their last: kernels may read and write
// there, so that they work in whole vectors. What they find there has no meaning.
inline constexpr std::ptrdiff_t kWorkRowSlack = 32;

// Blurs a row along itself. Column x takes samples[x] .. samples[x + taps - 1]: the row begins with
// the mirrored columns left of the first one.
using BlurAlongRow = void(const int16_t* samples, int16_t* filtered, std::ptrdiff_t columns,
                          const int16_t* weights, int32_t taps);

// Blurs `taps` rows into one.
using BlurAcrossRows = void(const int16_t* const* rows, int16_t* blurred, std::ptrdiff_t columns,
                            const int16_t* weights, int32_t taps);

struct YUsmTables {
  const int32_t* correction;  // 2048 entries, by luminance - blurred + 1024
  const int32_t* level;       // 1024 entries, by luminance
  int32_t shift;              // of their product: 16 or 14
};

// The deltas that correct a row's samples, from its luminance and blurred luminance, both 0..1023.
// deltas may be blurred.
using FindDeltasRow = void(const int16_t* luminance, const int16_t* blurred, int16_t* deltas,
                           std::ptrdiff_t columns, const YUsmTables& tables);

struct YUsmKernels {
  BlurAlongRow* blur_along;
  BlurAcrossRows* blur_across;
  FindDeltasRow* find_deltas;
};

// The weight sets that have kernels of their own.
enum class YUsmBlur {
  kGeneral,
  kThreeTaps,  // 32, 64, 32
  kFiveTaps,   // 8, 32, 48, 32, 8: along the row it is the former twice, truncated in between
};

YUsmKernels YUsmKernelsPlain(YUsmBlur blur);

inline YUsmKernels SelectYUsmKernels(YUsmBlur blur, KernelTier tier) {
  (void)tier;
  return YUsmKernelsPlain(blur);
}

}  // namespace ovra
