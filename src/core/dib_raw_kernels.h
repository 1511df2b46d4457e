// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/cpu.h"

namespace ovra {

// Copies `pixels` three-byte pixels with the first and the third byte of each exchanged. The rows
// do not overlap; exactly 3 * pixels bytes are read and written.
using SwapRedBlueRow = void(const uint8_t* source, uint8_t* destination, std::ptrdiff_t pixels);

SwapRedBlueRow SwapRedBluePlain;
SwapRedBlueRow SwapRedBlueSse;
SwapRedBlueRow SwapRedBlueAvx2;

inline SwapRedBlueRow* SelectSwapRedBlue(KernelTier tier) {
  if (tier == KernelTier::kAvx2) return SwapRedBlueAvx2;
  if (tier == KernelTier::kSse) return SwapRedBlueSse;
  return SwapRedBluePlain;
}

}  // namespace ovra
