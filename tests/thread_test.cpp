// SPDX-License-Identifier: MIT
// Calls from several threads at once, on different buffers; the thread sanitizer watches.
#include <gtest/gtest.h>

#include <functional>
#include <thread>
#include <vector>

#include "conformance/operations.h"
#include "support/rounds.h"

namespace {

using Bytes = std::vector<uint8_t>;

constexpr int kThreads = 8;

// Runs the same in all threads at once and compares what comes out with a run before them.
void RunAtOnce(const std::function<Bytes()>& run) {
  const Bytes expected = run();
  std::vector<Bytes> results(kThreads);
  std::vector<std::thread> threads;
  for (Bytes& result : results) threads.emplace_back([&] { result = run(); });
  for (std::thread& thread : threads) thread.join();
  for (const Bytes& result : results) EXPECT_EQ(result, expected);
}

class Threads : public testing::TestWithParam<ovra_test::Operation> {};

TEST_P(Threads, ShareNothingButContexts) {
  const auto [begin, end] = ovra_test::SeedsOf(4);
  for (uint32_t seed = begin; seed < end && !HasFailure(); ++seed) {
    SCOPED_TRACE(seed);
    RunAtOnce([&] { return MakeCall(GetParam(), ovra_test::Draw(seed)).output; });
    MakeCall(
        GetParam(), ovra_test::Draw(seed), [](const auto& run) { return run(); }, RunAtOnce);
  }
}

INSTANTIATE_TEST_SUITE_P(Calls, Threads, testing::ValuesIn(ovra_test::kOperations),
                         ovra_test::OperationName);

}  // namespace
