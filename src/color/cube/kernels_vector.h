// SPDX-License-Identifier: MIT
// The vector forms, for registers of any width. Included by one kernel file a tier.
//
// A step takes four pixels a lane: lane 0 holds pixels 0 to 3 of the step, lane 1 pixels 4 to 7.
// Products of eight 16-bit coefficients with weights of at most 4096 stay below 2^30 in sum; wide
// coefficients are multiplied and added modulo 2^32, as the plain kernel does.
#pragma once

#include <cstring>

#include "color/cube/kernels.h"
#include "core/vector_ops.h"

namespace ovra {
namespace {

template <class V>
constexpr int kStepPixels = 4 * V::kLanes;

// Positions of a strip of pixels are looked up one by one, then used by whole vectors. The strip is
// long enough that the stores have left the pipeline when the vectors are loaded.
constexpr std::ptrdiff_t kStripPixels = 256;

struct Strip {
  alignas(64) CubePosition positions[3][kStripPixels];
};

template <class Input>
CubePosition LookUp(const CubeAxis& axis, Input sample, uint32_t max_input) {
  uint32_t code = sample;
  if (sizeof(Input) > 1 && code > max_input) code = max_input;
  return axis.positions[code];
}

// Fills the strip from `pixels` pixels, and up to a multiple of `step` pixels with the origin.
template <class Input>
void FillStrip(const Input* source, std::ptrdiff_t pixels, std::ptrdiff_t step,
               const CubeTables& tables, Strip* strip) {
  const CubeAxis x = tables.axes[0];
  const CubeAxis y = tables.axes[1];
  const CubeAxis z = tables.axes[2];
  const uint32_t max_input = tables.max_input;
  for (std::ptrdiff_t i = 0; i < pixels; ++i) {
    strip->positions[0][i] = LookUp(x, source[3 * i + x.sample], max_input);
    strip->positions[1][i] = LookUp(y, source[3 * i + y.sample], max_input);
    strip->positions[2][i] = LookUp(z, source[3 * i + z.sample], max_input);
  }
  for (std::ptrdiff_t i = pixels; i % step != 0; ++i) {
    for (CubePosition(&positions)[kStripPixels] : strip->positions) positions[i] = 0;
  }
}

// The cells and the weights of one step. Each element of `weights` holds the weights of two
// neighbouring slots.
template <class V>
struct StepWeights {
  typename V::Reg weights[kCubeSlots / 2];
  alignas(32) uint32_t cells[kStepPixels<V>];
};

template <class V>
StepWeights<V> Weigh(const Strip& strip, std::ptrdiff_t first, const CubeTables& tables) {
  using Reg = typename V::Reg;
  constexpr int kOne = 1 << kCubeFractionBits;
  const Reg fraction_mask = V::Set32(kCubeFractionMask);
  Reg cells = V::Set32(0);
  Reg fractions[3];
  for (int k = 0; k < 3; ++k) {
    const Reg positions = V::LoadAligned(strip.positions[k] + first);
    const Reg stride = V::Set32(static_cast<int>(tables.axes[k].cell_stride));
    const Reg steps = V::ShiftRightU32(positions, kCubeCellShift);
    cells = V::Add32(cells, V::MulLow32(steps, stride));
    fractions[k] = V::And(positions, fraction_mask);
  }
  // The high half of every element is 0, so that a multiply-add of pairs is a product.
  const auto product = [](Reg a, Reg b) {
    return V::ShiftRightU32(V::MulAdd16(a, b), kCubeFractionBits);
  };
  const auto pair = [](Reg low, Reg high) { return V::Or(low, V::ShiftLeft32(high, 16)); };
  const auto [x, y, z] = fractions;
  const Reg xy = product(y, x);
  StepWeights<V> result;
  result.weights[0] = pair(V::Set32(kOne), product(xy, z));
  result.weights[1] = pair(xy, product(z, y));
  result.weights[2] = pair(product(z, x), x);
  result.weights[3] = pair(y, z);
  V::StoreAligned(result.cells, cells);
  return result;
}

// 16 bytes of the cell of pixel `kPixel` of each lane, from the place in cell 0.
template <class V, int kPixel, class Coefficient>
typename V::Reg LoadCells(const Coefficient* place, const uint32_t* cells) {
  constexpr size_t kEntries = kCubeCellEntries;
  constexpr int kLastLane = 4 * (V::kLanes - 1);
  return V::LoadLanesAligned(place + cells[kPixel] * kEntries,
                             place + cells[kPixel + kLastLane] * kEntries);
}

// Adds the products of one pair of slots, for pixel `kPixel` of each lane, to the sums of the four
// channels.
template <class V, int kPixel>
typename V::Reg AddPair(typename V::Reg sums, const int16_t* coefficients,
                        const StepWeights<V>& step, int pair) {
  const auto weights = V::template Spread32<kPixel>(step.weights[pair]);
  const auto both = LoadCells<V, kPixel>(coefficients + pair * 2 * kCubeCellChannels, step.cells);
  return V::Add32(sums, V::MulAdd16(both, weights));
}

template <class V, int kPixel>
typename V::Reg AddPair(typename V::Reg sums, const int32_t* coefficients,
                        const StepWeights<V>& step, int pair) {
  const auto weights = V::template Spread32<kPixel>(step.weights[pair]);
  const int32_t* const low_slot = coefficients + pair * 2 * kCubeCellChannels;
  const auto low = LoadCells<V, kPixel>(low_slot, step.cells);
  const auto high = LoadCells<V, kPixel>(low_slot + kCubeCellChannels, step.cells);
  sums = V::Add32(sums, V::MulLow32(low, V::And(weights, V::Set32(0xFFFF))));
  return V::Add32(sums, V::MulLow32(high, V::ShiftRightU32(weights, 16)));
}

// The four channels of pixel `kPixel` of each lane, not yet clamped.
template <class V, class Coefficient, int kPixel>
typename V::Reg Interpolate(const Coefficient* coefficients, const StepWeights<V>& step) {
  typename V::Reg sums = V::Set32(1 << (kCubeFractionBits - 1));
  for (int pair = 0; pair < kCubeSlots / 2; ++pair) {
    sums = AddPair<V, kPixel>(sums, coefficients, step, pair);
  }
  return V::ShiftRight32(sums, kCubeFractionBits);
}

// Clamps four pixels a lane and writes them channel by channel, lane 0 first. With three channels
// each 16-byte store leaves 4 bytes of garbage behind its 12, the last one behind the step.
template <class V, int kChannels>
void StorePixels(const typename V::Reg (&pixels)[4], typename V::Reg max_output,
                 uint16_t* destination) {
  constexpr std::ptrdiff_t kHalf = 2 * kChannels;
  auto first = V::MinU16(V::PackU32(pixels[0], pixels[1]), max_output);
  auto second = V::MinU16(V::PackU32(pixels[2], pixels[3]), max_output);
  if (kChannels == 3) {
    alignas(16) static constexpr int8_t kClose[16] = {0,  1,  2,  3,  4,  5,  8,  9,
                                                      10, 11, 12, 13, -1, -1, -1, -1};
    const auto close = V::LoadToAllLanes(kClose);
    first = V::Shuffle8(first, close);
    second = V::Shuffle8(second, close);
  }
  for (int lane = 0; lane < V::kLanes; ++lane) {
    V::StoreLane(destination + 2 * lane * kHalf, first, lane);
    V::StoreLane(destination + (2 * lane + 1) * kHalf, second, lane);
  }
}

// Saturation is the clamp: an output of one byte has 8 bits.
template <class V, int kChannels>
void StorePixels(const typename V::Reg (&pixels)[4], typename V::Reg /*max_output*/,
                 uint8_t* destination) {
  auto bytes = V::PackU16(V::PackS32(pixels[0], pixels[1]), V::PackS32(pixels[2], pixels[3]));
  if (kChannels == 3) {
    alignas(16) static constexpr int8_t kClose[16] = {0,  1,  2,  4,  5,  6,  8,  9,
                                                      10, 12, 13, 14, -1, -1, -1, -1};
    const auto close = V::LoadToAllLanes(kClose);
    bytes = V::Shuffle8(bytes, close);
  }
  for (int lane = 0; lane < V::kLanes; ++lane) {
    V::StoreLane(destination + 4 * kChannels * lane, bytes, lane);
  }
}

template <class V, class Input, class Output, class Coefficient, int kChannels>
struct CubeConversion {
  static void Run(const uint8_t* source, uint8_t* destination, std::ptrdiff_t pixels,
                  const CubeTables& tables) {
    const auto* in = reinterpret_cast<const Input*>(source);
    auto* out = reinterpret_cast<Output*>(destination);
    Strip strip;
    for (; pixels > 0; pixels -= kStripPixels) {
      const std::ptrdiff_t count = pixels < kStripPixels ? pixels : kStripPixels;
      FillStrip(in, count, kStepPixels<V>, tables, &strip);
      ConvertStrip(strip, count, tables, out);
      in += 3 * count;
      out += kChannels * count;
    }
  }

 private:
  static void ConvertStrip(const Strip& strip, std::ptrdiff_t pixels, const CubeTables& tables,
                           Output* destination) {
    // The garbage behind a step must lie within the strip: what follows the strip may be input
    // that is still to be read, or not ours.
    constexpr std::ptrdiff_t kGarbagePixels = 2;
    std::ptrdiff_t i = 0;
    for (; i + kStepPixels<V> + kGarbagePixels <= pixels; i += kStepPixels<V>) {
      ConvertStep(strip, i, tables, destination + kChannels * i);
    }
    for (; i < pixels; i += kStepPixels<V>) {
      Output step[kChannels * (kStepPixels<V> + kGarbagePixels)];
      ConvertStep(strip, i, tables, step);
      const std::ptrdiff_t left = pixels - i < kStepPixels<V> ? pixels - i : kStepPixels<V>;
      std::memcpy(destination + kChannels * i, step,
                  static_cast<size_t>(kChannels * left) * sizeof(Output));
    }
  }

  static void ConvertStep(const Strip& strip, std::ptrdiff_t first, const CubeTables& tables,
                          Output* destination) {
    const auto* coefficients = static_cast<const Coefficient*>(tables.coefficients);
    const StepWeights<V> step = Weigh<V>(strip, first, tables);
    const typename V::Reg pixels[4] = {Interpolate<V, Coefficient, 0>(coefficients, step),
                                       Interpolate<V, Coefficient, 1>(coefficients, step),
                                       Interpolate<V, Coefficient, 2>(coefficients, step),
                                       Interpolate<V, Coefficient, 3>(coefficients, step)};
    StorePixels<V, kChannels>(pixels, V::Set16(tables.max_output), destination);
  }
};

template <class V, class Input, class Output, class Coefficient, int kChannels>
constexpr ConvertCubeRun* kConvert = CubeConversion<V, Input, Output, Coefficient, kChannels>::Run;

template <class V>
constexpr CubeKernels kCubeOf = {
    .narrow =
        {{{kConvert<V, uint8_t, uint8_t, int16_t, 3>, kConvert<V, uint8_t, uint8_t, int16_t, 4>},
          {kConvert<V, uint8_t, uint16_t, int16_t, 3>, kConvert<V, uint8_t, uint16_t, int16_t, 4>}},
         {{kConvert<V, uint16_t, uint8_t, int16_t, 3>, kConvert<V, uint16_t, uint8_t, int16_t, 4>},
          {kConvert<V, uint16_t, uint16_t, int16_t, 3>,
           kConvert<V, uint16_t, uint16_t, int16_t, 4>}}},
    .wide = {{kConvert<V, uint16_t, uint8_t, int32_t, 3>,
              kConvert<V, uint16_t, uint8_t, int32_t, 4>},
             {kConvert<V, uint16_t, uint16_t, int32_t, 3>,
              kConvert<V, uint16_t, uint16_t, int32_t, 4>}},
};

}  // namespace
}  // namespace ovra
