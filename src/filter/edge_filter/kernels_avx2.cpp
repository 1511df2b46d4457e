// SPDX-License-Identifier: MIT
#include "filter/edge_filter/kernels_vector.h"

namespace ovra {

const EdgeFilterKernels kEdgeFilterAvx2 = kEdgeFilterOf<Avx2>;

}  // namespace ovra
