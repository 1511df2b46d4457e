// SPDX-License-Identifier: MIT
#include "color/color_matrix/kernels_vector.h"

namespace ovra {

const ColorMatrixKernels kColorMatrixAvx2 = kColorMatrixOf<Avx2>;

}  // namespace ovra
