// SPDX-License-Identifier: MIT
#include "tone/pyramid/kernels_vector.h"

namespace ovra {

const PyramidKernels kPyramidSse = kPyramidOf<Sse>;

}  // namespace ovra
