// SPDX-License-Identifier: MIT
#include <algorithm>

#include "core/wrapping.h"
#include "filter/yusm_double/kernels.h"

namespace ovra {
namespace {

constexpr int32_t kNoDifference = OVRA_DIFFERENCE_TABLE_SIZE / 2;  // the entry at difference 0

int32_t Product(int32_t a, int32_t b) {
  return static_cast<int32_t>(WrappingProduct(a, b));
}

int32_t ScaledBand(const YUsmBandTables& tables, int32_t luminance, int32_t band) {
  const int32_t entry = std::clamp(band + kNoDifference, 0, OVRA_DIFFERENCE_TABLE_SIZE - 1);
  const int32_t strength = Product(tables.difference[entry], tables.level[luminance]) >> 8;
  return Product(strength, band) >> 16;
}

void FindDeltas(const int16_t* luminance, const int16_t* coarse_blur, const int16_t* fine_blur,
                int16_t* deltas, std::ptrdiff_t columns, const YUsmDoubleTables& tables) {
  for (std::ptrdiff_t x = 0; x < columns; ++x) {
    const int32_t y = luminance[x];
    const int32_t coarse = coarse_blur[x];
    const int32_t fine = fine_blur[x];
    const int32_t sharpened =
        coarse + ScaledBand(tables.coarse, y, fine - coarse) + ScaledBand(tables.fine, y, y - fine);
    // From 10 to 8 bits; the four numbers have 17 bits at most, so that 16 are enough now.
    deltas[x] = static_cast<int16_t>((sharpened - y) >> 2);
  }
}

}  // namespace

const YUsmDoubleKernels kYUsmDoublePlain = {FindDeltas};

}  // namespace ovra
