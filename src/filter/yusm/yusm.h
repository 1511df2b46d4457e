// SPDX-License-Identifier: MIT
// The luminance unsharp mask inside, with the tier of kernels as an argument.
#pragma once

#include <cstdint>

#include "core/cpu.h"
#include "core/pixel_format.h"
#include "core/status.h"
#include "core/work_memory.h"
#include "ovra/filter.h"

struct OvraYUsmContext {
  int32_t tap_count;
  int32_t weights[OVRA_YUSM_MAX_TAPS];  // as given; a run uses the low 16 bits of each
  int32_t level_table[OVRA_LEVEL_TABLE_SIZE];
  int32_t correction_table[OVRA_DIFFERENCE_TABLE_SIZE];  // differences with the amount folded in
};

namespace ovra {

using YUsmContext = OvraYUsmContext;

// The weights and tables of a mask, as the caller hands them over.
struct YUsmParameters {
  int32_t tap_count;
  const int32_t* weights;
  float amount;
  const int16_t* level_table;
  const int16_t* difference_table;
};

// Decodes the format and checks that the mask takes it.
Status CheckYUsmFormat(PixelFormatCode code, PixelFormat* format);

// Fills one response table of `size` entries, of which entry `offset` stands at x = 0. The points'
// x are increasing and, but for the last one's, inside the table.
void InterpolateResponseCurve(int32_t point_count, const OvraResponsePoint* points, int32_t size,
                              int32_t offset, int16_t* table);

// Fills both tables of the context from the caller's tables.
void BuildYUsmTables(const int16_t* level_table, const int16_t* difference_table, float amount,
                     uint32_t depth_bits, YUsmContext* context);

Status MakeYUsmContext(PixelFormatCode code, const YUsmParameters& parameters,
                       ContextPtr<YUsmContext>* context);

Status RunYUsm(const uint8_t* source, uint8_t* destination, uint32_t width, uint32_t height,
               PixelFormatCode code, const YUsmContext* context, KernelTier tier);

Status RunYUsmSingleStep(const uint8_t* source, uint8_t* destination, uint32_t width,
                         uint32_t height, PixelFormatCode code, const YUsmParameters& parameters,
                         KernelTier tier);

}  // namespace ovra
