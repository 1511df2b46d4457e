// SPDX-License-Identifier: MIT
#include "color/channel_tables/kernels_vector.h"

namespace ovra {

const ChannelTablesKernels kChannelTablesAvx2 = {
    {{MapBytes<Avx2>, MapPlaced<uint64_t>}, {MapDeep<uint8_t>, MapDeep<uint16_t>}}};

}  // namespace ovra
