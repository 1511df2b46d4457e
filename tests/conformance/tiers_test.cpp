// SPDX-License-Identifier: MIT
// Random calls of every operation give the same bytes in every tier of kernels, and survive
// allocations that fail.
#include <gtest/gtest.h>

#include "conformance/operations.h"
#include "support/failing_malloc.h"
#include "support/forced_tier.h"

namespace {

using ovra::KernelTier;
using ovra_test::Draw;
using ovra_test::FailAllocation;
using ovra_test::FailAllocationsFrom;
using ovra_test::ForcedTier;
using ovra_test::Outcome;

constexpr uint32_t kSeeds = 240;

class Conformance : public testing::TestWithParam<ovra_test::Operation> {};

TEST_P(Conformance, TiersAgree) {
  for (uint32_t seed = 0; seed < 2 * kSeeds; ++seed) {
    SCOPED_TRACE(seed);
    const Draw draw(seed, {}, seed >= kSeeds);
    std::vector<uint8_t> expected;
    for (const KernelTier tier : ovra_test::AllTiers()) {
      const ForcedTier forced(tier);
      const Outcome outcome = MakeCall(GetParam(), draw);
      ASSERT_EQ(outcome.complaint, "") << ovra_test::TierName(tier);
      if (tier == KernelTier::kPlain) expected = outcome.output;
      ASSERT_TRUE(outcome.output == expected) << ovra_test::TierName(tier);
    }
  }
}

// Fails the allocation with this number. False when the call asked for fewer.
bool FailOne(const ovra_test::Operation& operation, uint32_t seed, int number) {
  bool has_failed = false;
  int left = 0;
  const Outcome outcome = MakeCall(operation, Draw(seed), [&](const auto& run) {
    const FailAllocation failing(number);
    const OvraStatus status = run();
    has_failed = FailAllocationsFrom::Requested() >= number;
    left = FailAllocationsFrom::Outstanding();
    return status;
  });
  EXPECT_EQ(left, 0);
  EXPECT_EQ(outcome.complaint, "");
  if (has_failed && !(outcome.may_do_without_memory && outcome.status == OVRA_OK)) {
    EXPECT_EQ(outcome.status, outcome.no_memory_status);
  }
  return has_failed;
}

TEST_P(Conformance, EveryAllocationMayFail) {
  constexpr uint32_t kEvery = 6;
  constexpr int kMost = 24;  // some operations allocate for every row
  for (uint32_t seed = 0; seed < kSeeds && !HasFailure(); seed += kEvery) {
    SCOPED_TRACE(seed);
    for (const KernelTier tier : {KernelTier::kPlain, ovra_test::AllTiers().back()}) {
      const ForcedTier forced(tier);
      int number = 1;
      while (number <= kMost && FailOne(GetParam(), seed, number)) ++number;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Calls, Conformance, testing::ValuesIn(ovra_test::kOperations),
                         ovra_test::OperationName);

}  // namespace
