// SPDX-License-Identifier: MIT
// Conversion between DIB rows and raw buffers, with the tier of kernels as an argument.
#pragma once

#include <cstdint>

#include "core/cpu.h"

namespace ovra {

void Dib2Raw(const uint8_t* dib, uint8_t* raw, uint32_t width, uint32_t height, KernelTier tier);
void Raw2Dib(const uint8_t* raw, uint8_t* dib, uint32_t width, uint32_t height, KernelTier tier);

}  // namespace ovra
