// SPDX-License-Identifier: MIT
#include "filter/soft_focus/kernels_vector.h"

namespace ovra {

const SoftFocusKernels kSoftFocusAvx2 = kSoftFocusOf<Avx2>;

}  // namespace ovra
