// SPDX-License-Identifier: MIT
// The choice between the two range-weight tables of the edge filter.
#pragma once

#include <cstdint>

#include "core/cpu.h"

namespace ovra {

// Whether one of the picture's two colour differences is rich in detail of middling amplitude: in
// more than a fifth of the pixels a fine and a coarse blur of it differ by 10 to 19. False when
// there is no memory to find out. The picture is packed rows of three-byte pixels; neither size
// is 0.
bool HasMiddlingDetail(const uint8_t* source, uint32_t width, uint32_t height, KernelTier tier);

}  // namespace ovra
