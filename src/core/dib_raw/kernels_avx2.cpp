// SPDX-License-Identifier: MIT
#include "core/dib_raw/kernels_vector.h"

namespace ovra {

const DibRawKernels kDibRawAvx2 = kDibRawOf<Avx2>;

}  // namespace ovra
