// SPDX-License-Identifier: MIT
#include "geometry/rotation/kernels_vector.h"

namespace ovra {

const RotationKernels kRotationSse = kRotationOf<Sse>;

}  // namespace ovra
