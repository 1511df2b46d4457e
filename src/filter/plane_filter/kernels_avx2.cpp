// SPDX-License-Identifier: MIT
#include "filter/plane_filter/kernels_vector.h"

namespace ovra {

const PlaneFilterKernels kPlaneFilterAvx2 = kPlaneFilterOf<Avx2>;

}  // namespace ovra
