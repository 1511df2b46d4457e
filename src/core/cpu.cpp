// SPDX-License-Identifier: MIT
#include "core/cpu.h"

#include <cpuid.h>

#include <cstdlib>
#include <cstring>

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

KernelTier HighestTier() {
  if (!CpuHasMmx() || !CpuHasSse()) return KernelTier::kPlain;
  // The first also asks whether the operating system saves the wide registers.
  __builtin_cpu_init();
  if (__builtin_cpu_supports("avx2")) return KernelTier::kAvx2;
  if (__builtin_cpu_supports("sse4.1")) return KernelTier::kSse;
  return KernelTier::kPlain;
}

// For narrowing down a fault in the field, and for tests of the library as it is shipped. What the
// processor lacks is never taken.
KernelTier DetectTier() {
  const KernelTier highest = HighestTier();
  const char* const asked = std::getenv("OVRA_TIER");
  if (asked == nullptr) return highest;
  KernelTier tier = highest;
  if (std::strcmp(asked, "plain") == 0) tier = KernelTier::kPlain;
  if (std::strcmp(asked, "sse") == 0) tier = KernelTier::kSse;
  return tier < highest ? tier : highest;
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
