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

// The highest tier that this processor and its operating system run. Found once, when the library
// is loaded. Acceleration as such asks for MMX and SSE; each tier also for what its code uses.
KernelTier DetectedTier();

}  // namespace ovra
