// SPDX-License-Identifier: MIT
#include "color/channel_tables_kernels.h"

namespace ovra {

template <class In, class Out>
void MapChannelsPlain(const In* source, Out* destination, std::ptrdiff_t pixels,
                      const SampleTables& tables) {
  // Copies, which stores through `destination` cannot change.
  const uint16_t* const table0 = tables.table[0];
  const uint16_t* const table1 = tables.table[1];
  const uint16_t* const table2 = tables.table[2];
  const uint32_t last = tables.last;
  const auto index = [last](In sample) { return sample < last ? sample : last; };
  for (std::ptrdiff_t i = 0; i < pixels; ++i) {
    destination[3 * i + 0] = static_cast<Out>(table0[index(source[3 * i + 0])]);
    destination[3 * i + 1] = static_cast<Out>(table1[index(source[3 * i + 1])]);
    destination[3 * i + 2] = static_cast<Out>(table2[index(source[3 * i + 2])]);
  }
}

template MapChannelsRow<uint8_t, uint8_t> MapChannelsPlain<uint8_t, uint8_t>;
template MapChannelsRow<uint8_t, uint16_t> MapChannelsPlain<uint8_t, uint16_t>;
template MapChannelsRow<uint16_t, uint8_t> MapChannelsPlain<uint16_t, uint8_t>;
template MapChannelsRow<uint16_t, uint16_t> MapChannelsPlain<uint16_t, uint16_t>;

}  // namespace ovra
