// SPDX-License-Identifier: MIT
#include "tone/tone_grid/kernels_vector.h"

namespace ovra {

const ToneGridKernels kToneGridSse = kToneGridOf<Sse>;

}  // namespace ovra
