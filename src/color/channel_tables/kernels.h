// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

namespace ovra {

// Four samples of bytes are looked up in words that hold each entry in its sample's place, so that the
// words are joined and stored as one. Four pixels are twelve samples: as often the channels and the
// places meet.
inline constexpr int kPlacedSamples = 12;
template <class Word>
using PlacedTables = Word[kPlacedSamples][256];

// The tables of one conversion, by sample position in the pixel.
struct SampleTables {
  const uint16_t* table[3];
  uint32_t last;  // greatest index; samples above it count as it
  // The same entries as bytes, where the destination has bytes.
  const uint8_t* bytes[3];
  // From bytes to bytes only: the same in rows of 16 entries, every second of which is its difference (by
  // exclusive or) from the one before it. Aligned to 16 bytes.
  const uint8_t* differences[3];
  // From bytes only, the one that the destination's samples ask for.
  const PlacedTables<uint32_t>* placed_bytes;
  const PlacedTables<uint64_t>* placed_words;
};

// Converts a run of pixels: every sample becomes the entry of its position's table, in the same
// position. Samples are bytes, or 16-bit words where deep; the entries fit the destination's. The
// runs do not overlap.
using MapChannelsRun = void(const uint8_t* source, uint8_t* destination, std::ptrdiff_t pixels,
                            const SampleTables& tables);

struct ChannelTablesKernels {
  MapChannelsRun* map[2][2];  // [deep source][deep destination]
};

// The plain form is bound by loads and stores, which the others have fewer of.
extern const ChannelTablesKernels kChannelTablesPlain;
extern const ChannelTablesKernels kChannelTablesSse;
extern const ChannelTablesKernels kChannelTablesAvx2;

}  // namespace ovra
