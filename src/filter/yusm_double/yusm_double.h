// SPDX-License-Identifier: MIT
// The double unsharp mask inside, with the tier of kernels as an argument.
#pragma once

#include <cstdint>

#include "core/cpu.h"
#include "core/pixel_format.h"
#include "core/status.h"
#include "core/work_memory.h"
#include "ovra/filter.h"

struct OvraYUsmDoubleContext {
  uint32_t tap_count1;
  int32_t weights1[OVRA_YUSM_DOUBLE_MAX_TAPS];
  uint32_t tap_count2;
  int32_t weights2[OVRA_YUSM_DOUBLE_MAX_TAPS];
  float amount1;
  int16_t level_table1[OVRA_LEVEL_TABLE_SIZE];
  int16_t difference_table1[OVRA_DIFFERENCE_TABLE_SIZE];
  float amount2;
  int16_t level_table2[OVRA_LEVEL_TABLE_SIZE];
  int16_t difference_table2[OVRA_DIFFERENCE_TABLE_SIZE];
};

namespace ovra {

using YUsmDoubleContext = OvraYUsmDoubleContext;

// A blur, and how the band of detail that it leaves over is scaled.
struct YUsmBand {
  uint32_t tap_count;
  const int32_t* weights;
  float amount;
  const int16_t* level_table;
  const int16_t* difference_table;
};

struct YUsmDoubleParameters {
  YUsmBand coarse;  // numbered 1 in the interface
  YUsmBand fine;    // numbered 2
};

// Runs on images of checked sizes and colour model. OVRA_ERROR_NO_MEMORY is the only failure.
Status FilterYUsmDouble(const uint8_t* source, uint8_t* destination, uint32_t width,
                        uint32_t height, uint32_t color_model,
                        const YUsmDoubleParameters& parameters, KernelTier tier);

Status MakeYUsmDoubleContext(PixelFormatCode code, const YUsmDoubleParameters& parameters,
                             ContextPtr<YUsmDoubleContext>* context);

Status RunYUsmDouble(const uint8_t* source, uint8_t* destination, uint32_t width, uint32_t height,
                     PixelFormatCode code, const YUsmDoubleContext* context, KernelTier tier);

Status RunYUsmDoubleSingleStep(const uint8_t* source, uint8_t* destination, uint32_t width,
                               uint32_t height, PixelFormatCode code,
                               const YUsmDoubleParameters& parameters, KernelTier tier);

}  // namespace ovra
