// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "core/rows.h"
#include "resample/kernel_table.h"
#include "resample/small_resize.h"
#include "resample/small_resize_kernels.h"
#include "support/failing_malloc.h"
#include "support/guarded_buffer.h"
#include "support/random.h"
#include "support/tiers.h"

namespace {

using ovra::KernelTier;
using ovra_test::Guard;
using ovra_test::GuardedBuffer;

std::vector<float> Table(float parameter = -0.75F) {
  std::vector<float> table(OVRA_KERNEL_TABLE_ENTRIES);
  ovra::CalcCubicSpline(parameter, table.data());
  return table;
}

class SmallResizeKernels : public ovra_test::AcceleratedTierTest {};

TEST_P(SmallResizeKernels, AreOtherFunctionsThanThePlainOnes) {
  const auto plain = ovra::SelectReductionKernels<uint8_t>(KernelTier::kPlain);
  const auto accelerated = ovra::SelectReductionKernels<uint8_t>(GetParam());
  EXPECT_NE(plain.vertical, accelerated.vertical);
  EXPECT_NE(plain.horizontal, accelerated.horizontal);
  EXPECT_NE(ovra::SelectReductionKernels<uint16_t>(KernelTier::kPlain).vertical,
            ovra::SelectReductionKernels<uint16_t>(GetParam()).vertical);
}

// Whole calls on random shapes: every depth and channel count, odd row alignments, regions, both row
// orders, reductions up to 300 times (beyond what the accelerated vertical pass takes), source and
// destination beside inaccessible pages.
TEST_P(SmallResizeKernels, EqualPlain) {
  ovra_test::Random random(11);
  const uint32_t depths[] = {8, 8, 12, 16};
  const uint32_t channel_counts[] = {1, 3, 4};
  for (int round = 0; round < 300; ++round) {
    const uint32_t depth = depths[random() % 4];
    const uint32_t channels = channel_counts[random() % 3];
    const OvraColorModel model = channels == 1   ? OVRA_MODEL_GREY
                                 : channels == 3 ? OVRA_MODEL_BGR
                                                 : OVRA_MODEL_CMYK;
    const OvraPixelFormatCode format =
        OvraMakePixelFormat(depth, channels, model, 1U << random() % 3,
                            random() % 2 == 0 ? OVRA_ROWS_TOP_DOWN : OVRA_ROWS_BOTTOM_UP);
    const bool extreme = round % 50 == 0;
    const int32_t source_width =
        ovra_test::RandomInt(random, extreme ? 310 : 1, extreme ? 400 : 90);
    const int32_t source_height = extreme ? 700 : ovra_test::RandomInt(random, 1, 90);
    const int32_t width = ovra_test::RandomInt(random, extreme ? 300 : 1, source_width);
    const int32_t height = ovra_test::RandomInt(random, (source_height + 1) / 2, source_height);
    const int32_t x = ovra_test::RandomInt(random, 0, source_width - width);
    const int32_t y = ovra_test::RandomInt(random, 0, source_height - height);
    const int32_t to_width = extreme ? 1 : ovra_test::RandomInt(random, 1, 24);
    const int32_t to_height = extreme ? 1 : ovra_test::RandomInt(random, 1, 24);
    const std::vector<float> table = Table(round % 3 == 0 ? -1.5F : -0.75F);

    ovra::PixelFormat decoded;
    ASSERT_EQ(ovra::DecodePixelFormat(format, &decoded), OVRA_OK);
    const Guard guard = round % 2 == 0 ? Guard::kAfter : Guard::kBefore;
    GuardedBuffer source(
        static_cast<size_t>(ovra::RowStride(source_width, decoded) * source_height), guard);
    if (depth == 8) {
      ovra_test::FillSamples(random, source.begin(), source.end(), 255U);
    } else {
      auto* samples = source.as<uint16_t>();
      ovra_test::FillSamples(random, samples, samples + source.size() / 2, decoded.MaxSample());
    }
    const auto size = static_cast<size_t>(ovra::RowStride(to_width, decoded) * to_height);
    GuardedBuffer expected(size, guard);
    GuardedBuffer actual(size, guard);
    const auto run = [&](GuardedBuffer& out, KernelTier tier) {
      return ovra::SmallResizeImage(source.data(), source_width, source_height, out.data(),
                                    to_width, to_height, format, x, y, width, height, table.data(),
                                    tier);
    };
    ASSERT_EQ(run(expected, KernelTier::kPlain), OVRA_OK);
    ASSERT_EQ(run(actual, GetParam()), OVRA_OK);
    ASSERT_TRUE(std::equal(expected.begin(), expected.end(), actual.begin())) << "round " << round;
  }
}

// Weights and samples at the ends of their ranges, where the halves of a weight and the signed
// samples come closest to overflow.
TEST_P(SmallResizeKernels, VerticalSumsDoNotOverflow) {
  constexpr int32_t kMaxTaps = 256;
  constexpr std::ptrdiff_t kSamples = 70;
  for (const int32_t count : {1, 2, 3, 17, 255, kMaxTaps}) {
    // Alternating signs with the greatest absolute sum that a set may have.
    std::vector<int32_t> weights(static_cast<size_t>(count), 0);
    const auto magnitude =
        static_cast<int32_t>(ovra::kMaxReductionGain * ovra::kReductionUnity / count);
    for (size_t t = 0; t < weights.size(); ++t) weights[t] = t % 2 == 0 ? magnitude : -magnitude;
    const ovra::ReductionAxis::Taps taps = {0, count, weights.data(), nullptr};
    for (const bool in_phase : {true, false}) {
      std::vector<uint16_t> rows(static_cast<size_t>(count * kSamples));
      for (size_t i = 0; i < rows.size(); ++i) {
        const bool positive = weights[i / kSamples] > 0;
        rows[i] = positive == in_phase ? 65535 : 0;
      }
      int32_t expected[kSamples];
      int32_t actual[kSamples];
      const auto run = [&](KernelTier tier, int32_t* out) {
        ovra::SelectReductionKernels<uint16_t>(tier).vertical(rows.data(), 2 * kSamples, taps,
                                                              kSamples, out);
      };
      run(KernelTier::kPlain, expected);
      run(GetParam(), actual);
      EXPECT_TRUE(std::equal(expected, expected + kSamples, actual)) << count;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Tiers, SmallResizeKernels, ovra_test::AcceleratedTiers(),
                         ovra_test::TierParamName);

TEST(SmallResizeMemory, EveryFailedAllocationIsReported) {
  const std::vector<uint8_t> source(100 * 100, 50);
  const std::vector<float> table = Table();
  std::vector<uint8_t> destination(100, 9);
  const auto run = [&] {
    return ovra::SmallResizeImage(source.data(), 100, 100, destination.data(), 10, 10, 0, 0, 0, 100,
                                  100, table.data(), ovra::DetectedTier());
  };
  int allocations = 0;
  {
    const ovra_test::FailAllocationsFrom none(1000);
    run();
    allocations = ovra_test::FailAllocationsFrom::Requested();
  }
  ASSERT_GT(allocations, 0);
  for (int number = 1; number <= allocations; ++number) {
    std::fill(destination.begin(), destination.end(), uint8_t{9});
    ovra::Status status = OVRA_OK;
    int outstanding = 0;
    {
      const ovra_test::FailAllocationsFrom failing(number);
      status = run();
      outstanding = ovra_test::FailAllocationsFrom::Outstanding();
    }
    EXPECT_EQ(status, OVRA_ERROR_NO_MEMORY) << number;
    EXPECT_EQ(outstanding, 0) << number;
    EXPECT_EQ(destination, std::vector<uint8_t>(100, 9)) << number;
  }
}

}  // namespace
