// SPDX-License-Identifier: MIT
#include "support/forced_tier.h"

#include <optional>

namespace {

std::optional<ovra::KernelTier> forced_tier;

}  // namespace

// The linker sends every reference to ovra::DetectedTier here.
extern "C" {
ovra::KernelTier __real__ZN4ovra12DetectedTierEv();
ovra::KernelTier __wrap__ZN4ovra12DetectedTierEv();

ovra::KernelTier __wrap__ZN4ovra12DetectedTierEv() {
  return forced_tier ? *forced_tier : __real__ZN4ovra12DetectedTierEv();
}
}

namespace ovra_test {

ForcedTier::ForcedTier(ovra::KernelTier tier) {
  forced_tier = tier;
}
ForcedTier::~ForcedTier() {
  forced_tier.reset();
}

const char* TierName(ovra::KernelTier tier) {
  return tier == ovra::KernelTier::kPlain ? "plain"
         : tier == ovra::KernelTier::kSse ? "SSE"
                                          : "AVX2";
}

std::vector<ovra::KernelTier> AllTiers() {
  std::vector<ovra::KernelTier> tiers;
  for (const auto tier :
       {ovra::KernelTier::kPlain, ovra::KernelTier::kSse, ovra::KernelTier::kAvx2}) {
    if (tier <= __real__ZN4ovra12DetectedTierEv()) tiers.push_back(tier);
  }
  return tiers;
}

}  // namespace ovra_test
