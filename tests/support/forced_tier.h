// SPDX-License-Identifier: MIT
// Lets exports run a lower tier of kernels than the processor's best. Covers everything that is
// linked into the program itself with --wrap for ovra::DetectedTier.
#pragma once

#include <gtest/gtest.h>

#include <vector>

#include "core/cpu.h"

namespace ovra_test {

// While it lives, DetectedTier() answers `tier`.
class ForcedTier {
 public:
  explicit ForcedTier(ovra::KernelTier tier);
  ~ForcedTier();
  ForcedTier(const ForcedTier&) = delete;
  ForcedTier& operator=(const ForcedTier&) = delete;
};

const char* TierName(ovra::KernelTier tier);

// Those that this processor runs, the plain one first.
std::vector<ovra::KernelTier> AllTiers();

// `run` gives the same in every tier.
void ExpectTiersAgree(const auto& run) {
  const auto expected = [&run] {
    const ForcedTier plain(ovra::KernelTier::kPlain);
    return run();
  }();
  for (const ovra::KernelTier tier : AllTiers()) {
    const ForcedTier forced(tier);
    EXPECT_TRUE(run() == expected) << TierName(tier);
  }
}

}  // namespace ovra_test
