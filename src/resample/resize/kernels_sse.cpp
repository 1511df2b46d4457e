// SPDX-License-Identifier: MIT
#include "resample/resize/kernels_vector.h"

namespace ovra {

const ResizeKernels kResizeSse = kResizeOf<Sse>;

}  // namespace ovra
