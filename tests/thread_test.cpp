// SPDX-License-Identifier: MIT
// Calls on different buffers from several threads at once; the thread sanitizer watches.
#include <gtest/gtest.h>

#ifndef _WIN32

#include <functional>
#include <thread>
#include <vector>

#include "conformance/operations.h"

namespace {

using Bytes = std::vector<uint8_t>;

constexpr int32_t kWidth = 61;
constexpr int32_t kHeight = 47;
constexpr uint32_t kRgb = 0x120;

// Runs the same in four threads at once and compares what comes out with a run before them.
void RunAtOnce(const std::function<Bytes()>& run) {
  const Bytes expected = run();
  std::vector<Bytes> results(4);
  std::vector<std::thread> threads;
  for (Bytes& result : results) threads.emplace_back([&] { result = run(); });
  for (std::thread& thread : threads) thread.join();
  for (const Bytes& result : results) EXPECT_EQ(result, expected);
}

TEST(Threads, CallsShareNothing) {
  for (const ovra_test::Operation& operation : ovra_test::kOperations) {
    for (uint32_t seed = 0; seed < 4; ++seed) {
      SCOPED_TRACE(operation.name);
      RunAtOnce([&] { return MakeCall(operation, ovra_test::Draw(seed)).output; });
    }
  }
}

TEST(Threads, RunsShareAContext) {
  Bytes source(3 * kWidth * kHeight);
  for (size_t i = 0; i < source.size(); ++i) source[i] = static_cast<uint8_t>(i * i >> 3);
  const auto run_at_once = [&source](const auto& convert) {
    RunAtOnce([&] {
      Bytes out(source.size());
      EXPECT_EQ(convert(source.data(), out.data()), OVRA_OK);
      return out;
    });
  };
  const int32_t weights[] = {32, 64, 32};
  const std::vector<int16_t> table(2048, 128);
  OvraYUsmContext* mask = nullptr;
  ASSERT_EQ(OvraYUsm_Init(kRgb, 3, weights, 2.0F, table.data(), table.data(), &mask), OVRA_OK);
  run_at_once([&](auto* in, auto* out) { return OvraYUsm(in, out, kWidth, kHeight, kRgb, mask); });
  EXPECT_EQ(OvraYUsm_Free(&mask), OVRA_OK);

  OvraColorMatrix matrix = {};
  for (int k = 0; k < 3; ++k) matrix.rows[k][2 - k] = 0.9;
  uintptr_t handle = 0;
  ASSERT_EQ(OvraConvColorMtx_Init(kRgb, kRgb, &matrix, &handle), OVRA_OK);
  run_at_once([&](auto* in, auto* out) {
    return OvraConvColorMtx(in, out, kWidth, kHeight, kRgb, kRgb, handle);
  });
  EXPECT_EQ(OvraConvColorMtx_Free(&handle), OVRA_OK);
}

}  // namespace

#endif  // _WIN32
