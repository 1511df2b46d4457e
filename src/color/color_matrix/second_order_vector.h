// SPDX-License-Identifier: MIT
// All ten terms in double precision. A register holds one channel of as many pixels as it holds doubles,
// and two of them go side by side, so that a lane's four pixels stand in two.
//
// Nothing is converted by instructions made for it, which take most of a cycle for a register: numbers
// stand in the mantissa of a power of two, which is subtracted or added.
#pragma once

#include "color/color_matrix/kernels.h"
#include "core/vector_ops.h"

namespace ovra {
namespace {

template <class V, class In, class Out>
class SecondOrder {
  using Reg = typename V::Reg;
  using Doubles = typename V::Doubles;
  static constexpr int kGroupPixels = 4 * V::kLanes;
  static constexpr int kGroups = 2;
  static constexpr int kRegisters = 2 * kGroups;  // of a channel

 public:
  static constexpr int kStep = kGroups * kGroupPixels;
  // Registers reach so many pixels beyond the step's own, for reading and for writing.
  static constexpr int kBeyond = 4;

  // Converts whole steps, as many as there is room for. Answers the number of pixels done.
  static std::ptrdiff_t ConvertSteps(const In* source, Out* destination, std::ptrdiff_t pixels,
                                     const DoubleMatrix& matrix) {
    const Reg max = V::Set32(kZero + static_cast<int32_t>(matrix.max));
    std::ptrdiff_t i = 0;
    for (; i + kStep + kBeyond <= pixels; i += kStep) {
      Doubles sums[3][kRegisters];
      Sum(source + 3 * i, matrix, sums);
      for (int group = 0; group < kGroups; ++group) {
        Reg words[3];
        for (int k = 0; k < 3; ++k) {
          words[k] = Truncate(sums[k][2 * group], sums[k][2 * group + 1], max);
        }
        Store(words, destination + 3 * (i + kGroupPixels * group));
      }
    }
    return i;
  }

 private:
  // Adding 2^20 leaves the whole part of a number below it in the low bits of the upper half, which
  // for 0 is this.
  static constexpr double kWholeInUpperHalf = 1 << 20;
  static constexpr int32_t kZero = 0x41300000;

  // Shuffles that bring channel kChannel of a lane's two pixels into 64-bit elements.
  template <int kChannel>
  struct PickChannel {
    alignas(16) int8_t order[16] = {};

    constexpr PickChannel() {
      constexpr int kBytes = sizeof(In);
      for (int i = 0; i < 16; ++i) {
        const int first = (3 * (i / 8) + kChannel) * kBytes;
        order[i] = static_cast<int8_t>(i % 8 < kBytes ? first + i % 8 : -1);
      }
    }
  };

  template <int kChannel>
  static Doubles ChannelOf(Reg samples) {
    static constexpr PickChannel<kChannel> kPick{};
    constexpr double kWholeInMantissa = 4503599627370496.0;  // 2^52
    const Doubles offset = V::SetDoubles(kWholeInMantissa);
    const Reg picked = V::Shuffle8(samples, V::LoadToAllLanes(kPick.order));
    return V::OfBits(V::Or(picked, V::BitsOf(offset))) + V::SetDoubles(-kWholeInMantissa);
  }

  // Products of samples are integers below 2^32, which doubles hold exactly. Every sum takes its terms
  // in the order in which they are stored. The loops over the terms stay loops: their bodies are twelve
  // independent sums, while compilers would finish one after the other.
  static void Sum(const In* source, const DoubleMatrix& matrix, Doubles (&sums)[3][kRegisters]) {
    constexpr int kConstantTerm = 3;
    Doubles terms[10][kRegisters];
    for (int r = 0; r < kRegisters; ++r) {
      const In* const two = source + 3 * kGroupPixels * (r / 2) + 6 * (r % 2);
      const Reg samples = V::LoadLanes(two, two + 12);
      const Doubles a = ChannelOf<0>(samples);
      const Doubles b = ChannelOf<1>(samples);
      const Doubles c = ChannelOf<2>(samples);
      const Doubles all[] = {a, b, c, a, a * a, b * b, c * c, b * a, c * b, c * a};
      for (int t = 0; t < 10; ++t) terms[t][r] = all[t];
    }
    const auto weight = [&](int k, int t) { return V::LoadDoublesAligned(matrix.weight[k][t]); };
    const auto for_sums = [&](const auto& body) {
      for (int k = 0; k < 3; ++k) {
        for (int r = 0; r < kRegisters; ++r) body(k, r);
      }
    };
    for_sums([&](int k, int r) { sums[k][r] = terms[0][r] * weight(k, 0); });
#pragma GCC unroll 1
    for (int t = 1; t < kConstantTerm; ++t) {
      for_sums([&](int k, int r) { sums[k][r] = sums[k][r] + terms[t][r] * weight(k, t); });
    }
    for_sums([&](int k, int r) { sums[k][r] = sums[k][r] + weight(k, kConstantTerm); });
#pragma GCC unroll 1
    for (int t = kConstantTerm + 1; t < 10; ++t) {
      for_sums([&](int k, int r) { sums[k][r] = sums[k][r] + terms[t][r] * weight(k, t); });
    }
    for_sums([&](int k, int r) { sums[k][r] = sums[k][r] + V::SetDoubles(0.5); });
  }

  // Whole parts in the low halves of 32-bit elements, limited to 0..max. What is added is less than the
  // power of two by half of its last bit: with it, sums are rounded to the nearest multiple of 2^-32,
  // which then is none above them, or the whole part is the same. Below 0 upper halves are less than
  // kZero as integers, too, and so is what is no number, of which only negative ones occur.
  static Reg Truncate(Doubles first, Doubles second, Reg max) {
    const Doubles offset = V::SetDoubles(kWholeInUpperHalf - 1.0 / (int64_t{1} << 33));
    const Reg upper = V::Odds32(V::BitsOf(first + offset), V::BitsOf(second + offset));
    return V::Min32(V::Max32(upper, V::Set32(kZero)), max);
  }

  // Four pixels a lane. Behind 12 bytes there are 4 of the next pixels.
  static void Store(const Reg (&words)[3], Out* destination) {
    // The words of channels 0 and 1, side by side.
    const Reg words01 = V::template Blend16<0xAA>(words[0], V::ShiftLeft32(words[1], 16));
    const auto pixels = [&](const int8_t(&from01)[16], const int8_t(&from2)[16]) {
      return V::Or(V::Shuffle8(words01, V::LoadToAllLanes(from01)),
                   V::Shuffle8(words[2], V::LoadToAllLanes(from2)));
    };
    if constexpr (sizeof(Out) == 1) {
      alignas(16) static constexpr int8_t kFrom01[16] = {0,  2,  -1, 4,  6,  -1, 8,  10,
                                                         -1, 12, 14, -1, -1, -1, -1, -1};
      alignas(16) static constexpr int8_t kFrom2[16] = {-1, -1, 0,  -1, -1, 4,  -1, -1,
                                                        8,  -1, -1, 12, -1, -1, -1, -1};
      const Reg all = pixels(kFrom01, kFrom2);
      for (int lane = 0; lane < V::kLanes; ++lane) {
        V::StoreLane(destination + 12 * lane, all, lane);
      }
    } else {
      alignas(16) static constexpr int8_t kFrom01[2][16] = {
          {0, 1, 2, 3, -1, -1, 4, 5, 6, 7, -1, -1, 8, 9, 10, 11},
          {-1, -1, 12, 13, 14, 15, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1}};
      alignas(16) static constexpr int8_t kFrom2[2][16] = {
          {-1, -1, -1, -1, 0, 1, -1, -1, -1, -1, 4, 5, -1, -1, -1, -1},
          {8, 9, -1, -1, -1, -1, 12, 13, -1, -1, -1, -1, -1, -1, -1, -1}};
      const Reg first = pixels(kFrom01[0], kFrom2[0]);
      const Reg last = pixels(kFrom01[1], kFrom2[1]);
      for (int lane = 0; lane < V::kLanes; ++lane) {
        V::StoreLane(destination + 12 * lane, first, lane);
        Sse::template StoreFirst<8>(destination + 12 * lane + 8, V::Lane(last, lane));
      }
    }
  }
};

}  // namespace
}  // namespace ovra
