// SPDX-License-Identifier: MIT
#include "core/cpu.h"

#include <cpuid.h>

namespace ovra {
namespace {

constexpr unsigned kFeatureLeaf = 1;
constexpr unsigned kEdxMmx = 1U << 23;
constexpr unsigned kEdxSse = 1U << 25;

unsigned FeatureEdx() {
  unsigned eax = 0;
  unsigned ebx = 0;
  unsigned ecx = 0;
  unsigned edx = 0;
  return __get_cpuid(kFeatureLeaf, &eax, &ebx, &ecx, &edx) != 0 ? edx : 0;
}

KernelTier DetectTier() {
  if (!CpuHasMmx() || !CpuHasSse()) return KernelTier::kPlain;
  // The first also asks whether the operating system saves the wide registers.
  __builtin_cpu_init();
  if (__builtin_cpu_supports("avx2")) return KernelTier::kAvx2;
  if (__builtin_cpu_supports("sse4.1")) return KernelTier::kSse;
  return KernelTier::kPlain;
}

const KernelTier kDetectedTier = DetectTier();

}  // namespace

// The bit alone decides: the library is built for SSE2, and a processor and system that got this
// far execute EMMS whenever they report it, so there is no fault for a guard to catch.
bool CpuHasMmx() {
  return (FeatureEdx() & kEdxMmx) != 0;
}

bool CpuHasSse() {
  return (FeatureEdx() & kEdxSse) != 0;
}

KernelTier DetectedTier() {
  return kDetectedTier;
}

}  // namespace ovra
