// SPDX-License-Identifier: MIT
#include "core/row_copy/kernels_vector.h"

namespace ovra {

const RowCopyKernels kRowCopyAvx2 = kRowCopyOf<Avx2>;

}  // namespace ovra
