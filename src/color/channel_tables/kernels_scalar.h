// SPDX-License-Identifier: MIT
// Look-ups with fewer loads and stores than samples. Included by the kernel files of all tiers beside
// the plain one.
#pragma once

#include <cstring>

#include "color/channel_tables/kernels.h"

namespace ovra {
namespace {

// Four samples of bytes from the place that is given among the twelve: one load for three of them, which
// leaves as much to the load ports as to the rest of the processor.
template <class Word>
Word LookUpFour(const uint8_t* samples, const Word (*placed)[256]) {
  uint32_t four;
  std::memcpy(&four, samples, sizeof four);
  return placed[0][four & 255] | placed[1][four >> 8 & 255] | placed[2][samples[2]] |
         placed[3][four >> 24];
}

constexpr std::ptrdiff_t kPlacedPixels = 4;

// Four pixels.
template <class Word>
void MapFourPixels(const uint8_t* source, uint8_t* destination, const PlacedTables<Word>& placed) {
#pragma GCC unroll 3
  for (int i = 0; i < kPlacedSamples; i += 4) {
    const Word word = LookUpFour<Word>(source + i, placed + i);
    std::memcpy(destination + i / 4 * sizeof word, &word, sizeof word);
  }
}

template <class Word>
void MapPlaced(const uint8_t* source, uint8_t* destination, std::ptrdiff_t pixels,
               const SampleTables& tables) {
  constexpr bool kDeep = sizeof(Word) == 8;
  constexpr std::ptrdiff_t kPixelBytes = kDeep ? 6 : 3;
  const PlacedTables<Word>* placed;
  if constexpr (kDeep) {
    placed = tables.placed_words;
  } else {
    placed = tables.placed_bytes;
  }
  std::ptrdiff_t i = 0;
  for (; i + kPlacedPixels <= pixels; i += kPlacedPixels) {
    MapFourPixels<Word>(source + 3 * i, destination + kPixelBytes * i, *placed);
  }
  kChannelTablesPlain.map[0][kDeep](source + 3 * i, destination + kPixelBytes * i, pixels - i,
                                    tables);
}

// Words, through tables whose entries are as wide as the destination's samples.
template <class Out, bool kAllWords>
void MapWords(const uint16_t* in, Out* out, std::ptrdiff_t samples, const Out* const (&tables)[3],
              uint32_t last) {
  const Out* const table0 = tables[0];
  const Out* const table1 = tables[1];
  const Out* const table2 = tables[2];
  const auto index = [last](uint32_t sample) { return kAllWords || sample < last ? sample : last; };
  for (std::ptrdiff_t i = 0; i < samples; i += 3) {
    out[i] = table0[index(in[i])];
    out[i + 1] = table1[index(in[i + 1])];
    out[i + 2] = table2[index(in[i + 2])];
  }
}

template <class Out>
void MapDeep(const uint8_t* source, uint8_t* destination, std::ptrdiff_t pixels,
             const SampleTables& tables) {
  constexpr uint32_t kLastWord = 0xFFFF;
  const auto* const in = reinterpret_cast<const uint16_t*>(source);
  auto* const out = reinterpret_cast<Out*>(destination);
  const auto map = [&](const Out* const(&entries)[3]) {
    if (tables.last == kLastWord) {
      MapWords<Out, true>(in, out, 3 * pixels, entries, tables.last);
    } else {
      MapWords<Out, false>(in, out, 3 * pixels, entries, tables.last);
    }
  };
  if constexpr (sizeof(Out) == 1) {
    map(tables.bytes);
  } else {
    map(tables.table);
  }
}

}  // namespace
}  // namespace ovra
