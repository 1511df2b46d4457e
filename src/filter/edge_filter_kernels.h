// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/cpu.h"
#include "filter/edge_tables.h"

namespace ovra {

// A pixel is compared with neighbours at -6, -4, ... 6 in both directions.
inline constexpr std::ptrdiff_t kEdgeReach = 6;
inline constexpr std::ptrdiff_t kEdgeStep = 2;
inline constexpr std::ptrdiff_t kEdgeSide = 2 * kEdgeReach / kEdgeStep + 1;
inline constexpr int32_t kEdgeNeighbours = kEdgeSide * kEdgeSide;  // the pixel itself included

// Work rows hold samples times this, one plane a channel: see EdgeTable::segments.
inline constexpr int32_t kEdgeSampleScale = 2;

// Pixels that kernels may read beyond the end of a work row, whatever they hold.
inline constexpr std::ptrdiff_t kEdgeSlack = 32;

// One row's view of the work rows. Each pointer names the first channel's sample for the pixel in
// column 0; the other channels follow at plane_stride and 2 * plane_stride. The pixel itself is the
// neighbour in the middle.
struct EdgeNeighbours {
  const int16_t* samples[kEdgeNeighbours];
  std::ptrdiff_t plane_stride;

  [[gnu::always_inline]] const int16_t* Centre() const { return samples[kEdgeNeighbours / 2]; }
};

// Spreads `width` three-byte pixels over the three planes of a work row.
using SplitEdgeRowKernel = void(const uint8_t* pixels, int16_t* planes, std::ptrdiff_t plane_stride,
                                std::ptrdiff_t width);

// Writes `width` filtered pixels of three bytes.
using FilterEdgeRowKernel = void(const EdgeNeighbours& neighbours, const EdgeTable& table,
                                 uint8_t* output, std::ptrdiff_t width);

SplitEdgeRowKernel SplitEdgeRowPlain;
SplitEdgeRowKernel SplitEdgeRowSse;
SplitEdgeRowKernel SplitEdgeRowAvx2;

FilterEdgeRowKernel FilterEdgeRowPlain;
FilterEdgeRowKernel FilterEdgeRowSse;
FilterEdgeRowKernel FilterEdgeRowAvx2;

inline SplitEdgeRowKernel* SelectSplitEdgeRow(KernelTier tier) {
  if (tier == KernelTier::kAvx2) return SplitEdgeRowAvx2;
  if (tier == KernelTier::kSse) return SplitEdgeRowSse;
  return SplitEdgeRowPlain;
}

inline FilterEdgeRowKernel* SelectFilterEdgeRow(KernelTier tier) {
  if (tier == KernelTier::kAvx2) return FilterEdgeRowAvx2;
  if (tier == KernelTier::kSse) return FilterEdgeRowSse;
  return FilterEdgeRowPlain;
}

}  // namespace ovra
