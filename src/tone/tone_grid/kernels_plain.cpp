// SPDX-License-Identifier: MIT
#include <algorithm>

#include "tone/pyramid/soft_limit.h"
#include "tone/tone_grid/kernels.h"

namespace ovra {
namespace {

void AddRow(const int16_t* samples, std::ptrdiff_t width, int32_t cell_bits, int32_t* sums) {
  for (std::ptrdiff_t x = 0; x < width; ++x) {
    int32_t* const cell = sums + (x >> cell_bits) * kGridSums;
    for (int m = 0; m < kGridSums; ++m) {
      cell[m] += std::min<int32_t>(samples[x], kGridTone * (m + 1));
    }
  }
}

// from + (to - from) * fraction / 2^bits, rounded.
int32_t Blended(int32_t from, int32_t to, int32_t fraction, int32_t bits) {
  return from + (((to - from) * fraction + (1 << (bits - 1))) >> bits);
}

void BlendRows(const GridCell* top, const GridCell* bottom, int32_t fraction, int32_t scale,
               GridColumn* columns, std::ptrdiff_t count) {
  for (std::ptrdiff_t i = 0; i < count; ++i) {
    int32_t nodes[kGridNodes];
    for (int j = 0; j < kGridNodes; ++j) {
      nodes[j] = Blended(top[i].values[j], bottom[i].values[j], fraction, scale + 1);
    }
    for (int z = 0; z < 8; ++z) {
      columns[i].values[z] = static_cast<int16_t>(nodes[z]);
      columns[i].steps[z] = static_cast<int16_t>(nodes[z + 1] - nodes[z]);
    }
  }
}

int32_t AtTone(const GridColumn& column, int32_t tone) {
  constexpr int32_t kToneBits = 12;
  const int32_t z = tone >> kToneBits;
  return Blended(column.values[z], column.values[z] + column.steps[z], tone & (kGridTone - 1),
                 kToneBits);
}

void SliceRow(const int16_t* tone, const int16_t* fine_detail, const GridColumn* columns,
              int32_t scale, const SoftLimit& limit, int16_t* detail, std::ptrdiff_t pixels) {
  for (std::ptrdiff_t x = 0; x < pixels; ++x) {
    const std::ptrdiff_t position = 2 * x + 1 + (std::ptrdiff_t{1} << scale);
    const GridColumn* const left = columns + (position >> (scale + 1));
    const auto fraction = static_cast<int32_t>(position & ((2 << scale) - 1));
    const int32_t pull =
        Blended(AtTone(left[0], tone[x]), AtTone(left[1], tone[x]), fraction, scale + 1);
    detail[x] = static_cast<int16_t>(fine_detail[x] - Limited(pull, limit));
  }
}

}  // namespace

const ToneGridKernels kToneGridPlain = {AddRow, BlendRows, SliceRow};

}  // namespace ovra
