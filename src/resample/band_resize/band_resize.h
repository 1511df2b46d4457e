// SPDX-License-Identifier: MIT
// Resizing in bands, with the tier of kernels as an argument.
#pragma once

#include <cstdint>

#include "core/cpu.h"
#include "core/work_memory.h"
#include "resample/row_stream.h"

// What lies between two bands of a picture. It holds its own copy of a caller's kernel table, and no
// pointer of the caller's.
struct OvraBandResizeContext {
  ovra::PixelFormatCode format = 0;
  ovra::ResizeShape shape = {};
  ovra::WorkMemory<float> table;
  ovra::RowStream rows;
};

namespace ovra {

using BandResizeContext = ::OvraBandResizeContext;

// With the library's own kernel, and with the caller's. *context is null where they fail.
Status BandResizeInit(const ResizeShape& shape, PixelFormatCode format, KernelTier tier,
                      BandResizeContext** context);
Status BandResizeCoreInit(const ResizeShape& shape, PixelFormatCode format, const float* table,
                          KernelSupport support, KernelTier tier, BandResizeContext** context);

}  // namespace ovra
