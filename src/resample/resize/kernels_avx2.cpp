// SPDX-License-Identifier: MIT
#include "resample/resize/kernels_vector.h"

namespace ovra {

const ResizeKernels kResizeAvx2 = kResizeOf<Avx2>;

}  // namespace ovra
