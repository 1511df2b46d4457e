// SPDX-License-Identifier: MIT
// The weights of free trimming: the three-lobed Lanczos kernel (C. Lanczos, Applied Analysis, 1956),
// sinc(d) sinc(d / 3), at 256 positions between two samples.
#pragma once

#include <cstdint>

namespace ovra {

inline constexpr int32_t kLanczosTaps = 6;
inline constexpr int32_t kLanczosPhases = 256;
inline constexpr int32_t kLanczosUnity = 1 << 14;

// Sets of six weights that sum to kLanczosUnity. Two zeros fill each up to a vector.
struct LanczosWeights {
  static constexpr int32_t kStride = 8;
  alignas(64) int16_t sets[kLanczosPhases][kStride] = {};
};

// Made by the compiler, so that no call has to.
extern const LanczosWeights kLanczosWeights;

}  // namespace ovra
