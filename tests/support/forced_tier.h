// SPDX-License-Identifier: MIT
// Lets exports run a lower tier of kernels than the processor's best. Covers everything that is
// linked into the program itself with --wrap for ovra::DetectedTier.
#pragma once

#include <gtest/gtest.h>

#include <utility>
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
  decltype(run()) expected = {};
  for (const ovra::KernelTier tier : AllTiers()) {
    const ForcedTier forced(tier);
    auto result = run();
    if (tier == ovra::KernelTier::kPlain) {
      expected = std::move(result);
    } else {
      EXPECT_TRUE(result == expected) << TierName(tier);
    }
  }
}

}  // namespace ovra_test
