// SPDX-License-Identifier: MIT
#include "core/dib_raw/kernels_vector.h"

namespace ovra {

const DibRawKernels kDibRawSse = kDibRawOf<Sse>;

}  // namespace ovra
