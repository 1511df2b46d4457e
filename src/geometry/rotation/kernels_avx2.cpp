// SPDX-License-Identifier: MIT
#include "geometry/rotation/kernels_vector.h"

namespace ovra {

const RotationKernels kRotationAvx2 = kRotationOf<Avx2>;

}  // namespace ovra
