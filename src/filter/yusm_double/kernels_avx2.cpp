// SPDX-License-Identifier: MIT
#include "filter/yusm_double/kernels_vector.h"

namespace ovra {

const YUsmDoubleKernels kYUsmDoubleAvx2 = kYUsmDoubleOf<Avx2>;

}  // namespace ovra
