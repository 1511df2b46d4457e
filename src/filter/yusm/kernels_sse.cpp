// SPDX-License-Identifier: MIT
#include "filter/yusm/kernels_vector.h"

namespace ovra {

const YUsmKernels kYUsmSse = kYUsmOf<Sse>;

}  // namespace ovra
