// SPDX-License-Identifier: MIT
#include "filter/multi_frequency/kernels_vector.h"

namespace ovra {

const MultiFrequencyKernels kMultiFrequencySse = kMultiFrequencyOf<Sse>;

}  // namespace ovra
