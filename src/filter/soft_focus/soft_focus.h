// SPDX-License-Identifier: MIT
// Soft focus, with the tier of kernels as an argument.
#pragma once

#include <cstdint>

#include "core/cpu.h"
#include "core/status.h"
#include "ovra/filter.h"

namespace ovra {

using SoftFocusParams = OvraSoftFocusParams;

Status SoftFocus(const uint8_t* source, uint8_t* destination, uint32_t width, uint32_t height,
                 const SoftFocusParams* params, KernelTier tier);

}  // namespace ovra
