// SPDX-License-Identifier: MIT
#include "color/channel_tables/kernels_vector.h"

namespace ovra {

const ChannelTablesKernels kChannelTablesAvx2 = kChannelTablesOf<Avx2>;

}  // namespace ovra
