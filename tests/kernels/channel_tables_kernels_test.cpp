// SPDX-License-Identifier: MIT
#include "color/channel_tables_kernels.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "color/channel_tables.h"
#include "support/failing_malloc.h"
#include "support/guarded_buffer.h"
#include "support/random.h"
#include "support/tiers.h"

namespace {

using ovra::KernelTier;
using ovra_test::Guard;
using ovra_test::GuardedBuffer;

TEST(ChannelTablesKernels, BytesByShufflesEqualPlain) {
  if (ovra::DetectedTier() < KernelTier::kAvx2) GTEST_SKIP() << "AVX2 not available";
  auto* const accelerated = ovra::SelectMapChannels<uint8_t, uint8_t>(KernelTier::kAvx2);
  ASSERT_NE(accelerated, (ovra::MapChannelsPlain<uint8_t, uint8_t>));
  ovra_test::Random random(4);
  uint16_t entries[3][256];
  ovra::SampleTables tables = {};
  tables.last = 255;
  for (int k = 0; k < 3; ++k) {
    tables.table[k] = entries[k];
    for (int v = 0; v < 256; ++v) {
      entries[k][v] = static_cast<uint16_t>(random() % 256);
      tables.bytes[k][v] = static_cast<uint8_t>(entries[k][v]);
    }
  }
  for (const Guard guard : {Guard::kAfter, Guard::kBefore}) {
    for (size_t pixels = 0; pixels <= 130; ++pixels) {
      GuardedBuffer source(3 * pixels, guard);
      for (uint8_t& byte : source) byte = static_cast<uint8_t>(random() >> 8);
      std::vector<uint8_t> expected(3 * pixels);
      ovra::MapChannelsPlain(source.data(), expected.data(), static_cast<std::ptrdiff_t>(pixels),
                             tables);
      GuardedBuffer actual(3 * pixels, guard);
      accelerated(source.data(), actual.data(), static_cast<std::ptrdiff_t>(pixels), tables);
      ASSERT_TRUE(std::equal(expected.begin(), expected.end(), actual.begin())) << pixels;
    }
  }
}

// The handle and three tables are taken.
TEST(ChannelTables, FailingAllocationsLeaveNothing) {
  constexpr int kAllocations = 4;
  const ovra::FormatPair formats = {0x128, 0x120};
  const ovra::ChannelPolynomial coefficients[3] = {};
  const uint8_t source[6] = {};
  for (int number = 1; number <= kAllocations + 1; ++number) {
    uint8_t destination[3] = {77, 77, 77};
    uintptr_t handle = 1;
    ovra::Status init = 0;
    ovra::Status once = 0;
    int after_init = 0;
    int after_once = 0;
    {
      const ovra_test::FailAllocationsFrom fail(number);
      init = ovra::InitChannelTables(formats, coefficients, &handle);
      if (init == OVRA_OK) ovra::FreeChannelTables(&handle);
      after_init = ovra_test::FailAllocationsFrom::Outstanding();
    }
    {
      const ovra_test::FailAllocationsFrom fail(number);
      once = ovra::ConvertByChannelTablesOnce({source, destination, 1, 1}, formats, coefficients,
                                              KernelTier::kPlain);
      after_once = ovra_test::FailAllocationsFrom::Outstanding();
    }
    const bool fails = number <= kAllocations;
    EXPECT_EQ(init, fails ? OVRA_ERROR_NO_MEMORY : OVRA_OK) << number;
    EXPECT_EQ(once, fails ? OVRA_ERROR_NO_MEMORY : OVRA_OK) << number;
    EXPECT_EQ(handle, 0U);
    EXPECT_EQ(after_init, 0);
    EXPECT_EQ(after_once, 0);
    EXPECT_EQ(destination[0], fails ? 77 : 0);
  }
}

}  // namespace
