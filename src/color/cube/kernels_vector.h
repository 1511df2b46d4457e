// SPDX-License-Identifier: MIT
// The vector forms, for registers of any width. Included by one kernel file a tier.
//
// A step takes four pixels a lane: lane 0 holds pixels 0 to 3 of the step, lane 1 pixels 4 to 7.
// Products of eight 16-bit coefficients with weights of at most 4096 stay below 2^30 in sum; wide
// coefficients are multiplied and added modulo 2^32, as the plain kernel does, and since they are not
// cut off their sums are near nodes again, below 2^29. So neither overflows by rounding.
#pragma once

#include <cstring>

#include "color/cube/kernels.h"
#include "core/vector_ops.h"

namespace ovra {
namespace {

template <class V>
constexpr int kStepPixels = 4 * V::kLanes;

// The positions of one step's pixels on the three axes.
template <class V>
struct StepPositions {
  alignas(32) CubePosition positions[3][kStepPixels<V>];
};

// Looks up as many pixels as a step has. Samples are at most the greatest code.
template <class V, class Input>
void LookUp(const Input* samples, const CubeTables& tables, StepPositions<V>* step) {
  const Input* const x = samples + tables.axes[0].sample;
  const Input* const y = samples + tables.axes[1].sample;
  const Input* const z = samples + tables.axes[2].sample;
  const CubePosition* const x_positions = tables.axes[0].positions;
  const CubePosition* const y_positions = tables.axes[1].positions;
  const CubePosition* const z_positions = tables.axes[2].positions;
  // Volatile, since compilers else gather them in registers first, which takes a tenth more time.
  volatile CubePosition(*const to)[kStepPixels<V>] = step->positions;
  for (int i = 0; i < kStepPixels<V>; ++i) {
    to[0][i] = x_positions[x[3 * i]];
    to[1][i] = y_positions[y[3 * i]];
    to[2][i] = z_positions[z[3 * i]];
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
void Weigh(const StepPositions<V>& step, const CubeTables& tables, StepWeights<V>* result) {
  using Reg = typename V::Reg;
  constexpr int kOne = 1 << kCubeFractionBits;
  const Reg fraction_mask = V::Set32(kCubeFractionMask);
  Reg cells = V::Set32(0);
  Reg fractions[3];
  for (int k = 0; k < 3; ++k) {
    const Reg positions = V::LoadAligned(step.positions[k]);
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
  V::StoreAligned(result->weights[0], V::template UnpackLow<64>(low01, low23));
  V::StoreAligned(result->weights[V::kLanes], V::template UnpackHigh<64>(low01, low23));
  V::StoreAligned(result->weights[2 * V::kLanes], V::template UnpackLow<64>(high01, high23));
  V::StoreAligned(result->weights[3 * V::kLanes], V::template UnpackHigh<64>(high01, high23));
  V::StoreAligned(result->cells, cells);
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

// Twice the four channels of pixel `kPixel` of each lane, not yet rounded and clamped.
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
  return V::ShiftRight32(sum, kCubeFractionBits - 1);
}

// Rounds and clamps four pixels a lane, which are twice what they shall be, and writes them channel by
// channel, lane 0 first. With three channels each 16-byte store leaves 4 bytes of garbage behind its 12, the last one behind the step.
template <class V, int kChannels>
void StorePixels(const typename V::Reg (&pixels)[4], typename V::Reg max_output,
                 uint16_t* destination) {
  constexpr std::ptrdiff_t kHalf = 2 * kChannels;
  const auto round = [&](typename V::Reg a, typename V::Reg b) {
    return V::MinU16(V::AverageU16(V::PackU32(a, b), V::Zero()), max_output);
  };
  auto first = round(pixels[0], pixels[1]);
  auto second = round(pixels[2], pixels[3]);
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

// Saturation is the clamp: an output of one byte has 8 bits. What packing limits before rounding is
// beyond them.
template <class V, int kChannels>
void StorePixels(const typename V::Reg (&pixels)[4], typename V::Reg /*max_output*/,
                 uint8_t* destination) {
  const auto round = [](typename V::Reg a, typename V::Reg b) {
    return V::MulRound15(V::PackS32(a, b), V::Set16(1 << 14));  // half of it, rounded up
  };
  auto bytes = V::PackU16(round(pixels[0], pixels[1]), round(pixels[2], pixels[3]));
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

// Looking up keeps other parts of a processor busy than weighing and interpolating do, so that each
// pass of the loop has something of all three, for steps that are kLead apart: by the time that what
// was stored is read, it has left the pipeline.
template <class V, class Input, class Output, class Coefficient, int kChannels>
class CubeConversion {
 public:
  static void Run(const uint8_t* source, uint8_t* destination, std::ptrdiff_t pixels,
                  const CubeTables& tables) {
    const auto* const in = reinterpret_cast<const Input*>(source);
    auto* const out = reinterpret_cast<Output*>(destination);
    const std::ptrdiff_t steps = (pixels + kStep - 1) / kStep;
    StepPositions<V> positions[kRing];
    StepWeights<V> weights[kRing];
    for (std::ptrdiff_t i = 0; i < steps + 2 * kLead; ++i) {
      if (i < steps) {
        LookUpStep(in + 3 * kStep * i, pixels - kStep * i, tables, &positions[i % kRing]);
      }
      const std::ptrdiff_t weighed = i - kLead;
      if (weighed >= 0 && weighed < steps) {
        Weigh<V>(positions[weighed % kRing], tables, &weights[weighed % kRing]);
      }
      const std::ptrdiff_t done = i - 2 * kLead;
      if (done >= 0) {
        ConvertStep(weights[done % kRing], tables, pixels - kStep * done,
                    out + kChannels * kStep * done);
      }
    }
  }

 private:
  static constexpr std::ptrdiff_t kStep = kStepPixels<V>;
  static constexpr std::ptrdiff_t kLead = 2;
  static constexpr std::ptrdiff_t kRing = 4;  // more than kLead, and quick to divide by
  // Tables of words leave the processor less time to foresee what comes.
  static constexpr uintptr_t kAheadBytes = 1024;
  // The garbage behind a step must lie within the run: what follows may not be ours.
  static constexpr std::ptrdiff_t kGarbagePixels = 2;

  // `pixels` are left, of which a step is looked up, or what there is, filled up with the origin.
  static void LookUpStep(const Input* source, std::ptrdiff_t pixels, const CubeTables& tables,
                         StepPositions<V>* step) {
    alignas(32) Input samples[3 * kStep] = {};
    if constexpr (sizeof(Input) == 1) {
      if (pixels >= kStep) return LookUp<V>(source, tables, step);
      std::memcpy(samples, source, static_cast<size_t>(3 * pixels));
    } else {
      PrefetchLine(reinterpret_cast<uintptr_t>(source) + kAheadBytes);
      if (pixels >= kStep && tables.max_input == UINT16_MAX) return LookUp<V>(source, tables, step);
      const Sse::Reg max = Sse::Set16(static_cast<int>(tables.max_input));
      if (pixels < kStep) {
        std::memcpy(samples, source, static_cast<size_t>(3 * pixels) * sizeof(Input));
        source = samples;
      }
      constexpr int kLast = 3 * kStep - 8;  // where the last register begins, which may overlap
      for (int i = 0; i < kLast + 8; i += 8) {
        const int at = i < kLast ? i : kLast;
        Sse::Store(samples + at, Sse::MinU16(Sse::Load(source + at), max));
      }
    }
    LookUp<V>(samples, tables, step);
  }

  // `pixels` are left.
  static void ConvertStep(const StepWeights<V>& step, const CubeTables& tables,
                          std::ptrdiff_t pixels, Output* destination) {
    if (pixels >= kStep + kGarbagePixels) return Interpolate4(step, tables, destination);
    Output whole[kChannels * (kStep + kGarbagePixels)];
    Interpolate4(step, tables, whole);
    const std::ptrdiff_t count = pixels < kStep ? pixels : kStep;
    std::memcpy(destination, whole, static_cast<size_t>(kChannels * count) * sizeof(Output));
  }

  static void Interpolate4(const StepWeights<V>& step, const CubeTables& tables,
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
