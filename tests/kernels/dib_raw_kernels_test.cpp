// SPDX-License-Identifier: MIT
#include "core/dib_raw/kernels.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "support/guarded_buffer.h"
#include "support/random.h"
#include "support/tiers.h"

namespace {

using ovra::KernelTier;
using ovra_test::Guard;
using ovra_test::GuardedBuffer;

class DibRawKernels : public ovra_test::AcceleratedTierTest {};

TEST_P(DibRawKernels, EqualsPlain) {
  ovra::SwapRedBlueRow* const plain = ovra::kDibRawPlain.swap_red_blue;
  ovra::SwapRedBlueRow* const accelerated =
      ovra::ForTier(GetParam(), ovra::kDibRawPlain, ovra::kDibRawSse, ovra::kDibRawAvx2)
          .swap_red_blue;
  ASSERT_NE(plain, accelerated);
  ovra_test::Random random(2);
  for (const Guard guard : {Guard::kAfter, Guard::kBefore}) {
    for (size_t pixels = 0; pixels <= 70; ++pixels) {
      GuardedBuffer source(3 * pixels, guard);
      ovra_test::FillSamples(random, source.begin(), source.end(), 255U);
      std::vector<uint8_t> expected(3 * pixels);
      plain(source.data(), expected.data(), static_cast<std::ptrdiff_t>(pixels));
      GuardedBuffer actual(3 * pixels, guard);
      accelerated(source.data(), actual.data(), static_cast<std::ptrdiff_t>(pixels));
      ASSERT_TRUE(std::equal(expected.begin(), expected.end(), actual.begin())) << pixels;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Tiers, DibRawKernels, ovra_test::AcceleratedTiers(),
                         ovra_test::TierParamName);

}  // namespace
