// SPDX-License-Identifier: MIT
#include "core/composition/kernels_vector.h"

namespace ovra {

const CompositionKernels kCompositionSse = kCompositionOf<Sse>;

}  // namespace ovra
