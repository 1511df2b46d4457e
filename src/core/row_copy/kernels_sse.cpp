// SPDX-License-Identifier: MIT
#include "core/row_copy/kernels_vector.h"

namespace ovra {

const RowCopyKernels kRowCopySse = kRowCopyOf<Sse>;

}  // namespace ovra
