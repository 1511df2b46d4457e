// SPDX-License-Identifier: MIT
// What the processor offers, and which tier of kernels follows from it.
#pragma once

namespace ovra {

// The forms in which kernels exist. Every tier gives the plain tier's bytes; a higher one includes
// what the lower ones need.
enum class KernelTier {
  kPlain,  // portable C++, the definition of the arithmetic
  kSse,    // 128-bit integers, up to SSE4.1
  kAvx2,   // 256-bit integers
};

bool CpuHasMmx();
bool CpuHasSse();

// The highest tier that this processor and its operating system run, or a lower one that the
// environment variable OVRA_TIER asks for: plain, sse or avx2; any other value is not heeded. Found
// once, when the library is loaded. Acceleration as such asks for MMX and SSE; each tier also for
// what its code uses.
KernelTier DetectedTier();

// A family's kernels of one tier, from its three sets. Where a tier has nothing of its own, the
// family names the lower one's again.
template <class Kernels>
const Kernels& ForTier(KernelTier tier, const Kernels& plain, const Kernels& sse,
                       const Kernels& avx2) {
  if (tier == KernelTier::kAvx2) return avx2;
  if (tier == KernelTier::kSse) return sse;
  return plain;
}

}  // namespace ovra
