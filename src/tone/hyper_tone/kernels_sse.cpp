// SPDX-License-Identifier: MIT
#include "tone/hyper_tone/kernels_vector.h"

namespace ovra {

const HyperToneKernels kHyperToneSse = kHyperToneOf<Sse>;

}  // namespace ovra
