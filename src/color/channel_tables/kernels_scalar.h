// SPDX-License-Identifier: MIT
// Look-ups with fewer loads and stores than samples. Included by the kernel files of all tiers beside
// the plain one.
#pragma once

#include <cstring>

#include "color/channel_tables/kernels.h"
#include "core/vector_ops.h"

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

// Words, through tables whose entries are as wide as the destination's samples. Entries are put into their
// places of a register one by one, which takes one instruction for each and one store for all; samples are read
// as many at a time as a machine word holds.
template <class Out>
struct WordMapper {
  static constexpr int kEntries = 16 / sizeof(Out);  // of a register
  static constexpr int kSamples = 3 * kEntries;      // in which channels and places meet again
  static constexpr std::ptrdiff_t kPixels = kEntries;
  static constexpr int kAtOnce = sizeof(uintptr_t) / sizeof(uint16_t);
  static constexpr std::ptrdiff_t kAheadBytes = 2048;

  const Out* tables[3];

  // Puts the entries of the samples from kSample on, which `samples` holds, into their places.
  template <int kSample, int kLeft = kAtOnce>
  Sse::Reg Insert(Sse::Reg entries, uintptr_t samples) const {
    const Out* const entry = tables[kSample % 3] + (samples & 0xFFFF);
    entries = Sse::Insert<kSample % kEntries>(entries, entry);
    if constexpr (kLeft > 1) entries = Insert<kSample + 1, kLeft - 1>(entries, samples >> 16);
    return entries;
  }

  // A register of entries, of which kSample is the next.
  template <int kSample>
  Sse::Reg Fill(Sse::Reg entries, const uint16_t* in) const {
    uintptr_t samples;
    std::memcpy(&samples, in + kSample, sizeof samples);
    entries = Insert<kSample>(entries, samples);
    if constexpr ((kSample + kAtOnce) % kEntries != 0)
      entries = Fill<kSample + kAtOnce>(entries, in);
    return entries;
  }

  void MapPixels(const uint16_t* in, Out* out) const {
    Sse::Store(out, Fill<0>(Sse::Zero(), in));
    Sse::Store(out + kEntries, Fill<kEntries>(Sse::Zero(), in));
    Sse::Store(out + 2 * kEntries, Fill<2 * kEntries>(Sse::Zero(), in));
  }
};

// The samples of so many pixels, limited to the greatest index.
template <int kSamples>
void LimitSamples(const uint16_t* in, uint32_t last, uint16_t (&limited)[kSamples]) {
  const Sse::Reg most = Sse::Set16(static_cast<int>(last));
  for (int i = 0; i < kSamples; i += 8) {
    Sse::StoreAligned(limited + i, Sse::MinU16(Sse::Load(in + i), most));
  }
}

template <class Out>
void MapDeep(const uint8_t* source, uint8_t* destination, std::ptrdiff_t pixels,
             const SampleTables& tables) {
  using Mapper = WordMapper<Out>;
  const auto* const in = reinterpret_cast<const uint16_t*>(source);
  auto* const out = reinterpret_cast<Out*>(destination);
  Mapper mapper;
  for (int k = 0; k < 3; ++k) {
    if constexpr (sizeof(Out) == 1) {
      mapper.tables[k] = tables.bytes[k];
    } else {
      mapper.tables[k] = tables.table[k];
    }
  }
  constexpr std::ptrdiff_t kSourceBytes = Mapper::kSamples * sizeof(uint16_t);
  std::ptrdiff_t i = 0;
  if (tables.last == UINT16_MAX) {
    for (; i + Mapper::kPixels <= pixels; i += Mapper::kPixels) {
      PrefetchAt(in + 3 * i, Mapper::kAheadBytes, kSourceBytes);
      mapper.MapPixels(in + 3 * i, out + 3 * i);
    }
  } else {
    for (; i + Mapper::kPixels <= pixels; i += Mapper::kPixels) {
      PrefetchAt(in + 3 * i, Mapper::kAheadBytes, kSourceBytes);
      alignas(16) uint16_t limited[Mapper::kSamples];
      LimitSamples(in + 3 * i, tables.last, limited);
      mapper.MapPixels(limited, out + 3 * i);
    }
  }
  kChannelTablesPlain.map[1][sizeof(Out) == 2](
      source + 3 * i * sizeof(uint16_t), destination + 3 * i * sizeof(Out), pixels - i, tables);
}

}  // namespace
}  // namespace ovra
