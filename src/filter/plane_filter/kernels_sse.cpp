// SPDX-License-Identifier: MIT
#include "filter/plane_filter/kernels_vector.h"

namespace ovra {

const PlaneFilterKernels kPlaneFilterSse = kPlaneFilterOf<Sse>;

}  // namespace ovra
