// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

#include "ovra/filter.h"

namespace ovra {

// How one band is scaled.
struct YUsmBandTables {
  int32_t level[OVRA_LEVEL_TABLE_SIZE];            // times the amount, in units of 1 / 131072
  int32_t difference[OVRA_DIFFERENCE_TABLE_SIZE];  // in units of 1 / 128
};

struct YUsmDoubleTables {
  YUsmBandTables coarse;
  YUsmBandTables fine;
};

// The deltas of a row's 8-bit samples, from its luminance (0..1023) and that blurred coarsely and
// finely, which may have any values. deltas may be one of the blurs.
using FindDoubleDeltasRow = void(const int16_t* luminance, const int16_t* coarse_blur,
                                 const int16_t* fine_blur, int16_t* deltas, std::ptrdiff_t columns,
                                 const YUsmDoubleTables& tables);

struct YUsmDoubleKernels {
  FindDoubleDeltasRow* find_deltas;
};

extern const YUsmDoubleKernels kYUsmDoublePlain;
extern const YUsmDoubleKernels kYUsmDoubleSse;
extern const YUsmDoubleKernels kYUsmDoubleAvx2;

}  // namespace ovra
