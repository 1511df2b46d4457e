// SPDX-License-Identifier: MIT
#include "filter/multi_frequency/kernels_vector.h"

namespace ovra {

const MultiFrequencyKernels kMultiFrequencyAvx2 = kMultiFrequencyOf<Avx2>;

}  // namespace ovra
