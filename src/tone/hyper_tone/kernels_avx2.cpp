// SPDX-License-Identifier: MIT
#include "tone/hyper_tone/kernels_vector.h"

namespace ovra {

const HyperToneKernels kHyperToneAvx2 = kHyperToneOf<Avx2>;

}  // namespace ovra
