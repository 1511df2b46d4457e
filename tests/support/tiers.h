// SPDX-License-Identifier: MIT
// The kernel tiers as test parameters.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "core/cpu.h"

namespace ovra_test {

inline std::string TierName(ovra::KernelTier tier) {
  switch (tier) {
    case ovra::KernelTier::kPlain:
      return "Plain";
    case ovra::KernelTier::kSse:
      return "Sse";
    case ovra::KernelTier::kAvx2:
      return "Avx2";
  }
  return "Unknown";
}

// A test over the accelerated tiers; one that this processor lacks is skipped.
class AcceleratedTierTest : public testing::TestWithParam<ovra::KernelTier> {
 protected:
  void SetUp() override {
    if (GetParam() > ovra::DetectedTier()) GTEST_SKIP() << TierName(GetParam()) << " not available";
  }
};

inline auto AcceleratedTiers() {
  return testing::Values(ovra::KernelTier::kSse, ovra::KernelTier::kAvx2);
}

inline std::string TierParamName(const testing::TestParamInfo<ovra::KernelTier>& info) {
  return TierName(info.param);
}

}  // namespace ovra_test
