// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

namespace ovra {

// Fractions inside a cell and products of them are fixed point with this many bits; 1 is 4096.
inline constexpr int kCubeFractionBits = 12;

// A position on an axis: the cell's number along it in the high half, the fraction inside the cell
// (0 to 4096) in the low half.
using CubePosition = uint32_t;
inline constexpr int kCubeCellShift = 16;
inline constexpr CubePosition kCubeFractionMask = 0xFFFF;

// The lookup of one of the three coordinates x, y, z of a pixel.
struct CubeAxis {
  const CubePosition* positions;  // one for each input code
  uint32_t cell_stride;           // cells between neighbours along this axis
  uint32_t sample;                // which of the pixel's three samples is the input code
};

// Of every cell and output channel there are eight coefficients, in the slots of
//   0: 1   1: xyz   2: xy   3: yz   4: xz   5: x   6: y   7: z
// A cell has room for four channels, so that it fills one cache line (two with wide coefficients)
// whatever the channel count; the fourth of three is 0.
inline constexpr int kCubeSlots = 8;
inline constexpr int kCubeCellChannels = 4;
inline constexpr int kCubeCellEntries = kCubeSlots * kCubeCellChannels;

// Where a coefficient stands in its cell. Narrow ones come in pairs of neighbouring slots, as
// multiply-add instructions take them; of each pair, or each wide slot, all channels stand
// together.
constexpr int CubeEntry(int16_t /*coefficient*/, int slot, int channel) {
  return slot / 2 * 2 * kCubeCellChannels + 2 * channel + slot % 2;
}
constexpr int CubeEntry(int32_t /*coefficient*/, int slot, int channel) {
  return slot * kCubeCellChannels + channel;
}

// What a kernel needs of a cube.
struct CubeTables {
  CubeAxis axes[3];          // x, y, z
  const void* coefficients;  // int16_t or int32_t, at a cache line's start
  uint32_t max_input;        // samples above count as this
  int32_t max_output;        // results are clamped to 0..max_output
};

// Converts a run of pixels of three input samples. Samples are bytes, or 16-bit words where deep. A
// run may be converted in place when input and output pixels have the same size.
using ConvertCubeRun = void(const uint8_t* source, uint8_t* destination, std::ptrdiff_t pixels,
                            const CubeTables& tables);

struct CubeKernels {
  // Coefficients of 16 bits: [deep input][deep output][four output channels].
  ConvertCubeRun* narrow[2][2][2];
  // Coefficients of 32 bits, which deep input alone has: [deep output][four output channels].
  ConvertCubeRun* wide[2][2];
};

extern const CubeKernels kCubePlain;
extern const CubeKernels kCubeSse;
extern const CubeKernels kCubeAvx2;

}  // namespace ovra
