// SPDX-License-Identifier: MIT
// Rows of the luminance unsharp mask's blur and correction. Both passes of the blur combine rows as
// the plane filter does; along a row, "row" k is the row itself from its column k on.
#pragma once

#include <cstddef>
#include <cstdint>

#include "filter/luminance/level_stretch.h"
#include "filter/plane_filter/kernels.h"

namespace ovra {

inline constexpr int32_t kNoDifference = 1024;
inline constexpr int32_t kMaxLuminance = 1023;

// The deltas where the level does not matter.
struct YUsmEvenDeltas {
  LevelStretch levels;
  int16_t deltas[2 * kNoDifference];  // by luminance - blurred + kNoDifference
  // Whether all levels are even and YUsmProduct gives all deltas.
  bool is_product;
  int16_t factor;
  int32_t product_shift;
};

// A difference is this much farther up in a product, of which the upper 16 bits count, and is a little
// more than it is: what is a whole number must not fall below it, either side of 0.
inline constexpr int32_t kYUsmProductBits = 11;
static constexpr int32_t YUsmProduct(const YUsmEvenDeltas& even, int32_t difference) {
  const int32_t above = difference * (1 << (16 - kYUsmProductBits)) + 1;
  return (above * even.factor) >> (16 + even.product_shift);
}

struct YUsmTables {
  const int32_t* correction;  // 2048 entries, by luminance - blurred + kNoDifference
  const int32_t* level;       // 1024 entries, by luminance
  int32_t shift;              // of their product: 16 or 14
  const YUsmEvenDeltas* even;
};

// The deltas that correct a row's samples, from its luminance and blurred luminance, both
// 0..kMaxLuminance. deltas may be blurred.
using FindDeltasRow = void(const int16_t* luminance, const int16_t* blurred, int16_t* deltas,
                           std::ptrdiff_t columns, const YUsmTables& tables);

struct YUsmKernels {
  CombineRowsKernel* limited;       // the sums, shifted as kPlaneUnitSum, limited to the luminance
  CombineRowsKernel* smooth_twice;  // 32, 64, 32 twice over five rows, truncated in between
  CombineRowsKernel* five_taps;     // 8, 32, 48, 32, 8 over samples of 0..kMaxLuminance
  FindDeltasRow* find_deltas;
};

extern const YUsmKernels kYUsmPlain;
extern const YUsmKernels kYUsmSse;
extern const YUsmKernels kYUsmAvx2;

}  // namespace ovra
