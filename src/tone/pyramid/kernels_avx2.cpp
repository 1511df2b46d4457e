// SPDX-License-Identifier: MIT
#include "tone/pyramid/kernels_vector.h"

namespace ovra {

const PyramidKernels kPyramidAvx2 = kPyramidOf<Avx2>;

}  // namespace ovra
