// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

#include "filter/luminance/level_stretch.h"
#include "ovra/filter.h"

namespace ovra {

// How one band is scaled.
struct YUsmBandTables {
  int32_t level[OVRA_LEVEL_TABLE_SIZE];            // times the amount, in units of 1 / 131072
  int32_t difference[OVRA_DIFFERENCE_TABLE_SIZE];  // in units of 1 / 128
};

// The strength of a band whose tables are the same everywhere: as its table entries' product, but
// in parts of 16 bits. The lower counts signed.
struct YUsmEvenBand {
  int16_t whole;
  int16_t fraction;
};

struct YUsmDoubleTables {
  YUsmBandTables coarse;
  YUsmBandTables fine;
  // Whether the tables of both bands are the same everywhere, and the blurs stay within the
  // luminance's range: then no sum of a delta needs more than 16 bits.
  bool is_even;
  YUsmEvenBand even_coarse;
  YUsmEvenBand even_fine;
  // Where the level matters to neither band, what each adds, by the band's value; while the blurs stay
  // within the luminance's range and no sum needs more than 16 bits.
  bool has_even_levels;
  LevelStretch even_levels;
  int16_t coarse_changes[OVRA_DIFFERENCE_TABLE_SIZE];
  int16_t fine_changes[OVRA_DIFFERENCE_TABLE_SIZE];
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
