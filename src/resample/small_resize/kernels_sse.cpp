// SPDX-License-Identifier: MIT
#include "resample/small_resize/kernels_vector.h"

namespace ovra {

const ReductionKernels kReductionSse = kReductionOf<Sse>;

}  // namespace ovra
