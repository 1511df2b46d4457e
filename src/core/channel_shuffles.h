// SPDX-License-Identifier: MIT
// Between pixels of three samples and separate channels, in registers. For kernel files.
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
typename V::Reg PickFromThree(const typename V::Reg (&from)[3], const int8_t (&orders)[3][16]) {
  const auto pick = [&](int i) { return V::Shuffle8(from[i], V::LoadToAllLanes(orders[i])); };
  return V::Or(V::Or(pick(0), pick(1)), pick(2));
}

// Reads pixels of three samples of kBits: 16 or 8 of them for each lane, 48 bytes that stand one
// after the other. The channels come in the order of the pixels.
template <class V, int kBits>
void SplitThreeChannels(const void* pixels, typename V::Reg (&channels)[3]) {
  const auto* const bytes = static_cast<const uint8_t*>(pixels);
  typename V::Reg in[3];
  for (int i = 0; i < 3; ++i) in[i] = V::LoadLanes(bytes + 16 * i, bytes + 48 + 16 * i);
  for (int c = 0; c < 3; ++c) {
    channels[c] = PickFromThree<V>(in, kThreeChannelOrders<kBits>.split[c]);
  }
}

// Writes what SplitThreeChannels reads.
template <class V, int kBits>
void JoinThreeChannels(const typename V::Reg (&channels)[3], void* pixels) {
  auto* const bytes = static_cast<uint8_t*>(pixels);
  for (int i = 0; i < 3; ++i) {
    const auto out = PickFromThree<V>(channels, kThreeChannelOrders<kBits>.join[i]);
    V::StoreLanes(bytes + 16 * i, bytes + 48 + 16 * i, out);
  }
}

}  // namespace
}  // namespace ovra
