// SPDX-License-Identifier: MIT
// The conformance test's calls, with the fuzzer's bytes for their choices: all tiers agree, stay in
// their buffers, change nothing that they must not, and leave no memory behind.
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <string>

#include "conformance/operations.h"
#include "support/failing_malloc.h"
#include "support/forced_tier.h"

namespace {

using ovra_test::FailAllocations;

// An input is the operation's number, one byte of circumstances, and what the call draws from.
struct Circumstances {
  explicit Circumstances(uint8_t byte)
      : may_err((byte & 1) != 0),
        failing_allocation(may_err || byte < 0x10 ? FailAllocations::kNone : byte >> 4) {}

  bool may_err;            // a mistake now and then
  int failing_allocation;  // of a call without mistakes
};

void Require(bool holds, const ovra_test::Operation& operation, const std::string& what) {
  if (holds) return;
  std::fprintf(stderr, "%s: %s\n", operation.name, what.c_str());
  std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 2) return 0;
  const ovra_test::Operation& operation =
      ovra_test::kOperations[data[0] % std::size(ovra_test::kOperations)];
  const Circumstances how(data[1]);
  const ovra_test::Draw draw(0, {data + 2, size - 2}, how.may_err, true);
  const std::vector<ovra::KernelTier> tiers = ovra_test::AllTiers();
  size_t turn = 0;
  bool has_failed = false;
  int left = 0;
  const auto next_tier = [&](const auto& run) {
    const ovra_test::ForcedTier forced(tiers[turn++]);
    const FailAllocations failing(how.failing_allocation, how.failing_allocation);
    const OvraStatus status = run();
    has_failed = has_failed || FailAllocations::Requested() >= how.failing_allocation;
    left += FailAllocations::Outstanding();
    return status;
  };
  const ovra_test::Outcome outcome = MakeCall(operation, draw, next_tier, nullptr, tiers.size());
  Require(outcome.complaint.empty(), operation, outcome.complaint);
  Require(left == 0, operation, "memory was left behind");
  if (!has_failed) {
    Require(outcome.turns_agree, operation, "tiers differ");
  } else if (!outcome.may_do_without_memory) {
    Require(outcome.status == outcome.no_memory_status, operation, "an allocation failed");
  }
  return 0;
}
