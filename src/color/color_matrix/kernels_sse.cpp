// SPDX-License-Identifier: MIT
#include "color/color_matrix/kernels_vector.h"

namespace ovra {

const ColorMatrixKernels kColorMatrixSse = kColorMatrixOf<Sse>;

}  // namespace ovra
