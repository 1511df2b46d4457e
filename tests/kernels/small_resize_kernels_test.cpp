// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "core/rows.h"
#include "resample/kernel_table.h"
#include "resample/small_resize/kernels.h"
#include "resample/small_resize/small_resize.h"
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

template <class Sample>
const ovra::ReductionKernelsOf<Sample>& KernelsOf(KernelTier tier) {
  return ovra::ForTier(tier, ovra::kReductionPlain, ovra::kReductionSse, ovra::kReductionAvx2)
      .Of<Sample>();
}

TEST_P(SmallResizeKernels, AreOtherFunctionsThanThePlainOnes) {
  EXPECT_NE(KernelsOf<uint8_t>(KernelTier::kPlain).weigh_rows,
            KernelsOf<uint8_t>(GetParam()).weigh_rows);
  EXPECT_NE(KernelsOf<uint16_t>(KernelTier::kPlain).weigh_columns[1],
            KernelsOf<uint16_t>(GetParam()).weigh_columns[1]);
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
      return ovra::SmallResizeImage(
          {source.data(),
           out.data(),
           format,
           {{source_width, source_height}, {to_width, to_height}, {x, y, width, height}}},
          table.data(), tier);
    };
    ASSERT_EQ(run(expected, KernelTier::kPlain), OVRA_OK);
    ASSERT_EQ(run(actual, GetParam()), OVRA_OK);
    ASSERT_TRUE(std::equal(expected.begin(), expected.end(), actual.begin())) << "round " << round;
  }
}

// Weights and samples at the ends of their ranges, where the halves of a weight and the signed
// samples come closest to overflow; at once, and in two parts.
TEST_P(SmallResizeKernels, VerticalSumsDoNotOverflow) {
  constexpr std::ptrdiff_t kSamples = 70;
  for (const int32_t count : {2, 3, 17, 254, 255, 256, 509, 1000}) {
    // Alternating signs with the greatest absolute sum that a set may have.
    std::vector<int32_t> weights(static_cast<size_t>(count), 0);
    const auto magnitude =
        static_cast<int32_t>(ovra::kMaxReductionGain * ovra::kReductionUnity / count);
    for (size_t t = 0; t < weights.size(); ++t) weights[t] = t % 2 == 0 ? magnitude : -magnitude;
    const int32_t weight_sum = count % 2 * magnitude;
    for (const bool in_phase : {true, false}) {
      std::vector<uint16_t> samples(static_cast<size_t>(count * kSamples));
      std::vector<const uint16_t*> rows;
      for (size_t t = 0; t < weights.size(); ++t) {
        rows.push_back(samples.data() + t * kSamples);
        const bool positive = weights[t] > 0;
        std::fill_n(samples.data() + t * kSamples, kSamples,
                    static_cast<uint16_t>(positive == in_phase ? 65535 : 0));
      }
      int32_t expected[kSamples];
      KernelsOf<uint16_t>(KernelTier::kPlain)
          .weigh_rows({rows.data(), weights.data(), count}, 0, kSamples, nullptr, weight_sum,
                      expected);
      for (const int32_t summed : {0, count / 2}) {
        int64_t sums[kSamples + ovra::kSpareReductionSums];
        int32_t actual[kSamples];
        const auto& kernels = KernelsOf<uint16_t>(GetParam());
        kernels.sum_rows({rows.data(), weights.data(), summed}, 0, kSamples, true, sums);
        kernels.weigh_rows({rows.data() + summed, weights.data() + summed, count - summed}, 0,
                           kSamples, sums, weight_sum, actual);
        EXPECT_TRUE(std::equal(expected, expected + kSamples, actual)) << count << " " << summed;
      }
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
    return ovra::SmallResizeImage(
        {source.data(), destination.data(), 0, {{100, 100}, {10, 10}, {0, 0, 100, 100}}},
        table.data(), ovra::DetectedTier());
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
