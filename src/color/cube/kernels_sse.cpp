// SPDX-License-Identifier: MIT
#include "color/cube/kernels_vector.h"

namespace ovra {

const CubeKernels kCubeSse = kCubeOf<Sse>;

}  // namespace ovra
