// SPDX-License-Identifier: MIT
#include "geometry/free_trimming/kernels_vector.h"

namespace ovra {

const TrimmingKernels kTrimmingAvx2 = kTrimmingOf<Avx2>;

}  // namespace ovra
