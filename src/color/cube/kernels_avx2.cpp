// SPDX-License-Identifier: MIT
#include "color/cube/kernels_vector.h"

namespace ovra {

const CubeKernels kCubeAvx2 = kCubeOf<Avx2>;

}  // namespace ovra
