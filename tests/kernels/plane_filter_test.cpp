// SPDX-License-Identifier: MIT
#include "filter/plane_filter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <vector>

#include "support/failing_malloc.h"
#include "support/guarded_buffer.h"
#include "support/random.h"
#include "support/tiers.h"

namespace {

using ovra::KernelTier;
using ovra_test::Guard;
using ovra_test::GuardedBuffer;
using ovra_test::Random;
using ovra_test::RandomInt;
using Plane = std::vector<int16_t>;
using Weights = std::vector<int32_t>;

// The filter from its definition: both passes write transposed, so one function serves both.
Plane FilterTransposed(const Plane& in, size_t width, const Weights& weights) {
  const auto taps = static_cast<int64_t>(weights.size());
  uint32_t weight_sum = 0;
  for (const int32_t w : weights) weight_sum += static_cast<uint32_t>(w);
  const auto divisor = static_cast<int32_t>(weight_sum);
  const size_t height = in.size() / width;
  Plane out(in.size());
  for (size_t y = 0; y < height; ++y) {
    for (size_t x = 0; x < width; ++x) {
      uint32_t sum = 0;
      for (int64_t k = 0; k < taps; ++k) {
        const int64_t at = std::clamp<int64_t>(static_cast<int64_t>(x) + k - ((taps - 1) >> 1), 0,
                                               static_cast<int64_t>(width) - 1);
        const int32_t sample = in[y * width + static_cast<size_t>(at)];
        sum +=
            static_cast<uint32_t>(weights[static_cast<size_t>(k)]) * static_cast<uint32_t>(sample);
      }
      const auto total = static_cast<int32_t>(sum);
      const int32_t value = divisor <= 0 ? 0 : divisor == 128 ? total >> 7 : total / divisor;
      out[x * height + y] = static_cast<int16_t>(static_cast<uint16_t>(value));
    }
  }
  return out;
}

Plane Reference(const Plane& in, size_t width, const Weights& weights) {
  return FilterTransposed(FilterTransposed(in, width, weights), in.size() / width, weights);
}

Plane RandomPlane(Random& random, size_t size, int32_t low, int32_t high) {
  Plane plane(size);
  for (int16_t& sample : plane) sample = static_cast<int16_t>(RandomInt(random, low, high));
  return plane;
}

// As RandomPlane over all of 16 bits, half of it at the ends, where products overflow.
Plane ExtremePlane(Random& random, size_t size) {
  Plane plane(size);
  for (int16_t& sample : plane) {
    const int32_t kind = RandomInt(random, 0, 3);
    sample = static_cast<int16_t>(kind == 0   ? -32768
                                  : kind == 1 ? 32767
                                              : RandomInt(random, -32768, 32767));
  }
  return plane;
}

Plane Filter(const Plane& in, size_t width, const Weights& weights, KernelTier tier) {
  const size_t bytes = in.size() * sizeof(int16_t);
  GuardedBuffer input(bytes);
  GuardedBuffer scratch(bytes);
  GuardedBuffer output(bytes, Guard::kBefore);
  std::copy(in.begin(), in.end(), input.as<int16_t>());
  const ovra::Status status = ovra::SeparablePlaneFilter(
      input.as<int16_t>(), output.as<int16_t>(), static_cast<uint32_t>(width),
      static_cast<uint32_t>(in.size() / width), static_cast<uint32_t>(weights.size()),
      weights.data(), scratch.as<int16_t>(), tier);
  EXPECT_EQ(status, OVRA_OK);
  const auto* samples = output.as<int16_t>();
  return Plane(samples, samples + in.size());
}

const Weights kThreeTaps = {32, 64, 32};
const Weights kElevenTaps = {1, 3, 8, 15, 23, 28, 23, 15, 8, 3, 1};

// Kernels of every form, and kernels that are nearly of one.
const std::vector<Weights>& Kernels() {
  static const std::vector<Weights> kernels = {
      kThreeTaps,
      kElevenTaps,
      {32, 32, 64},                                    // 128, but not the three-tap kernel
      {128},                                           // the plane itself
      {64, 64},                                        // even: reaches one further after
      {-20, 10, 148, 10, -20},                         // 128 with negative weights
      {0x40000000, 0x40000000, 128, -0x7FFFFFFF - 1},  // 128 modulo 2^32
      {1, 2, 1},                                       // a sum that is no 128
      {1, 1, 1, 1, 1, 1, 1},
      {-3, 10},
      {30000, -29999, 6},
      {0x7FFFFFFF},
      {70000, -69000, 5},
      {1, -1},  // sums of zero and less
      {0},
      {-64, -64},
      {0x40000000, 0x40000000},  // wraps to a negative number
      {},
  };
  return kernels;
}

TEST(PlaneFilter, EqualsItsDefinition) {
  Random random(20);
  const std::pair<size_t, size_t> sizes[] = {{1, 1}, {1, 9}, {9, 1}, {2, 3}, {4, 40}, {37, 12}};
  for (const Weights& weights : Kernels()) {
    for (const auto& [width, height] : sizes) {
      for (const Plane& plane : {RandomPlane(random, width * height, -1020, 1020),
                                 ExtremePlane(random, width * height)}) {
        ASSERT_EQ(Filter(plane, width, weights, KernelTier::kPlain),
                  Reference(plane, width, weights))
            << testing::PrintToString(weights) << ' ' << width << " x " << height;
      }
    }
  }
}

TEST(PlaneFilter, RoundsDownForASumOf128AndTowardZeroForOthers) {
  const Plane plane = {-1, -1, -1, 0, 0, 0};
  EXPECT_EQ(Filter(plane, 6, kThreeTaps, KernelTier::kPlain), (Plane{-1, -1, -1, -1, 0, 0}));
  EXPECT_EQ(Filter(plane, 6, {1, 2, 1}, KernelTier::kPlain), (Plane{-1, -1, 0, 0, 0, 0}));
}

// What the sharpening of large pictures does: a few rows at a time.
TEST(PlaneFilter, RowByRowEqualsWholePlane) {
  Random random(21);
  constexpr size_t kWidth = 23;
  constexpr std::ptrdiff_t kHeight = 8;
  const Plane plane = RandomPlane(random, kWidth * kHeight, -1020, 1020);
  for (const Weights& weights : {kThreeTaps, kElevenTaps, Weights{3, 5, 7, 9}}) {
    const auto taps = static_cast<std::ptrdiff_t>(weights.size());
    ovra::PlaneFilter filter;
    ASSERT_TRUE(
        filter.Prepare(kWidth, static_cast<uint32_t>(taps), weights.data(), KernelTier::kPlain));
    ASSERT_EQ(filter.Before() + 1 + filter.After(), taps);
    Plane filtered = plane;
    for (std::ptrdiff_t y = 0; y < kHeight; ++y) {
      int16_t* const row = filtered.data() + y * std::ptrdiff_t{kWidth};
      filter.FilterRow(row, row);
    }
    Plane actual(plane.size());
    for (std::ptrdiff_t y = 0; y < kHeight; ++y) {
      std::vector<const int16_t*> rows;
      for (std::ptrdiff_t i = y - filter.Before(); i <= y + filter.After(); ++i) {
        rows.push_back(filtered.data() +
                       std::clamp<std::ptrdiff_t>(i, 0, kHeight - 1) * std::ptrdiff_t{kWidth});
      }
      filter.CombineRows(rows.data(), actual.data() + y * std::ptrdiff_t{kWidth});
    }
    EXPECT_EQ(actual, Filter(plane, kWidth, weights, KernelTier::kPlain));
  }
}

class PlaneFilterKernels : public ovra_test::AcceleratedTierTest {};

// The kernels that have an accelerated form get it: those with weights of 16 bits and a sum above 0.
TEST_P(PlaneFilterKernels, EqualPlain) {
  Random random(22);
  const std::pair<size_t, ovra::CombineRowsKernel*> plain_forms[] = {
      {0, &ovra::CombineRowsShiftPlain},
      {1, &ovra::CombineRowsShiftPlain},
      {5, &ovra::CombineRowsShiftPlain},
      {7, &ovra::CombineRowsDividePlain},
      {10, &ovra::CombineRowsDividePlain}};
  for (const auto& [index, plain_form] : plain_forms) {
    const Weights& weights = Kernels()[index];
    ovra::PlaneKernel kernel = {weights.data(), weights.data(),
                                static_cast<std::ptrdiff_t>(weights.size()),
                                std::accumulate(weights.begin(), weights.end(), 0)};
    EXPECT_NE(ovra::SelectCombineRows(kernel, GetParam()), plain_form);
  }
  for (const Weights& weights : Kernels()) {
    for (size_t width = 1; width <= 40; ++width) {
      const auto height = static_cast<size_t>(RandomInt(random, 1, 3));
      for (const Plane& plane : {RandomPlane(random, width * height, -1020, 1020),
                                 ExtremePlane(random, width * height)}) {
        ASSERT_EQ(Filter(plane, width, weights, GetParam()),
                  Filter(plane, width, weights, KernelTier::kPlain))
            << testing::PrintToString(weights) << ' ' << width << " x " << height;
      }
    }
  }
}

// Quotients just below and just above integers, with divisors from one end to the other.
TEST_P(PlaneFilterKernels, DivideAsPlain) {
  Random random(23);
  constexpr size_t kWidth = 64;
  for (int round = 0; round < 300; ++round) {
    const int32_t divisor = RandomInt(random, 1, 1 << RandomInt(random, 1, 16));
    Weights weights;  // large weights of both signs that sum to the divisor
    int32_t rest = divisor;
    while (rest != static_cast<int16_t>(rest) || weights.size() < 3) {
      weights.push_back(RandomInt(random, -32768, 32767));
      rest -= weights.back();
    }
    weights.push_back(rest);
    const Plane plane = ExtremePlane(random, kWidth);
    ASSERT_EQ(Filter(plane, kWidth, weights, GetParam()),
              Filter(plane, kWidth, weights, KernelTier::kPlain))
        << testing::PrintToString(weights);
  }
}

INSTANTIATE_TEST_SUITE_P(Tiers, PlaneFilterKernels, ovra_test::AcceleratedTiers(),
                         ovra_test::TierParamName);

TEST(PlaneFilter, FailingAllocationsAnswerNoMemory) {
  Plane plane(6, 5);
  Plane scratch(6);
  const auto run = [&] {
    return ovra::SeparablePlaneFilter(plane.data(), plane.data(), 3, 2, 3, kThreeTaps.data(),
                                      scratch.data(), KernelTier::kPlain);
  };
  ovra::Status status = OVRA_ERROR_NO_MEMORY;
  int failures = 0;
  int leaked = 0;
  for (int n = 1; status == OVRA_ERROR_NO_MEMORY; ++n) {
    const ovra_test::FailAllocationsFrom failing(n);
    status = run();
    leaked += ovra_test::FailAllocationsFrom::Outstanding();
    if (status == OVRA_ERROR_NO_MEMORY) ++failures;
  }
  EXPECT_EQ(status, OVRA_OK);
  EXPECT_GT(failures, 0);
  EXPECT_EQ(leaked, 0);
  EXPECT_EQ(plane, Plane(6, 5));
}

}  // namespace
