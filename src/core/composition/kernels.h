// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

namespace ovra {

// Whose share a blending weight w of 0..255 is. The owner counts (w + 1) / 256, the other image
// (256 - w) / 256, which is 257 / 256 together: with the floor that follows, w = 255 gives the
// owner's sample exactly, w = 0 the other's, and equal samples keep their value.
enum class WeightOf { kDestination, kSource };

// How far the row is that comes next, in bytes.
struct NextRow {
  std::ptrdiff_t source;  // and of the mask
  std::ptrdiff_t destination;
};

// Blends `pixels` pixels into the destination. A source pixel has one sample more than a
// destination pixel: the last, which is the weight of the others.
using AlphaBlendRow = void(const uint8_t* source, uint8_t* destination, std::ptrdiff_t pixels,
                           NextRow next);

// Blends `samples` samples into the destination, each with a weight of its own. Since the samples
// do not depend on each other, one kernel serves all channel counts.
using MaskBlendRow = void(const uint8_t* source, const uint8_t* mask, uint8_t* destination,
                          std::ptrdiff_t samples, NextRow next);

// The kernels of one tier. No kernel reads or writes beyond its rows, which do not overlap.
struct CompositionKernels {
  struct OfWeight {
    AlphaBlendRow* alpha[3];  // for 1, 2 and 3 destination channels
    MaskBlendRow* mask;
  };
  OfWeight weight_of_destination;
  OfWeight weight_of_source;

  // Inlined always: a tier may not leave a copy of it to others.
  [[gnu::always_inline]] const OfWeight& Of(WeightOf weight_of) const {
    return weight_of == WeightOf::kSource ? weight_of_source : weight_of_destination;
  }
};

extern const CompositionKernels kCompositionPlain;
extern const CompositionKernels kCompositionSse;
extern const CompositionKernels kCompositionAvx2;

}  // namespace ovra
