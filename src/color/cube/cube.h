// SPDX-License-Identifier: MIT
// Conversion through a colour cube, with the tier of kernels as an argument.
#pragma once

#include "color/conversion.h"
#include "color/cube/tables.h"
#include "color/handle.h"
#include "core/cpu.h"
#include "core/work_memory.h"
#include "ovra/color.h"

namespace ovra {

// What stands behind a colour cube's handle. Not changed after it was made.
struct CubeContext : TaggedContext<0xC0BEC0BE> {
  FormatPair formats;
  DecodedFormatPair decoded;
  CubeMemory memory;
};

Status MakeCubeContext(const FormatPair& formats, const OvraColorCube* cube,
                       ContextPtr<CubeContext>* context);

Status ConvColorCube(const ImagePair& images, const FormatPair& formats, const CubeContext* context,
                     KernelTier tier);

Status ConvColorCubeSingleStep(const ImagePair& images, const FormatPair& formats,
                               const OvraColorCube* cube, KernelTier tier);

}  // namespace ovra
