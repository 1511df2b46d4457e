// SPDX-License-Identifier: MIT
#include "resample/small_resize/kernels_vector.h"

namespace ovra {

const ReductionKernels kReductionAvx2 = kReductionOf<Avx2>;

}  // namespace ovra
