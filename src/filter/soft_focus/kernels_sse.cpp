// SPDX-License-Identifier: MIT
#include "filter/soft_focus/kernels_vector.h"

namespace ovra {

const SoftFocusKernels kSoftFocusSse = kSoftFocusOf<Sse>;

}  // namespace ovra
