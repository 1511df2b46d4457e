// SPDX-License-Identifier: MIT
// Rows between pixels and the 10-bit luminance plane of the unsharp masks.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/cpu.h"

namespace ovra {

// How the samples of a pixel make its luminance, and which of them a correction changes: the first
// `corrected` of `channels`.
struct LuminanceLayout {
  int channels;
  int corrected;
  int weights[3];  // of 64; all 0 where the first sample is the luminance

  constexpr bool IsWeighted() const { return weights[1] != 0; }
};

inline constexpr LuminanceLayout kGreyLayout = {1, 1, {0, 0, 0}};
inline constexpr LuminanceLayout kRgbLayout = {3, 3, {19, 38, 7}};
inline constexpr LuminanceLayout kBgrLayout = {3, 3, {7, 38, 19}};
inline constexpr LuminanceLayout kYccLayout = {3, 1, {0, 0, 0}};
inline constexpr LuminanceLayout kRgbaLayout = {4, 3, {19, 38, 7}};
inline constexpr LuminanceLayout kBgraLayout = {4, 3, {7, 38, 19}};

// Writes the luminance of `pixels` pixels, 0..1023. Samples above the depth count as its maximum.
using ExtractLuminanceRow = void(const uint8_t* source, int16_t* luminance, std::ptrdiff_t pixels,
                                 int32_t depth_bits);

// Adds each pixel's delta to its corrected samples, limits them to 0 .. 2^depth_bits - 1 and copies
// the others. destination may be source.
using AddDeltasRow = void(const uint8_t* source, uint8_t* destination, const int16_t* deltas,
                          std::ptrdiff_t pixels, int32_t depth_bits);

struct LuminanceKernels {
  ExtractLuminanceRow* extract;
  AddDeltasRow* add_deltas;
};

// The kernels of a colour model that the masks accept; 8-bit samples or those of 9 to 14 bits.
LuminanceKernels LuminanceKernelsPlain(uint32_t color_model, int32_t depth_bits);

inline LuminanceKernels SelectLuminanceKernels(uint32_t color_model, int32_t depth_bits,
                                               KernelTier tier) {
  (void)tier;
  return LuminanceKernelsPlain(color_model, depth_bits);
}

}  // namespace ovra
