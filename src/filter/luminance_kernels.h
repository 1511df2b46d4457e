// SPDX-License-Identifier: MIT
// Rows between pixels and the 10-bit luminance plane of the unsharp masks.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/cpu.h"
#include "ovra/pixel_format.h"

namespace ovra {

// How the samples of a pixel of a colour model make its luminance, and which of them a correction
// changes: the first `corrected` of `channels`.
struct LuminanceLayout {
  uint32_t color_model;
  int channels;
  int corrected;
  int weights[3];  // of 64
};

inline constexpr LuminanceLayout kGreyLayout = {OVRA_MODEL_GREY, 1, 1, {64, 0, 0}};
inline constexpr LuminanceLayout kRgbLayout = {OVRA_MODEL_RGB, 3, 3, {19, 38, 7}};
inline constexpr LuminanceLayout kBgrLayout = {OVRA_MODEL_BGR, 3, 3, {7, 38, 19}};
inline constexpr LuminanceLayout kYccLayout = {OVRA_MODEL_YCC, 3, 1, {64, 0, 0}};
inline constexpr LuminanceLayout kRgbaLayout = {OVRA_MODEL_RGBA, 4, 3, {19, 38, 7}};
inline constexpr LuminanceLayout kBgraLayout = {OVRA_MODEL_BGRA, 4, 3, {7, 38, 19}};

// A weighted sum is 6 bits wider than the samples, and the luminance has 10 bits.
static constexpr int32_t LuminanceShift(int32_t depth_bits) {
  return depth_bits + 6 - 10;
}

// Answers use.operator()<layout>() for the layout of a colour model that the masks accept.
template <class Use>
auto WithLuminanceLayout(uint32_t color_model, const Use& use) {
  switch (color_model) {
    case OVRA_MODEL_RGB:
      return use.template operator()<kRgbLayout>();
    case OVRA_MODEL_BGR:
      return use.template operator()<kBgrLayout>();
    case OVRA_MODEL_YCC:
      return use.template operator()<kYccLayout>();
    case OVRA_MODEL_RGBA:
      return use.template operator()<kRgbaLayout>();
    case OVRA_MODEL_BGRA:
      return use.template operator()<kBgraLayout>();
    default:
      return use.template operator()<kGreyLayout>();
  }
}

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

// The kernels of a colour model, for samples of 8 bits or of 9 to 14.
LuminanceKernels LuminanceKernelsPlain(uint32_t color_model, int32_t depth_bits);
LuminanceKernels LuminanceKernelsSse(uint32_t color_model, int32_t depth_bits);

inline LuminanceKernels SelectLuminanceKernels(uint32_t color_model, int32_t depth_bits,
                                               KernelTier tier) {
  if (tier == KernelTier::kPlain) return LuminanceKernelsPlain(color_model, depth_bits);
  // 128 bits serve the AVX2 tier too: channels are gathered by shuffles that do not cross halves.
  return LuminanceKernelsSse(color_model, depth_bits);
}

}  // namespace ovra
