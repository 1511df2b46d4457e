// SPDX-License-Identifier: MIT
#include "filter/yusm_double/kernels_vector.h"

namespace ovra {

const YUsmDoubleKernels kYUsmDoubleSse = kYUsmDoubleOf<Sse>;

}  // namespace ovra
