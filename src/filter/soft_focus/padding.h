// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

#include "filter/soft_focus/kernels.h"

namespace ovra {

// The way over the padding behind a line and back, in a time that does not depend on its length.
// `state` is the rounded state at the line's last sample on the way forward; the answer is that at
// the first sample of the padding on the way back.
int64_t WalkSoftFocusPadding(const SoftFocusRecursion& recursion, int64_t state, uint8_t sample,
                             std::ptrdiff_t padding);

}  // namespace ovra
