// SPDX-License-Identifier: MIT
// Between the samples of pixels and separate channels, in registers. For kernel files.
#pragma once

#include "core/vector_ops.h"

namespace ovra {
namespace {

// Where the bytes of three registers of pixels stand in three registers of channels, and the other
// way round; for samples of 8 or 16 bits. Elsewhere a shuffle gives 0.
template <int kBits>
struct ThreeChannelOrders {
  static constexpr int kRegisterBytes = 16;

  alignas(kRegisterBytes) int8_t split[3][3][kRegisterBytes];  // [channel][register of pixels]
  alignas(kRegisterBytes) int8_t join[3][3][kRegisterBytes];   // [register of pixels][channel]

  constexpr ThreeChannelOrders() : split(), join() {
    constexpr int kSampleBytes = kBits / 8;
    for (int i = 0; i < 3 * 3 * kRegisterBytes; ++i) {
      const int a = i / (3 * kRegisterBytes);
      const int b = i / kRegisterBytes % 3;
      split[a][b][i % kRegisterBytes] = join[a][b][i % kRegisterBytes] = -1;
    }
    for (int i = 0; i < 3 * kRegisterBytes; ++i) {  // byte i of the pixels
      const int sample = i / kSampleBytes;
      const int channel = sample % 3;
      const int at = sample / 3 * kSampleBytes + i % kSampleBytes;  // in the channel
      split[channel][i / kRegisterBytes][at] = static_cast<int8_t>(i % kRegisterBytes);
      join[i / kRegisterBytes][channel][i % kRegisterBytes] = static_cast<int8_t>(at);
    }
  }
};

template <int kBits>
constexpr ThreeChannelOrders<kBits> kThreeChannelOrders;

// The bytes of three registers that each order picks, together.
template <class V>
[[gnu::always_inline]] inline typename V::Reg PickFromThree(const typename V::Reg (&from)[3],
                                                            const int8_t (&orders)[3][16]) {
  const auto pick = [&](int i) { return V::Shuffle8(from[i], V::LoadToAllLanes(orders[i])); };
  return V::Or(V::Or(pick(0), pick(1)), pick(2));
}

// Words: of three registers of pixels, word i of a channel stands in one alone, so that the channel's
// words come together in their places and one shuffle puts them in order. And the other way round.
struct ThreeChannelWords {
  static constexpr int kWords = 8;

  alignas(16) int8_t split[3][16];  // [channel]
  alignas(16) int8_t join[3][16];   // [channel]
  int in_register[3][3];            // [channel][register of pixels]: bit i for word i

  constexpr ThreeChannelWords() : split(), join(), in_register() {
    for (int sample = 0; sample < 3 * kWords; ++sample) {
      const int channel = sample % 3;
      const int pixel = sample / 3;
      const int word = sample % kWords;
      in_register[channel][sample / kWords] |= 1 << word;
      for (int byte = 0; byte < 2; ++byte) {
        split[channel][2 * pixel + byte] = static_cast<int8_t>(2 * word + byte);
        join[channel][2 * word + byte] = static_cast<int8_t>(2 * pixel + byte);
      }
    }
  }
};

constexpr ThreeChannelWords kThreeChannelWords;

// The words of channel kChannel, in order, from three registers of pixels.
template <class V, int kChannel>
[[gnu::always_inline]] inline typename V::Reg ChannelWords(const typename V::Reg (&pixels)[3]) {
  constexpr const auto& kIn = kThreeChannelWords.in_register[kChannel];
  const auto words =
      V::template Choose16<kIn[2]>(V::template Choose16<kIn[1]>(pixels[0], pixels[1]), pixels[2]);
  return V::Shuffle8(words, V::LoadToAllLanes(kThreeChannelWords.split[kChannel]));
}

// Register kRegister of the pixels, from channels whose words have been put in their places.
template <class V, int kRegister>
[[gnu::always_inline]] inline typename V::Reg PixelWords(const typename V::Reg (&words)[3]) {
  constexpr const auto& kIn = kThreeChannelWords.in_register;
  return V::template Choose16<kIn[2][kRegister]>(
      V::template Choose16<kIn[1][kRegister]>(words[0], words[1]), words[2]);
}

// Three registers of pixels as three of channels, and back.
template <class V, int kBits>
[[gnu::always_inline]] inline void SplitRegisters(const typename V::Reg (&pixels)[3],
                                                  typename V::Reg (&channels)[3]) {
  if constexpr (kBits == 16) {
    channels[0] = ChannelWords<V, 0>(pixels);
    channels[1] = ChannelWords<V, 1>(pixels);
    channels[2] = ChannelWords<V, 2>(pixels);
  } else {
    for (int c = 0; c < 3; ++c) {
      channels[c] = PickFromThree<V>(pixels, kThreeChannelOrders<kBits>.split[c]);
    }
  }
}

template <class V, int kBits>
[[gnu::always_inline]] inline void JoinRegisters(const typename V::Reg (&channels)[3],
                                                 typename V::Reg (&pixels)[3]) {
  if constexpr (kBits == 16) {
    typename V::Reg words[3];
    for (int c = 0; c < 3; ++c) {
      words[c] = V::Shuffle8(channels[c], V::LoadToAllLanes(kThreeChannelWords.join[c]));
    }
    pixels[0] = PixelWords<V, 0>(words);
    pixels[1] = PixelWords<V, 1>(words);
    pixels[2] = PixelWords<V, 2>(words);
  } else {
    for (int i = 0; i < 3; ++i) {
      pixels[i] = PickFromThree<V>(channels, kThreeChannelOrders<kBits>.join[i]);
    }
  }
}

// Reads pixels of three samples of kBits: 16 or 8 of them for each lane, 48 bytes that stand one
// after the other. The channels come in the order of the pixels.
template <class V, int kBits>
[[gnu::always_inline]] inline void SplitThreeChannels(const void* pixels,
                                                      typename V::Reg (&channels)[3]) {
  const auto* const bytes = static_cast<const uint8_t*>(pixels);
  typename V::Reg in[3];
  for (int i = 0; i < 3; ++i) in[i] = V::LoadLanes(bytes + 16 * i, bytes + 48 + 16 * i);
  SplitRegisters<V, kBits>(in, channels);
}

// Writes what SplitThreeChannels reads.
template <class V, int kBits>
[[gnu::always_inline]] inline void JoinThreeChannels(const typename V::Reg (&channels)[3],
                                                     void* pixels) {
  auto* const bytes = static_cast<uint8_t*>(pixels);
  typename V::Reg out[3];
  JoinRegisters<V, kBits>(channels, out);
  for (int i = 0; i < 3; ++i) V::StoreLanes(bytes + 16 * i, bytes + 48 + 16 * i, out[i]);
}

// Reads pixels of four bytes: 16 of them for each lane, 64 bytes that stand one after the other.
template <class V>
[[gnu::always_inline]] inline void SplitFourChannels(const void* pixels,
                                                     typename V::Reg (&channels)[4]) {
  static constexpr int8_t kByChannel[16] = {0, 4, 8, 12, 1, 5, 9, 13, 2, 6, 10, 14, 3, 7, 11, 15};
  const auto* const bytes = static_cast<const uint8_t*>(pixels);
  const auto order = V::LoadToAllLanes(kByChannel);
  typename V::Reg fours[4];  // of each channel the samples of four pixels
  for (int i = 0; i < 4; ++i) {
    fours[i] = V::Shuffle8(V::LoadLanes(bytes + 16 * i, bytes + 64 + 16 * i), order);
  }
  const auto low_first = V::template UnpackLow<32>(fours[0], fours[1]);
  const auto low_second = V::template UnpackLow<32>(fours[2], fours[3]);
  const auto high_first = V::template UnpackHigh<32>(fours[0], fours[1]);
  const auto high_second = V::template UnpackHigh<32>(fours[2], fours[3]);
  channels[0] = V::template UnpackLow<64>(low_first, low_second);
  channels[1] = V::template UnpackHigh<64>(low_first, low_second);
  channels[2] = V::template UnpackLow<64>(high_first, high_second);
  channels[3] = V::template UnpackHigh<64>(high_first, high_second);
}

// Reads pixels of four words: 8 of them for each lane, 64 bytes that stand one after the other.
template <class V>
[[gnu::always_inline]] inline void SplitFourChannelWords(const void* pixels,
                                                         typename V::Reg (&channels)[4]) {
  const auto* const bytes = static_cast<const uint8_t*>(pixels);
  typename V::Reg in[4];
  for (int i = 0; i < 4; ++i) in[i] = V::LoadLanes(bytes + 16 * i, bytes + 64 + 16 * i);
  typename V::Reg four[2]
                      [2];  // of the even and the odd pixels, the lower channels and the upper ones
  for (int odd = 0; odd < 2; ++odd) {
    const auto first = odd == 0 ? V::template UnpackLow<16>(in[0], in[2])
                                : V::template UnpackHigh<16>(in[0], in[2]);
    const auto second = odd == 0 ? V::template UnpackLow<16>(in[1], in[3])
                                 : V::template UnpackHigh<16>(in[1], in[3]);
    four[odd][0] = V::template UnpackLow<16>(first, second);
    four[odd][1] = V::template UnpackHigh<16>(first, second);
  }
  for (int i = 0; i < 2; ++i) {
    channels[2 * i] = V::template UnpackLow<16>(four[0][i], four[1][i]);
    channels[2 * i + 1] = V::template UnpackHigh<16>(four[0][i], four[1][i]);
  }
}

// Writes pixels of four words: 8 of them for each lane, 64 bytes that stand one after the other.
template <class V>
[[gnu::always_inline]] inline void JoinFourChannels(const typename V::Reg (&channels)[4],
                                                    void* pixels) {
  auto* const bytes = static_cast<uint8_t*>(pixels);
  const typename V::Reg first[2] = {V::template UnpackLow<16>(channels[0], channels[1]),
                                    V::template UnpackHigh<16>(channels[0], channels[1])};
  const typename V::Reg second[2] = {V::template UnpackLow<16>(channels[2], channels[3]),
                                     V::template UnpackHigh<16>(channels[2], channels[3])};
  for (int i = 0; i < 2; ++i) {
    uint8_t* const at = bytes + 32 * i;
    V::StoreLanes(at, at + 64, V::template UnpackLow<32>(first[i], second[i]));
    V::StoreLanes(at + 16, at + 80, V::template UnpackHigh<32>(first[i], second[i]));
  }
}

// Spreads a number for each pixel, as wide as a sample, over the pixel's first kChanged samples; its
// others get 0. Register r of kChannels holds the samples of 16 bytes.
template <int kSampleBytes, int kChannels, int kChanged>
struct SpreadOrder {
  alignas(16) int8_t orders[kChannels][16];

  constexpr SpreadOrder() : orders() {
    for (int i = 0; i < 16 * kChannels; ++i) {
      const int sample = i / kSampleBytes;
      const int at = sample / kChannels * kSampleBytes + i % kSampleBytes;
      orders[i / 16][i % 16] = static_cast<int8_t>(sample % kChannels < kChanged ? at : -1);
    }
  }
};

template <int kSampleBytes, int kChannels, int kChanged>
constexpr SpreadOrder<kSampleBytes, kChannels, kChanged> kSpreadOrder;

// The same for words in registers as they stand in memory: which of the two lanes of numbers a lane of
// samples takes, and in which order.
template <int kChannels, int kChanged, int kLanes>
struct WordSpread {
  alignas(32) int8_t orders[kChannels][16 * kLanes];
  int from_lane[kChannels][kLanes];

  constexpr WordSpread() : orders(), from_lane() {
    constexpr int kLaneWords = 8;
    for (int i = 0; i < 16 * kLanes * kChannels; ++i) {
      const int sample = i / 2;
      const int pixel = sample / kChannels;
      const int at = pixel % kLaneWords * 2 + i % 2;
      const bool is_changed = sample % kChannels < kChanged;
      orders[i / (16 * kLanes)][i % (16 * kLanes)] = static_cast<int8_t>(is_changed ? at : -1);
      from_lane[sample / (kLaneWords * kLanes)][sample / kLaneWords % kLanes] = pixel / kLaneWords;
    }
  }
};

template <int kChannels, int kChanged, int kLanes>
constexpr WordSpread<kChannels, kChanged, kLanes> kWordSpread;

// What register kRegister of the samples gets of a register of numbers, and where it gets nothing.
template <class V, int kChannels, int kChanged, int kRegister>
[[gnu::always_inline]] inline typename V::Reg WordOrder() {
  return V::LoadAligned(kWordSpread<kChannels, kChanged, V::kLanes>.orders[kRegister]);
}

template <class V, int kChannels, int kChanged, int kRegister>
[[gnu::always_inline]] inline typename V::Reg SpreadWords(typename V::Reg numbers) {
  constexpr const auto& kFrom = kWordSpread<kChannels, kChanged, V::kLanes>.from_lane[kRegister];
  return V::Shuffle8(V::template PickLanes<kFrom[0], kFrom[V::kLanes - 1]>(numbers),
                     WordOrder<V, kChannels, kChanged, kRegister>());
}

}  // namespace
}  // namespace ovra
