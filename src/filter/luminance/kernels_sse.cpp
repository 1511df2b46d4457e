// SPDX-License-Identifier: MIT
#include "filter/luminance/kernels_vector.h"

namespace ovra {

const LuminanceKernels kLuminanceSse = kLuminanceOf<Sse>;

}  // namespace ovra
