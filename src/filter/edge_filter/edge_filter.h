// SPDX-License-Identifier: MIT
// The edge-preserving smoothing filter, with the tier of kernels as an argument.
#pragma once

#include <cstdint>

#include "core/cpu.h"
#include "core/pixel_format.h"
#include "core/status.h"
#include "filter/edge_filter/tables.h"

namespace ovra {

Status EdgeFilterImage(const uint8_t* source, uint8_t* destination, uint32_t width, uint32_t height,
                       PixelFormatCode code, KernelTier tier);

// The filter proper, by a given table: sizes are not 0, the buffers packed and apart.
Status FilterEdges(const uint8_t* source, uint8_t* destination, uint32_t width, uint32_t height,
                   const EdgeTable& table, KernelTier tier);

}  // namespace ovra
