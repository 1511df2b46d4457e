// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

namespace ovra {

// The tables of one conversion, by sample position in the pixel.
struct SampleTables {
  const uint16_t* table[3];
  uint32_t last;  // greatest index; samples above it count as it
  // Bytes to bytes only: the same tables with entries of one byte.
  alignas(16) uint8_t bytes[3][256];
};

// Converts a run of pixels: every sample becomes the entry of its position's table, in the same
// position. Samples are bytes, or 16-bit words where deep; the entries fit the destination's. The
// runs do not overlap.
using MapChannelsRun = void(const uint8_t* source, uint8_t* destination, std::ptrdiff_t pixels,
                            const SampleTables& tables);

struct ChannelTablesKernels {
  MapChannelsRun* map[2][2];  // [deep source][deep destination]
};

// A table in the first-level cache answers about a sample a cycle, which 128-bit shuffles do not
// reach for bytes, and neither shuffles nor gathers of 256 bits for wider entries. So AVX2 has a form
// of its own for bytes to bytes, SSE none.
extern const ChannelTablesKernels kChannelTablesPlain;
extern const ChannelTablesKernels kChannelTablesAvx2;

}  // namespace ovra
