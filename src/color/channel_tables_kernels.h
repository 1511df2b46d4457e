// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "core/cpu.h"

namespace ovra {

// The tables of one conversion, by sample position in the pixel.
struct SampleTables {
  const uint16_t* table[3];
  uint32_t last;  // greatest index; samples above it count as it
  // Bytes to bytes only: the same tables with entries of one byte.
  alignas(16) uint8_t bytes[3][256];
};

// Converts a row: every sample becomes the entry of its position's table, in the same position.
// In and Out are uint8_t or uint16_t; the entries fit Out. The rows do not overlap.
template <class In, class Out>
using MapChannelsRow = void(const In* source, Out* destination, std::ptrdiff_t pixels,
                            const SampleTables& tables);

template <class In, class Out>
void MapChannelsPlain(const In* source, Out* destination, std::ptrdiff_t pixels,
                      const SampleTables& tables);
MapChannelsRow<uint8_t, uint8_t> MapBytesAvx2;

// A table in the first-level cache answers about a sample a cycle, which 128-bit shuffles do not
// reach for bytes, and neither shuffles nor gathers of 256 bits for wider entries. So the plain
// form serves all but bytes to bytes with AVX2.
template <class In, class Out>
MapChannelsRow<In, Out>* SelectMapChannels(KernelTier tier) {
  if constexpr (std::is_same_v<In, uint8_t> && std::is_same_v<Out, uint8_t>) {
    if (tier == KernelTier::kAvx2) return MapBytesAvx2;
  }
  return MapChannelsPlain<In, Out>;
}

}  // namespace ovra
