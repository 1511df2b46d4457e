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

// The cells and the weights of one step: of each pixel all eight weights together, those of a lane's
// first pixel, of the next lane's first, of the second ones.
template <class V>
struct StepWeights {
  alignas(32) uint16_t weights[kStepPixels<V>][kCubeSlots];
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
  // Each element holds the weights of two neighbouring slots; then those of a pixel are brought together.
  const Reg pairs[4] = {pair(V::Set32(kOne), product(xy, z)), pair(xy, product(z, y)),
                        pair(product(z, x), x), pair(y, z)};
  const Reg low01 = V::template UnpackLow<32>(pairs[0], pairs[1]);
  const Reg low23 = V::template UnpackLow<32>(pairs[2], pairs[3]);
  const Reg high01 = V::template UnpackHigh<32>(pairs[0], pairs[1]);
  const Reg high23 = V::template UnpackHigh<32>(pairs[2], pairs[3]);
  StepWeights<V> result;
  V::StoreAligned(result.weights[0], V::template UnpackLow<64>(low01, low23));
  V::StoreAligned(result.weights[V::kLanes], V::template UnpackHigh<64>(low01, low23));
  V::StoreAligned(result.weights[2 * V::kLanes], V::template UnpackLow<64>(high01, high23));
  V::StoreAligned(result.weights[3 * V::kLanes], V::template UnpackHigh<64>(high01, high23));
  V::StoreAligned(result.cells, cells);
  return result;
}

// A cell in registers: a lane holds the four channels of a slot, or of a pair of slots where these are
// narrow.
template <class V, class Coefficient>
struct CellLayout {
  static constexpr int kLaneSlots = sizeof(Coefficient) == 2 ? 2 : 1;
  static constexpr int kRegisters = kCubeSlots / kLaneSlots / V::kLanes;

  // Shuffles that bring the weight of a lane's slots into all its elements.
  alignas(32) int8_t spread[kRegisters][V::kBytes] = {};

  constexpr CellLayout() {
    constexpr int kLaneBytes = 16;
    constexpr int kUsed = 2 * kLaneSlots;  // bytes of an element; a single weight is widened
    for (int i = 0; i < kRegisters * static_cast<int>(V::kBytes); ++i) {
      const int first = i / kLaneBytes * kUsed;
      const bool used = i % 4 < kUsed;
      spread[i / V::kBytes][i % V::kBytes] = static_cast<int8_t>(used ? first + i % 4 : -1);
    }
  }
};

template <class V>
typename V::Reg Products(const int16_t* coefficients, typename V::Reg weights) {
  return V::MulAdd16(V::LoadAligned(coefficients), weights);
}

template <class V>
typename V::Reg Products(const int32_t* coefficients, typename V::Reg weights) {
  return V::MulLow32(V::LoadAligned(coefficients), weights);
}

// The sums of one pixel's products, those of each lane's slots by themselves.
template <class V, class Coefficient>
typename V::Reg SumProducts(const Coefficient* cell, const uint16_t* pixel_weights) {
  using Layout = CellLayout<V, Coefficient>;
  static constexpr Layout kLayout;
  constexpr int kEntries = kCubeCellEntries / Layout::kRegisters;
  const auto weights = V::LoadToAllLanes(pixel_weights);
  const auto spread = [&](int i) {
    return V::Shuffle8(weights, V::LoadAligned(kLayout.spread[i]));
  };
  auto sums = Products<V>(cell, spread(0));
  for (int i = 1; i < Layout::kRegisters; ++i) {
    sums = V::Add32(sums, Products<V>(cell + i * kEntries, spread(i)));
  }
  return sums;
}

// The four channels of pixel `kPixel` of each lane, not yet clamped.
template <class V, class Coefficient, int kPixel>
typename V::Reg Interpolate(const Coefficient* coefficients, const StepWeights<V>& step) {
  constexpr int kLastLane = V::kLanes - 1;
  const auto sums = [&](int lane) {
    const uint32_t cell = step.cells[kPixel + 4 * lane];
    return SumProducts<V>(coefficients + size_t{cell} * kCubeCellEntries,
                          step.weights[V::kLanes * kPixel + lane]);
  };
  const auto first = sums(0);
  const auto sum = kLastLane == 0 ? first : V::AddLanes32(first, sums(kLastLane));
  const auto rounded = V::Add32(sum, V::Set32(1 << (kCubeFractionBits - 1)));
  return V::ShiftRight32(rounded, kCubeFractionBits);
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
    // All weights come first: by the time that they are read their stores have left the pipeline.
    StepWeights<V> steps[kStripPixels / kStepPixels<V>];
    for (std::ptrdiff_t i = 0; i < pixels; i += kStepPixels<V>) {
      steps[i / kStepPixels<V>] = Weigh<V>(strip, i, tables);
    }
    // The garbage behind a step must lie within the strip: what follows the strip may be input
    // that is still to be read, or not ours.
    constexpr std::ptrdiff_t kGarbagePixels = 2;
    std::ptrdiff_t i = 0;
    for (; i + kStepPixels<V> + kGarbagePixels <= pixels; i += kStepPixels<V>) {
      ConvertStep(steps[i / kStepPixels<V>], tables, destination + kChannels * i);
    }
    for (; i < pixels; i += kStepPixels<V>) {
      Output step[kChannels * (kStepPixels<V> + kGarbagePixels)];
      ConvertStep(steps[i / kStepPixels<V>], tables, step);
      const std::ptrdiff_t left = pixels - i < kStepPixels<V> ? pixels - i : kStepPixels<V>;
      std::memcpy(destination + kChannels * i, step,
                  static_cast<size_t>(kChannels * left) * sizeof(Output));
    }
  }

  static void ConvertStep(const StepWeights<V>& step, const CubeTables& tables,
                          Output* destination) {
    const auto* coefficients = static_cast<const Coefficient*>(tables.coefficients);
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
