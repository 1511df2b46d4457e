// SPDX-License-Identifier: MIT
#include "tone/tone_grid/kernels_vector.h"

namespace ovra {

const ToneGridKernels kToneGridAvx2 = kToneGridOf<Avx2>;

}  // namespace ovra
