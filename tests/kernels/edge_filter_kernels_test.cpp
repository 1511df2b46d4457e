// SPDX-License-Identifier: MIT
#include "filter/edge_filter_kernels.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "filter/edge_classifier.h"
#include "filter/edge_classifier_kernels.h"
#include "filter/edge_filter.h"
#include "support/failing_malloc.h"
#include "support/guarded_buffer.h"
#include "support/random.h"
#include "support/tiers.h"

namespace {

using ovra::EdgeTable;
using ovra::KernelTier;
using ovra_test::GuardedBuffer;
using ovra_test::Random;
using ovra_test::RandomInt;

constexpr OvraPixelFormatCode kRgb = 0x0120;

// Noise of `amplitude` about a colour, or over all samples.
void FillNoise(Random& random, GuardedBuffer& buffer, int32_t amplitude) {
  if (amplitude > 100) {
    ovra_test::FillSamples(random, buffer.begin(), buffer.end(), 255U);
    return;
  }
  for (uint8_t& sample : buffer) {
    sample = static_cast<uint8_t>(RandomInt(random, 128 - amplitude, 128 + amplitude));
  }
}

class EdgeFilterKernels : public ovra_test::AcceleratedTierTest {};

TEST_P(EdgeFilterKernels, EqualPlain) {
  EXPECT_NE(ovra::SelectFilterEdgeRow(GetParam()), &ovra::FilterEdgeRowPlain);
  EXPECT_NE(ovra::SelectSplitEdgeRow(GetParam()), &ovra::SplitEdgeRowPlain);
  Random random(32);
  for (uint32_t width = 1; width <= 70; ++width) {
    const auto height = static_cast<uint32_t>(RandomInt(random, 1, 4));
    const size_t bytes = size_t{3} * width * height;
    GuardedBuffer source(bytes);
    for (const int32_t amplitude : {10, 25, 200}) {
      FillNoise(random, source, amplitude);
      for (const EdgeTable* table : {&ovra::kNarrowEdgeTable, &ovra::kWideEdgeTable}) {
        std::vector<uint8_t> expected(bytes);
        GuardedBuffer actual(bytes);
        ASSERT_EQ(ovra::FilterEdges(source.data(), expected.data(), width, height, *table,
                                    KernelTier::kPlain),
                  OVRA_OK);
        ASSERT_EQ(
            ovra::FilterEdges(source.data(), actual.data(), width, height, *table, GetParam()),
            OVRA_OK);
        ASSERT_TRUE(std::equal(expected.begin(), expected.end(), actual.begin()))
            << width << " x " << height << ", amplitude " << amplitude;
      }
    }
  }
}

// Work rows of any contents: each neighbour has samples of its own.
class Neighbourhood {
 public:
  explicit Neighbourhood(std::ptrdiff_t width)
      : width_(width),
        stride_(width + ovra::kEdgeSlack),
        samples_(ovra::kEdgeNeighbours, std::vector<int16_t>(static_cast<size_t>(3 * stride_))) {}

  static constexpr int32_t kCentre = ovra::kEdgeNeighbours / 2;

  void Set(int32_t neighbour, std::ptrdiff_t x, std::ptrdiff_t channel, int32_t sample) {
    samples_[static_cast<size_t>(neighbour)][static_cast<size_t>(x + channel * stride_)] =
        static_cast<int16_t>(ovra::kEdgeSampleScale * sample);
  }

  std::vector<uint8_t> Filter(const EdgeTable& table, KernelTier tier) const {
    ovra::EdgeNeighbours neighbours;
    neighbours.plane_stride = stride_;
    for (size_t n = 0; n < samples_.size(); ++n) neighbours.samples[n] = samples_[n].data();
    std::vector<uint8_t> output(static_cast<size_t>(3 * width_));
    ovra::SelectFilterEdgeRow(tier)(neighbours, table, output.data(), width_);
    return output;
  }

 private:
  std::ptrdiff_t width_;
  std::ptrdiff_t stride_;
  std::vector<std::vector<int16_t>> samples_;
};

// All neighbours of pixel x are at distance x, spread over the channels and signs by chance.
TEST_P(EdgeFilterKernels, EveryDistance) {
  Random random(33);
  Neighbourhood neighbourhood(EdgeTable::kDistances);
  for (int32_t x = 0; x < EdgeTable::kDistances; ++x) {
    int32_t rest = x;
    for (int32_t c = 0; c < 3; ++c) {
      const int32_t least = std::max(0, rest - (2 - c) * 255);
      const int32_t difference = RandomInt(random, least, std::min(255, rest));
      rest -= difference;
      const int32_t low = RandomInt(random, 0, 255 - difference);
      const bool rising = RandomInt(random, 0, 1) != 0;
      for (int32_t n = 0; n < ovra::kEdgeNeighbours; ++n) {
        const bool high = rising != (n == Neighbourhood::kCentre);
        neighbourhood.Set(n, x, c, high ? low + difference : low);
      }
    }
  }
  for (const EdgeTable* table : {&ovra::kNarrowEdgeTable, &ovra::kWideEdgeTable}) {
    EXPECT_EQ(neighbourhood.Filter(*table, KernelTier::kPlain),
              neighbourhood.Filter(*table, GetParam()));
  }
}

// The neighbours of pixel x add up to x - kMaxSum, as far as full weights let them.
TEST_P(EdgeFilterKernels, EveryQuotient) {
  constexpr int32_t kMaxSum = 48 * 33;
  constexpr int32_t kCentreSample = 128;
  constexpr std::ptrdiff_t kWidth = 2 * kMaxSum + 1;
  Neighbourhood neighbourhood(kWidth);
  for (int32_t x = 0; x < kWidth; ++x) {
    int32_t rest = x - kMaxSum;
    int32_t neighbours_left = 48;
    for (int32_t n = 0; n < ovra::kEdgeNeighbours; ++n) {
      if (n == Neighbourhood::kCentre) {
        neighbourhood.Set(n, x, 0, kCentreSample);
        continue;
      }
      const int32_t difference = rest / neighbours_left--;
      rest -= difference;
      neighbourhood.Set(n, x, 0, kCentreSample + difference);
    }
    ASSERT_EQ(rest, 0);
  }
  const std::vector<uint8_t> actual = neighbourhood.Filter(ovra::kWideEdgeTable, GetParam());
  for (int32_t x = 0; x < kWidth; ++x) {
    ASSERT_EQ(actual[static_cast<size_t>(3 * x)], kCentreSample + (x - kMaxSum) / 49) << x;
  }
}

TEST_P(EdgeFilterKernels, ClassifierKernelsEqualPlain) {
  ovra::ColorDifferenceKernel* const color_difference = ovra::SelectColorDifference(GetParam());
  ovra::CountMiddlingKernel* const count_middling = ovra::SelectCountMiddling(GetParam());
  EXPECT_NE(color_difference, &ovra::ColorDifferencePlain);
  EXPECT_NE(count_middling, &ovra::CountMiddlingPlain);
  Random random(34);
  for (size_t width = 1; width <= 70; ++width) {
    const auto pixels = static_cast<std::ptrdiff_t>(width);
    GuardedBuffer source(3 * width);
    FillNoise(random, source, 200);
    GuardedBuffer first(2 * width);
    GuardedBuffer second(2 * width);
    std::vector<int16_t> expected_first(width);
    std::vector<int16_t> expected_second(width);
    ovra::ColorDifferencePlain(source.data(), expected_first.data(), expected_second.data(),
                               pixels);
    color_difference(source.data(), first.as<int16_t>(), second.as<int16_t>(), pixels);
    ASSERT_TRUE(std::equal(expected_first.begin(), expected_first.end(), first.as<int16_t>()));
    ASSERT_TRUE(std::equal(expected_second.begin(), expected_second.end(), second.as<int16_t>()));
    for (size_t x = 0; x < width; ++x) {
      second.as<int16_t>()[x] =
          static_cast<int16_t>(expected_first[x] + RandomInt(random, -22, 22));
    }
    ASSERT_EQ(ovra::CountMiddlingPlain(first.as<int16_t>(), second.as<int16_t>(), pixels),
              count_middling(first.as<int16_t>(), second.as<int16_t>(), pixels));
  }
}

INSTANTIATE_TEST_SUITE_P(Tiers, EdgeFilterKernels, ovra_test::AcceleratedTiers(),
                         ovra_test::TierParamName);

// A failing allocation of the classifier selects the narrow table; one of the filter is reported,
// and nothing is written then.
TEST(EdgeFilterMemory, FailingAllocations) {
  constexpr uint32_t kSide = 20;
  Random random(35);
  GuardedBuffer source(size_t{3} * kSide * kSide);
  FillNoise(random, source, 25);
  ASSERT_TRUE(ovra::HasMiddlingDetail(source.data(), kSide, kSide, KernelTier::kPlain));
  std::vector<uint8_t> narrow(source.size());
  ASSERT_EQ(ovra::FilterEdges(source.data(), narrow.data(), kSide, kSide, ovra::kNarrowEdgeTable,
                              KernelTier::kPlain),
            OVRA_OK);
  const std::vector<uint8_t> untouched(source.size(), 7);
  const auto run = [&](std::vector<uint8_t>& destination) {
    return ovra::EdgeFilterImage(source.data(), destination.data(), kSide, kSide, kRgb,
                                 KernelTier::kPlain);
  };
  int requested = 0;
  {
    std::vector<uint8_t> destination = untouched;
    const ovra_test::FailAllocationsFrom none(1000);
    run(destination);
    requested = ovra_test::FailAllocationsFrom::Requested();
  }
  ASSERT_GT(requested, 2);
  for (int n = 1; n <= requested; ++n) {
    std::vector<uint8_t> destination = untouched;
    ovra::Status status = OVRA_OK;
    {
      const ovra_test::FailAllocation failing(n);
      status = run(destination);
    }
    const bool last = n == requested;
    EXPECT_EQ(status, last ? OVRA_ERROR_NO_MEMORY : OVRA_OK) << n;
    EXPECT_EQ(destination, last ? untouched : narrow) << n;
  }
  int leaked = -1;
  ovra::Status status = OVRA_OK;
  std::vector<uint8_t> destination = untouched;
  {
    const ovra_test::FailAllocationsFrom all(1);
    status = run(destination);
    leaked = ovra_test::FailAllocationsFrom::Outstanding();
  }
  EXPECT_EQ(status, OVRA_ERROR_NO_MEMORY);
  EXPECT_EQ(leaked, 0);
}

}  // namespace
