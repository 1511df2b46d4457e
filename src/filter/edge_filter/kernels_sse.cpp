// SPDX-License-Identifier: MIT
#include "filter/edge_filter/kernels_vector.h"

namespace ovra {

const EdgeFilterKernels kEdgeFilterSse = kEdgeFilterOf<Sse>;

}  // namespace ovra
