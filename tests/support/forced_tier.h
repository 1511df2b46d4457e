// SPDX-License-Identifier: MIT
// Lets exports run a lower tier of kernels than the processor's best. Covers everything that is
// linked into the program itself with --wrap for ovra::DetectedTier.
#pragma once

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

}  // namespace ovra_test
