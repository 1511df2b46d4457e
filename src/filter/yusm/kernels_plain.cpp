// SPDX-License-Identifier: MIT
#include <algorithm>

#include "core/wrapping.h"
#include "filter/yusm/kernels.h"

namespace ovra {
namespace {

int32_t Smooth(int32_t left, int32_t middle, int32_t right) {
  return (left + 2 * middle + right) >> 2;
}

void SmoothTwice(const int16_t* const* rows, const PlaneKernel& /*kernel*/, int16_t* output,
                 std::ptrdiff_t width) {
  for (std::ptrdiff_t x = 0; x < width; ++x) {
    const int32_t before = Smooth(rows[0][x], rows[1][x], rows[2][x]);
    const int32_t middle = Smooth(rows[1][x], rows[2][x], rows[3][x]);
    const int32_t after = Smooth(rows[2][x], rows[3][x], rows[4][x]);
    output[x] = static_cast<int16_t>(Smooth(before, middle, after));
  }
}

void CombineRowsLimited(const int16_t* const* rows, const PlaneKernel& kernel, int16_t* output,
                        std::ptrdiff_t width) {
  for (std::ptrdiff_t x = 0; x < width; ++x) {
    const int32_t value = WeightedSum(rows, kernel, x) >> kPlaneUnitBits;
    output[x] = static_cast<int16_t>(std::clamp(value, 0, kMaxLuminance));
  }
}

// The product wraps at 32 bits, the delta at 16.
void FindDeltas(const int16_t* luminance, const int16_t* blurred, int16_t* deltas,
                std::ptrdiff_t columns, const YUsmTables& tables) {
  for (std::ptrdiff_t x = 0; x < columns; ++x) {
    const int32_t difference = luminance[x] - blurred[x];
    const uint32_t product =
        WrappingProduct(tables.correction[difference + kNoDifference], tables.level[luminance[x]]);
    deltas[x] = static_cast<int16_t>(static_cast<int32_t>(product) >> tables.shift);
  }
}

}  // namespace

const YUsmKernels kYUsmPlain = {CombineRowsLimited, SmoothTwice, CombineRowsLimited, FindDeltas};

}  // namespace ovra
