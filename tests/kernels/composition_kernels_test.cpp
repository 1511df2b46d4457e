// SPDX-License-Identifier: MIT
#include "core/composition/kernels.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "support/guarded_buffer.h"
#include "support/random.h"
#include "support/tiers.h"

namespace {

using ovra::KernelTier;
using ovra::WeightOf;
using ovra_test::Guard;
using ovra_test::GuardedBuffer;
using ovra_test::Random;
using Bytes = std::vector<uint8_t>;

constexpr WeightOf kWeights[] = {WeightOf::kDestination, WeightOf::kSource};
constexpr Guard kGuards[] = {Guard::kAfter, Guard::kBefore};
constexpr size_t kMaxPixels = 70;

class CompositionKernels : public ovra_test::AcceleratedTierTest {
 protected:
  const ovra::CompositionKernels& plain_ = ovra::kCompositionPlain;
  const ovra::CompositionKernels& accelerated_ = ovra::ForTier(
      GetParam(), ovra::kCompositionPlain, ovra::kCompositionSse, ovra::kCompositionAvx2);
};

TEST_P(CompositionKernels, AlphaBlendEqualsPlain) {
  Random random(21);
  for (const WeightOf weight_of : kWeights) {
    for (size_t channels = 1; channels <= 3; ++channels) {
      ovra::AlphaBlendRow* const plain = plain_.Of(weight_of).alpha[channels - 1];
      ovra::AlphaBlendRow* const accelerated = accelerated_.Of(weight_of).alpha[channels - 1];
      ASSERT_NE(plain, accelerated);
      for (const Guard guard : kGuards) {
        for (size_t pixels = 0; pixels <= kMaxPixels; ++pixels) {
          GuardedBuffer source((channels + 1) * pixels, guard);
          ovra_test::FillSamples(random, source.begin(), source.end(), 255U);
          GuardedBuffer actual(channels * pixels, guard);
          ovra_test::FillSamples(random, actual.begin(), actual.end(), 255U);
          Bytes expected(actual.begin(), actual.end());
          plain(source.data(), expected.data(), static_cast<std::ptrdiff_t>(pixels));
          accelerated(source.data(), actual.data(), static_cast<std::ptrdiff_t>(pixels));
          ASSERT_EQ(Bytes(actual.begin(), actual.end()), expected) << channels << " " << pixels;
        }
      }
    }
  }
}

TEST_P(CompositionKernels, MaskBlendEqualsPlain) {
  Random random(22);
  for (const WeightOf weight_of : kWeights) {
    ovra::MaskBlendRow* const plain = plain_.Of(weight_of).mask;
    ovra::MaskBlendRow* const accelerated = accelerated_.Of(weight_of).mask;
    ASSERT_NE(plain, accelerated);
    for (const Guard guard : kGuards) {
      for (size_t samples = 0; samples <= kMaxPixels; ++samples) {
        GuardedBuffer source(samples, guard);
        ovra_test::FillSamples(random, source.begin(), source.end(), 255U);
        GuardedBuffer mask(samples, guard);
        ovra_test::FillSamples(random, mask.begin(), mask.end(), 255U);
        GuardedBuffer actual(samples, guard);
        ovra_test::FillSamples(random, actual.begin(), actual.end(), 255U);
        Bytes expected(actual.begin(), actual.end());
        const auto count = static_cast<std::ptrdiff_t>(samples);
        plain(source.data(), mask.data(), expected.data(), count);
        accelerated(source.data(), mask.data(), actual.data(), count);
        ASSERT_EQ(Bytes(actual.begin(), actual.end()), expected) << samples;
      }
    }
  }
}

// All weights with all source samples, over destination samples from 0 to 255.
TEST_P(CompositionKernels, EveryWeightAndSample) {
  constexpr size_t kCount = 256 * 256;
  constexpr int kStep = 5;
  Bytes source(kCount);
  Bytes mask(kCount);
  for (size_t i = 0; i < kCount; ++i) {
    source[i] = static_cast<uint8_t>(i);
    mask[i] = static_cast<uint8_t>(i >> 8);
  }
  for (const WeightOf weight_of : kWeights) {
    for (int destination = 0; destination <= 255; destination += kStep) {
      Bytes expected(kCount, static_cast<uint8_t>(destination));
      Bytes actual = expected;
      plain_.Of(weight_of).mask(source.data(), mask.data(), expected.data(), kCount);
      accelerated_.Of(weight_of).mask(source.data(), mask.data(), actual.data(), kCount);
      ASSERT_TRUE(actual == expected) << destination;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Tiers, CompositionKernels, ovra_test::AcceleratedTiers(),
                         ovra_test::TierParamName);

}  // namespace
