// SPDX-License-Identifier: MIT
// Random calls of every operation give the same bytes in every tier of kernels, and survive
// allocations that fail.
#include <gtest/gtest.h>

#include <cfenv>
#include <fstream>
#include <string>
#include <vector>

#include "conformance/operations.h"
#include "support/failing_malloc.h"
#include "support/forced_tier.h"
#include "support/rounds.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace {

using ovra::KernelTier;
using ovra_test::Draw;
using ovra_test::FailAllocations;
using ovra_test::ForcedTier;
using ovra_test::Outcome;
using ovra_test::SeedsOf;

constexpr uint32_t kSeeds = 240;

class Conformance : public testing::TestWithParam<ovra_test::Operation> {};

TEST_P(Conformance, TiersAgree) {
  const auto [begin, end] = SeedsOf(2 * kSeeds);
  const uint32_t first_mistaken = begin + kSeeds;
  for (uint32_t seed = begin; seed < end && !HasFailure(); ++seed) {
    SCOPED_TRACE(seed);
    ovra_test::ExpectTiersAgree([&] {
      const Outcome outcome = MakeCall(GetParam(), Draw(seed, {}, seed >= first_mistaken));
      EXPECT_EQ(outcome.complaint, "");
      return outcome.output;
    });
  }
}

// Fails the allocations with these numbers. False when the call asked for fewer.
bool Fails(const ovra_test::Operation& operation, uint32_t seed, int first, int last) {
  bool has_failed = false;
  int left = 0;
  const Outcome outcome = MakeCall(operation, Draw(seed), [&](const auto& run) {
    const FailAllocations failing(first, last);
    const OvraStatus status = run();
    has_failed = FailAllocations::Requested() >= first;
    left = FailAllocations::Outstanding();
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
  const auto [begin, end] = SeedsOf(kSeeds);
  for (uint32_t seed = begin; seed < end && !HasFailure(); seed += kEvery) {
    SCOPED_TRACE(seed);
    const Outcome expected = MakeCall(GetParam(), Draw(seed));
    for (const KernelTier tier : ovra_test::AllTiers()) {
      const ForcedTier forced(tier);
      int number = 1;
      while (number <= kMost && Fails(GetParam(), seed, number, number)) {
        Fails(GetParam(), seed, number++, FailAllocations::kNone);
      }
      EXPECT_TRUE(MakeCall(GetParam(), Draw(seed)).output == expected.output) << "the call after";
    }
  }
}

// Hosts leave any precision in force on the x87, which changes nothing. Rounding to another side than
// the nearest may change results, and does no harm.
TEST_P(Conformance, AnyFloatingPointEnvironment) {
  constexpr uint32_t kEvery = 8;
  std::fenv_t usual;
  ASSERT_EQ(std::fegetenv(&usual), 0);
  for (uint32_t seed = 0; seed < kSeeds; seed += kEvery) {
    SCOPED_TRACE(seed);
    const Outcome expected = MakeCall(GetParam(), Draw(seed));
    for (const uint16_t x87 : {0x007F, 0x027F, 0x037F}) {  // 24, 53 and 64 bits
      const auto set = [x87](const auto& run) {
        uint16_t after = 0;
        __asm__ volatile("fldcw %0" : : "m"(x87));
        const OvraStatus status = run();
        __asm__ volatile("fnstcw %0" : "=m"(after));
        EXPECT_EQ(after, x87);
        return status;
      };
      const Outcome outcome = MakeCall(GetParam(), Draw(seed), set);
      std::fesetenv(&usual);
      EXPECT_TRUE(outcome.output == expected.output) << "x87 " << x87;
    }
    for (const int rounding : {FE_DOWNWARD, FE_UPWARD, FE_TOWARDZERO}) {
      for (const KernelTier tier : ovra_test::AllTiers()) {
        const ForcedTier forced(tier);
        const Outcome outcome = MakeCall(GetParam(), Draw(seed), [rounding](const auto& run) {
          std::fesetround(rounding);
          return run();
        });
        std::fesetenv(&usual);
        EXPECT_EQ(outcome.complaint, "");
        EXPECT_EQ(outcome.status, expected.status);
      }
    }
  }
}

// What the fuzzer kept, in hexadecimal: it ends the program where something is wrong.
TEST(Corpus, IsReplayed) {
  std::ifstream file(OVRA_CALLS_CORPUS);
  size_t inputs = 0;
  for (std::string line; std::getline(file, line); ++inputs) {
    std::vector<uint8_t> bytes;
    for (size_t i = 0; i < line.size(); i += 2) {
      bytes.push_back(static_cast<uint8_t>(std::stoul(line.substr(i, 2), nullptr, 16)));
    }
    LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
  }
  EXPECT_GT(inputs, 100U);
}

INSTANTIATE_TEST_SUITE_P(Calls, Conformance, testing::ValuesIn(ovra_test::kOperations),
                         ovra_test::OperationName);

}  // namespace
