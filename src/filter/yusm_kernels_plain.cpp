// SPDX-License-Identifier: MIT
#include <algorithm>

#include "filter/yusm_kernels.h"

namespace ovra {
namespace {

constexpr int32_t kWeightBits = 7;  // weights are meant to sum to 128
constexpr int32_t kMaxLuminance = 1023;
constexpr int32_t kNoDifference = 1024;  // the entry of the correction table at difference 0

int32_t Smooth(int32_t left, int32_t middle, int32_t right) {
  return (left + 2 * middle + right) >> 2;
}

}  // namespace

void SmoothTwicePlain(const int16_t* const* rows, const PlaneKernel& /*kernel*/, int16_t* output,
                      std::ptrdiff_t width) {
  for (std::ptrdiff_t x = 0; x < width; ++x) {
    const int32_t before = Smooth(rows[0][x], rows[1][x], rows[2][x]);
    const int32_t middle = Smooth(rows[1][x], rows[2][x], rows[3][x]);
    const int32_t after = Smooth(rows[2][x], rows[3][x], rows[4][x]);
    output[x] = static_cast<int16_t>(Smooth(before, middle, after));
  }
}

void CombineRowsLimitedPlain(const int16_t* const* rows, const PlaneKernel& kernel, int16_t* output,
                             std::ptrdiff_t width) {
  for (std::ptrdiff_t x = 0; x < width; ++x) {
    const int32_t value = WeightedSum(rows, kernel, x) >> kWeightBits;
    output[x] = static_cast<int16_t>(std::clamp(value, 0, kMaxLuminance));
  }
}

// The product wraps at 32 bits, the delta at 16.
void FindDeltasPlain(const int16_t* luminance, const int16_t* blurred, int16_t* deltas,
                     std::ptrdiff_t columns, const YUsmTables& tables) {
  for (std::ptrdiff_t x = 0; x < columns; ++x) {
    const int32_t difference = luminance[x] - blurred[x];
    const uint32_t product = static_cast<uint32_t>(tables.correction[difference + kNoDifference]) *
                             static_cast<uint32_t>(tables.level[luminance[x]]);
    deltas[x] = static_cast<int16_t>(static_cast<int32_t>(product) >> tables.shift);
  }
}

YUsmKernels SelectYUsmKernels(YUsmBlur blur, KernelTier tier) {
  // Plainly, three taps are an ordinary sum: no rounding and no limit makes a difference.
  if (tier == KernelTier::kPlain) {
    return {blur == YUsmBlur::kFiveTaps ? SmoothTwicePlain : CombineRowsShiftPlain,
            CombineRowsLimitedPlain, FindDeltasPlain};
  }
  const bool avx2 = tier == KernelTier::kAvx2;
  FindDeltasRow* const find_deltas = avx2 ? FindDeltasAvx2 : FindDeltasPlain;
  CombineRowsKernel* const three_taps = avx2 ? CombineRowsThreeTapsAvx2 : CombineRowsThreeTapsSse;
  if (blur == YUsmBlur::kThreeTaps) return {three_taps, three_taps, find_deltas};
  CombineRowsKernel* const limited = avx2 ? CombineRowsLimitedAvx2 : CombineRowsLimitedSse;
  if (blur == YUsmBlur::kFiveTaps) {
    return {avx2 ? SmoothTwiceAvx2 : SmoothTwiceSse, limited, find_deltas};
  }
  return {avx2 ? CombineRowsShiftAvx2 : CombineRowsShiftSse, limited, find_deltas};
}

}  // namespace ovra
