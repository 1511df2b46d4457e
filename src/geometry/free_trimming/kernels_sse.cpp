// SPDX-License-Identifier: MIT
#include "geometry/free_trimming/kernels_vector.h"

namespace ovra {

const TrimmingKernels kTrimmingSse = kTrimmingOf<Sse>;

}  // namespace ovra
