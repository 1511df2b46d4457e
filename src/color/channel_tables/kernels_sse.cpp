// SPDX-License-Identifier: MIT
#include "color/channel_tables/kernels_scalar.h"

namespace ovra {

const ChannelTablesKernels kChannelTablesSse = {
    {{MapPlaced<uint32_t>, MapPlaced<uint64_t>}, {MapDeep<uint8_t>, MapDeep<uint16_t>}}};

}  // namespace ovra
