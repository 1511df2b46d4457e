// SPDX-License-Identifier: MIT
#include <algorithm>

#include "color/cube/kernels.h"
#include "core/wrapping.h"

namespace ovra {
namespace {

// A pixel's cell and the eight weights of the cell's coefficients.
struct PixelWeights {
  uint32_t cell = 0;
  uint32_t weights[kCubeSlots];
};

template <class Input>
PixelWeights Weigh(const Input* pixel, const CubeTables& tables) {
  PixelWeights result;
  uint32_t fractions[3];
  for (int k = 0; k < 3; ++k) {
    const CubeAxis& axis = tables.axes[k];
    const uint32_t code = std::min<uint32_t>(pixel[axis.sample], tables.max_input);
    const CubePosition position = axis.positions[code];
    result.cell += (position >> kCubeCellShift) * axis.cell_stride;
    fractions[k] = position & kCubeFractionMask;
  }
  const auto [x, y, z] = fractions;
  const uint32_t xz = (z * x) >> kCubeFractionBits;
  const uint32_t xy = (y * x) >> kCubeFractionBits;
  const uint32_t xyz = (xy * z) >> kCubeFractionBits;
  const uint32_t yz = (z * y) >> kCubeFractionBits;
  const uint32_t weights[kCubeSlots] = {1 << kCubeFractionBits, xyz, xy, yz, xz, x, y, z};
  std::copy(weights, weights + kCubeSlots, result.weights);
  return result;
}

template <class Input, class Output, class Coefficient, int kChannels>
void Convert(const uint8_t* source, uint8_t* destination, std::ptrdiff_t pixels,
             const CubeTables& tables) {
  constexpr uint32_t kHalf = 1 << (kCubeFractionBits - 1);
  const auto* const in = reinterpret_cast<const Input*>(source);
  auto* const out = reinterpret_cast<Output*>(destination);
  const auto* const coefficients = static_cast<const Coefficient*>(tables.coefficients);
  for (std::ptrdiff_t i = 0; i < pixels; ++i) {
    const PixelWeights pixel = Weigh(in + 3 * i, tables);
    const Coefficient* const cell = coefficients + size_t{pixel.cell} * kCubeCellEntries;
    for (int channel = 0; channel < kChannels; ++channel) {
      uint32_t sum = kHalf;
      for (int slot = 0; slot < kCubeSlots; ++slot) {
        const Coefficient coefficient = cell[CubeEntry(Coefficient{}, slot, channel)];
        sum = WrappingSum(sum, WrappingProduct(coefficient, pixel.weights[slot]));
      }
      const int32_t value = static_cast<int32_t>(sum) >> kCubeFractionBits;
      out[kChannels * i + channel] =
          static_cast<Output>(std::clamp<int32_t>(value, 0, tables.max_output));
    }
  }
}

}  // namespace

const CubeKernels kCubePlain = {
    .narrow = {{{Convert<uint8_t, uint8_t, int16_t, 3>, Convert<uint8_t, uint8_t, int16_t, 4>},
                {Convert<uint8_t, uint16_t, int16_t, 3>, Convert<uint8_t, uint16_t, int16_t, 4>}},
               {{Convert<uint16_t, uint8_t, int16_t, 3>, Convert<uint16_t, uint8_t, int16_t, 4>},
                {Convert<uint16_t, uint16_t, int16_t, 3>,
                 Convert<uint16_t, uint16_t, int16_t, 4>}}},
    .wide = {{Convert<uint16_t, uint8_t, int32_t, 3>, Convert<uint16_t, uint8_t, int32_t, 4>},
             {Convert<uint16_t, uint16_t, int32_t, 3>, Convert<uint16_t, uint16_t, int32_t, 4>}},
};

}  // namespace ovra
