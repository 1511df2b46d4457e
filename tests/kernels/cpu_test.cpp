// SPDX-License-Identifier: MIT
#include "core/cpu.h"

#include <gtest/gtest.h>

namespace {

// The tests of accelerated kernels are skipped where detection finds less than there is, so this one
// must not miss a tier.
TEST(Cpu, DetectsWhatTheProcessorHas) {
  __builtin_cpu_init();
  const auto expected = __builtin_cpu_supports("avx2")     ? ovra::KernelTier::kAvx2
                        : __builtin_cpu_supports("sse4.1") ? ovra::KernelTier::kSse
                                                           : ovra::KernelTier::kPlain;
  EXPECT_EQ(ovra::DetectedTier(), expected);
  EXPECT_TRUE(ovra::CpuHasMmx());
  EXPECT_TRUE(ovra::CpuHasSse());
}

}  // namespace
