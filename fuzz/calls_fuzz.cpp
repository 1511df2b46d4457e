// SPDX-License-Identifier: MIT
// The conformance test's calls, with the fuzzer's bytes for their choices, and in half of the inputs
// with mistakes: all tiers agree, stay in their buffers and change nothing that they must not.
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <string>

#include "conformance/operations.h"
#include "support/forced_tier.h"

namespace {

void Require(bool holds, const ovra_test::Operation& operation, const std::string& what) {
  if (holds) return;
  std::fprintf(stderr, "%s: %s\n", operation.name, what.c_str());
  std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  constexpr uint8_t kMayErr = 0x80;
  const ovra_test::Operation& operation =
      ovra_test::kOperations[(data[0] & ~kMayErr) % std::size(ovra_test::kOperations)];
  const ovra_test::Draw draw(0, {data + 1, size - 1}, (data[0] & kMayErr) != 0);
  std::vector<uint8_t> expected;
  for (const ovra::KernelTier tier : ovra_test::AllTiers()) {
    const ovra_test::ForcedTier forced(tier);
    const ovra_test::Outcome outcome = MakeCall(operation, draw);
    Require(outcome.complaint.empty(), operation, outcome.complaint);
    if (tier == ovra::KernelTier::kPlain) expected = outcome.output;
    Require(outcome.output == expected, operation, ovra_test::TierName(tier));
  }
  return 0;
}
