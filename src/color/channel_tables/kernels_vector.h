// SPDX-License-Identifier: MIT
// Bytes to bytes by shuffles, for registers of any width. Included by the kernel file of AVX2, from
// which on that is as fast as loads.
#pragma once

#include "color/channel_tables/kernels.h"
#include "color/channel_tables/kernels_scalar.h"
#include "core/vector_ops.h"

namespace ovra {
namespace {

// The look-up is a tree: a byte shuffle picks from one of 16 table rows by the low four bits of the
// index, then further bits choose between rows. By bit 4 this is an exclusive or: a row that differs is
// kept as its difference from the one before it, and its shuffle gives 0 where the bit is not set. By
// bits 5 and 6 it is a blend, which looks at the top bit of every byte, by bit 7 both halves together.
template <class V>
struct TableLookUp {
  using Reg = typename V::Reg;

  static Reg Run(const uint8_t* differences, Reg index) {
    // The shifts carry bits into the next byte, but only below its top bit.
    const Reg top = V::Set8(-128);
    const Reg bit5 = V::ShiftLeft16(index, 2);
    const Reg bit6 = V::ShiftLeft16(index, 1);
    const Reg without_bit4 = V::AndNot(V::ShiftLeft16(index, 3), top);
    const auto half = [&](const uint8_t* rows, Reg i) {
      const Choice choice = {i, V::Or(i, without_bit4), bit5, bit6};
      return V::Choose8(FourRows(rows, choice), FourRows(rows + 64, choice), bit6);
    };
    return V::Or(half(differences, index), half(differences + 128, V::Xor(index, top)));
  }

 private:
  // An index whose top bit is set picks 0.
  struct Choice {
    Reg index;
    Reg index_with_bit4;
    Reg bit5;
    Reg bit6;
  };

  static Reg TwoRows(const uint8_t* rows, const Choice& choice) {
    return V::Xor(V::Shuffle8(V::LoadToAllLanes(rows), choice.index),
                  V::Shuffle8(V::LoadToAllLanes(rows + 16), choice.index_with_bit4));
  }
  static Reg FourRows(const uint8_t* rows, const Choice& choice) {
    return V::Choose8(TwoRows(rows, choice), TwoRows(rows + 32, choice), choice.bit5);
  }
};

// -1 in every third byte from the first one given on.
struct EveryThird {
  alignas(32) int8_t bytes[32] = {};

  explicit constexpr EveryThird(int first) {
    for (int i = first; i < 32; i += 3) bytes[i] = -1;
  }
};

// a where p % 3 == 0, b where p % 3 == 1, c where p % 3 == 2, p being the place of a byte.
template <class V>
typename V::Reg Interleave(typename V::Reg a, typename V::Reg b, typename V::Reg c) {
  static constexpr EveryThird kTakeB(1);
  static constexpr EveryThird kTakeC(2);
  return V::Choose8(V::Choose8(a, b, V::LoadAligned(kTakeB.bytes)), c,
                    V::LoadAligned(kTakeC.bytes));
}

// As many pixels as a register has bytes.
template <class V>
void MapBytesByShuffles(const uint8_t* in, uint8_t* out, const SampleTables& tables) {
  static_assert(V::kBytes % 3 == 2,
                "the order in which channels begin registers is that of 32 bytes");
  const auto a = V::Load(in);
  const auto b = V::Load(in + V::kBytes);
  const auto c = V::Load(in + 2 * V::kBytes);
  // The three registers begin with channels 0, 2 and 1. So the bytes of one channel lie in places
  // of their own: they gather in one register without moving, and go back in the same way.
  const auto channel0 = TableLookUp<V>::Run(tables.differences[0], Interleave<V>(a, b, c));
  const auto channel1 = TableLookUp<V>::Run(tables.differences[1], Interleave<V>(c, a, b));
  const auto channel2 = TableLookUp<V>::Run(tables.differences[2], Interleave<V>(b, c, a));
  V::Store(out, Interleave<V>(channel0, channel1, channel2));
  V::Store(out + V::kBytes, Interleave<V>(channel2, channel0, channel1));
  V::Store(out + 2 * V::kBytes, Interleave<V>(channel1, channel2, channel0));
}

// Shuffles and loads keep different parts of a processor busy: both at a time do more than either.
template <class V>
void MapBytes(const uint8_t* source, uint8_t* destination, std::ptrdiff_t pixels,
              const SampleTables& tables) {
  constexpr std::ptrdiff_t kLookedUp = 8;  // pixels beside those of a register
  constexpr std::ptrdiff_t kStep = V::kBytes + kLookedUp;
  std::ptrdiff_t i = 0;
  for (; i + kStep <= pixels; i += kStep) {
    const uint8_t* const in = source + 3 * i;
    uint8_t* const out = destination + 3 * i;
    MapBytesByShuffles<V>(in, out, tables);
    for (std::ptrdiff_t k = V::kBytes; k < kStep; k += kPlacedPixels) {
      MapFourPixels<uint32_t>(in + 3 * k, out + 3 * k, *tables.placed_bytes);
    }
  }
  MapPlaced<uint32_t>(source + 3 * i, destination + 3 * i, pixels - i, tables);
}

}  // namespace
}  // namespace ovra
