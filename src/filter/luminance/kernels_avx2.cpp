// SPDX-License-Identifier: MIT
#include "filter/luminance/kernels_vector.h"

namespace ovra {

const LuminanceKernels kLuminanceAvx2 = kLuminanceOf<Avx2>;

}  // namespace ovra
