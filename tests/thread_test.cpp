// SPDX-License-Identifier: MIT
// Calls on different buffers from several threads at once; the thread sanitizer watches.
#include <gtest/gtest.h>

#ifndef _WIN32

#include <thread>
#include <vector>

#include "ovra/ovra.h"

namespace {

TEST(Threads, ExportsShareNothing) {
  constexpr uint32_t kWidth = 37;
  constexpr uint32_t kHeight = 20;
  constexpr size_t kDibStride = (3 * kWidth + 3) / 4 * 4;
  const std::vector<uint8_t> raw(3 * kWidth * kHeight, 7);
  std::vector<std::vector<uint8_t>> results(4, std::vector<uint8_t>(kDibStride * kHeight));
  std::vector<std::thread> threads;
  for (std::vector<uint8_t>& result : results) {
    threads.emplace_back([&] { OvraRaw2Dib(raw.data(), result.data(), kWidth, kHeight); });
  }
  for (std::thread& thread : threads) thread.join();
  for (const std::vector<uint8_t>& result : results) EXPECT_EQ(result, results.front());
}

}  // namespace

#endif  // _WIN32
