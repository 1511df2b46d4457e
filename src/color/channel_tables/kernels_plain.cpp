// SPDX-License-Identifier: MIT
#include "color/channel_tables/kernels.h"

namespace ovra {
namespace {

template <class In, class Out>
void MapChannels(const uint8_t* source, uint8_t* destination, std::ptrdiff_t pixels,
                 const SampleTables& tables) {
  const auto* const in = reinterpret_cast<const In*>(source);
  auto* const out = reinterpret_cast<Out*>(destination);
  // Copies, which stores through `out` cannot change.
  const uint16_t* const table0 = tables.table[0];
  const uint16_t* const table1 = tables.table[1];
  const uint16_t* const table2 = tables.table[2];
  const uint32_t last = tables.last;
  const auto index = [last](In sample) -> uint32_t {
    if constexpr (sizeof(In) == 1) return sample;  // all bytes have entries
    return sample < last ? sample : last;
  };
  for (std::ptrdiff_t i = 0; i < pixels; ++i) {
    out[3 * i + 0] = static_cast<Out>(table0[index(in[3 * i + 0])]);
    out[3 * i + 1] = static_cast<Out>(table1[index(in[3 * i + 1])]);
    out[3 * i + 2] = static_cast<Out>(table2[index(in[3 * i + 2])]);
  }
}

}  // namespace

const ChannelTablesKernels kChannelTablesPlain = {
    {{MapChannels<uint8_t, uint8_t>, MapChannels<uint8_t, uint16_t>},
     {MapChannels<uint16_t, uint8_t>, MapChannels<uint16_t, uint16_t>}}};

}  // namespace ovra
