// SPDX-License-Identifier: MIT
#include "core/composition/kernels_vector.h"

namespace ovra {

const CompositionKernels kCompositionAvx2 = kCompositionOf<Avx2>;

}  // namespace ovra
