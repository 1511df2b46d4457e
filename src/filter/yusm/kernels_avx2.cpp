// SPDX-License-Identifier: MIT
#include "filter/yusm/kernels_vector.h"

namespace ovra {

const YUsmKernels kYUsmAvx2 = kYUsmOf<Avx2>;

}  // namespace ovra
