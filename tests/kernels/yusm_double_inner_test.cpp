// SPDX-License-Identifier: MIT
// Both forms and all tiers of the double unsharp mask against its definition, and failing
// allocations.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <utility>
#include <vector>

#include "filter/yusm_double.h"
#include "filter/yusm_double_kernels.h"
#include "support/failing_malloc.h"
#include "support/guarded_buffer.h"
#include "support/random.h"
#include "support/tiers.h"

namespace {

using ovra::KernelTier;
using ovra::YUsmDoubleForm;
using ovra_test::GuardedBuffer;
using ovra_test::Random;
using ovra_test::RandomInt;

constexpr OvraPixelFormatCode kRgb8 = 0x120;
constexpr OvraPixelFormatCode kYcc8 = 0x320;

struct Band {
  std::vector<int32_t> weights;
  float amount = 1.0F;
  std::array<int16_t, OVRA_LEVEL_TABLE_SIZE> level;
  std::array<int16_t, OVRA_DIFFERENCE_TABLE_SIZE> difference;

  ovra::YUsmBand Parameters() const {
    return {static_cast<uint32_t>(weights.size()), weights.data(), amount, level.data(),
            difference.data()};
  }
};

std::vector<int32_t> RandomWeights(Random& random) {
  const int32_t kind = RandomInt(random, 0, 6);
  if (kind == 0) return {32, 64, 32};
  if (kind == 1) return {1, 3, 8, 15, 23, 28, 23, 15, 8, 3, 1};
  std::vector<int32_t> weights(static_cast<size_t>(RandomInt(random, 0, 30)));
  const int32_t bound = kind == 6 ? INT32_MAX : 40;
  for (int32_t& weight : weights) weight = RandomInt(random, kind <= 4 ? 0 : -bound, bound);
  // Some sum to 128 exactly.
  if (kind <= 3 && !weights.empty()) {
    weights[0] = 128 - std::accumulate(weights.begin() + 1, weights.end(), 0);
  }
  return weights;
}

Band RandomBand(Random& random) {
  Band band;
  band.weights = RandomWeights(random);
  band.amount = static_cast<float>(RandomInt(random, -8, 40)) / 8;
  const int32_t bound = RandomInt(random, 0, 3) == 0 ? INT16_MAX : 300;
  for (int16_t& entry : band.level) {
    entry = static_cast<int16_t>(RandomInt(random, -bound / 4, bound));
  }
  for (int16_t& entry : band.difference) {
    entry = static_cast<int16_t>(RandomInt(random, -bound / 4, bound));
  }
  return band;
}

struct Mask {
  uint32_t width;
  uint32_t height;
  OvraPixelFormatCode format;
  Band coarse;
  Band fine;
};

Mask RandomMask(Random& random) {
  Mask mask = {0, 0, RandomInt(random, 0, 1) == 0 ? kRgb8 : kYcc8, RandomBand(random),
               RandomBand(random)};
  const auto longest = static_cast<int32_t>(
      std::max({mask.coarse.weights.size(), mask.fine.weights.size(), size_t{1}}));
  mask.width = static_cast<uint32_t>(longest + std::max(0, RandomInt(random, -10, 50)));
  mask.height = static_cast<uint32_t>(longest + std::max(0, RandomInt(random, -5, 20)));
  return mask;
}

std::vector<uint8_t> RandomImage(const Mask& mask, Random& random) {
  std::vector<uint8_t> image(size_t{3} * mask.width * mask.height);
  ovra_test::FillSamples(random, image.data(), image.data() + image.size(), 255U);
  return image;
}

int32_t Wrap32(int64_t value) {
  return static_cast<int32_t>(static_cast<uint32_t>(static_cast<uint64_t>(value)));
}

using Plane = std::vector<std::vector<int32_t>>;  // rows

// Filters along rows and transposes.
Plane Pass(const Plane& input, const std::vector<int32_t>& weights) {
  const auto width = static_cast<int64_t>(input[0].size());
  const auto taps = static_cast<int64_t>(weights.size());
  int64_t total = 0;
  for (const int32_t weight : weights) total += weight;
  const int32_t divisor = Wrap32(total);
  Plane output(input[0].size(), std::vector<int32_t>(input.size()));
  for (size_t row = 0; row < input.size(); ++row) {
    for (int64_t x = 0; x < width; ++x) {
      uint32_t sum = 0;
      for (int64_t k = 0; k < taps; ++k) {
        const int64_t at = std::clamp<int64_t>(x + k - ((taps - 1) >> 1), 0, width - 1);
        sum += static_cast<uint32_t>(
            Wrap32(int64_t{weights[static_cast<size_t>(k)]} * input[row][static_cast<size_t>(at)]));
      }
      const auto value = static_cast<int32_t>(sum);
      output[static_cast<size_t>(x)][row] =
          divisor == 128 ? static_cast<int16_t>(value >> 7)
                         : static_cast<int16_t>(divisor > 0 ? value / divisor : 0);
    }
  }
  return output;
}

int32_t ScaledBand(const Band& band, int32_t luminance, int32_t difference) {
  const int32_t entry = std::clamp(difference + 1024, 0, 2047);
  const auto level = static_cast<int32_t>(band.level.at(static_cast<size_t>(luminance)) *
                                          (double{band.amount} * 1024.0));
  const int32_t strength =
      Wrap32(int64_t{band.difference.at(static_cast<size_t>(entry))} * level) >> 8;
  return Wrap32(int64_t{strength} * difference) >> 16;
}

std::vector<uint8_t> Reference(const Mask& mask, const std::vector<uint8_t>& source) {
  Plane luminance(mask.height, std::vector<int32_t>(mask.width));
  for (size_t i = 0; i < size_t{mask.width} * mask.height; ++i) {
    const uint8_t* const c = &source[3 * i];
    luminance[i / mask.width][i % mask.width] =
        mask.format == kRgb8 ? ((c[0] + 2 * c[1]) * 19 + 7 * c[2]) >> 4 : c[0] * 4;
  }
  const Plane coarse = Pass(Pass(luminance, mask.coarse.weights), mask.coarse.weights);
  const Plane fine = Pass(Pass(luminance, mask.fine.weights), mask.fine.weights);
  std::vector<uint8_t> result = source;
  for (size_t i = 0; i < size_t{mask.width} * mask.height; ++i) {
    const size_t row = i / mask.width;
    const size_t x = i % mask.width;
    const int32_t y = luminance[row][x];
    const int32_t b1 = coarse[row][x];
    const int32_t b2 = fine[row][x];
    const int32_t delta =
        (b1 - y + ScaledBand(mask.coarse, y, b2 - b1) + ScaledBand(mask.fine, y, y - b2)) >> 2;
    for (size_t channel = 0; channel < (mask.format == kRgb8 ? 3U : 1U); ++channel) {
      result[3 * i + channel] =
          static_cast<uint8_t>(std::clamp(source[3 * i + channel] + delta, 0, 255));
    }
  }
  return result;
}

OvraStatus Filter(const Mask& mask, const uint8_t* source, uint8_t* destination,
                  YUsmDoubleForm form, KernelTier tier) {
  return ovra::FilterYUsmDouble(source, destination, mask.width, mask.height, mask.format,
                                {mask.coarse.Parameters(), mask.fine.Parameters()}, form, tier);
}

class YUsmDoubleForms : public testing::TestWithParam<KernelTier> {
 protected:
  void SetUp() override {
    if (GetParam() > ovra::DetectedTier()) GTEST_SKIP();
  }
};

TEST_P(YUsmDoubleForms, EqualTheDefinition) {
  Random random(61);
  for (int i = 0; i < 60; ++i) {
    const Mask mask = RandomMask(random);
    const std::vector<uint8_t> source = RandomImage(mask, random);
    const std::vector<uint8_t> expected = Reference(mask, source);
    for (const YUsmDoubleForm form : {YUsmDoubleForm::kWholePlanes, YUsmDoubleForm::kStreaming}) {
      GuardedBuffer in(source.size());
      GuardedBuffer out(source.size(), ovra_test::Guard::kBefore);
      std::copy(source.begin(), source.end(), in.begin());
      ASSERT_EQ(Filter(mask, in.data(), out.data(), form, GetParam()), OVRA_OK);
      ASSERT_TRUE(std::equal(expected.begin(), expected.end(), out.begin()))
          << mask.width << " x " << mask.height << ", " << mask.coarse.weights.size() << " and "
          << mask.fine.weights.size() << " taps";
      ASSERT_EQ(Filter(mask, in.data(), in.data(), form, GetParam()), OVRA_OK);
      ASSERT_TRUE(std::equal(expected.begin(), expected.end(), in.begin())) << "in place";
    }
  }
}

// Long and high pictures beyond the block sizes of any kernel.
TEST_P(YUsmDoubleForms, AgreeOnStronglyDifferentShapes) {
  Random random(62);
  const std::pair<uint32_t, uint32_t> shapes[] = {{3000, 26},   {26, 3000},   {300, 200},
                                                  {2139, 1536}, {2139, 1537}, {1537, 2139}};
  for (const auto& [width, height] : shapes) {
    Mask mask = RandomMask(random);
    mask.coarse.weights.resize(25, 5);
    // Of unit sum for every other shape: the two variants of the filter.
    if (width % 2 == 0) mask.coarse.weights = {1, 3, 8, 15, 23, 28, 23, 15, 8, 3, 1};
    mask.fine.weights = {8, 32, 48, 32, 8};
    mask.width = width;
    mask.height = height;
    const std::vector<uint8_t> source = RandomImage(mask, random);
    std::vector<uint8_t> whole(source.size());
    std::vector<uint8_t> streamed(source.size());
    ASSERT_EQ(Filter(mask, source.data(), whole.data(), YUsmDoubleForm::kWholePlanes, GetParam()),
              OVRA_OK);
    ASSERT_EQ(Filter(mask, source.data(), streamed.data(), YUsmDoubleForm::kStreaming, GetParam()),
              OVRA_OK);
    EXPECT_TRUE(whole == streamed) << width << " x " << height;
    EXPECT_FALSE(whole == source);
  }
}

INSTANTIATE_TEST_SUITE_P(Tiers, YUsmDoubleForms,
                         testing::Values(KernelTier::kPlain, KernelTier::kSse, KernelTier::kAvx2),
                         ovra_test::TierParamName);

TEST(YUsmDouble, FormFollowsTheSize) {
  const auto is_whole = [](uint32_t width, uint32_t height) {
    return ovra::ChooseYUsmDoubleForm(width, height) == YUsmDoubleForm::kWholePlanes &&
           ovra::ChooseYUsmDoubleForm(height, width) == YUsmDoubleForm::kWholePlanes;
  };
  EXPECT_TRUE(is_whole(2139, 1536));
  EXPECT_TRUE(is_whole(1, 2139));
  EXPECT_FALSE(is_whole(2139, 1537));
  EXPECT_FALSE(is_whole(2140, 1));
  EXPECT_FALSE(is_whole(1537, 1537));
}

// Luminance, blurs and tables of any values.
TEST(YUsmDouble, Avx2DeltasEqualPlain) {
  ovra::FindDoubleDeltasRow* const find = ovra::SelectFindDoubleDeltas(KernelTier::kAvx2);
  ASSERT_NE(find, ovra::SelectFindDoubleDeltas(KernelTier::kPlain));
  if (ovra::DetectedTier() < KernelTier::kAvx2) GTEST_SKIP();
  Random random(63);
  GuardedBuffer table_bytes(sizeof(ovra::YUsmDoubleTables));
  ovra_test::FillSamples(random, table_bytes.begin(), table_bytes.end(), 255U);
  const auto& tables = *table_bytes.as<ovra::YUsmDoubleTables>();
  for (std::ptrdiff_t columns = 0; columns <= 70; ++columns) {
    const size_t bytes = 2 * static_cast<size_t>(columns);
    GuardedBuffer rows[5] = {GuardedBuffer(bytes), GuardedBuffer(bytes), GuardedBuffer(bytes),
                             GuardedBuffer(bytes), GuardedBuffer(bytes)};
    for (std::ptrdiff_t x = 0; x < columns; ++x) {
      rows[0].as<int16_t>()[x] = static_cast<int16_t>(RandomInt(random, 0, 1023));
    }
    for (GuardedBuffer* const row : {&rows[1], &rows[2]}) {
      ovra_test::FillSamples(random, row->begin(), row->end(), 255U);
    }
    const auto run = [&](ovra::FindDoubleDeltasRow* kernel, GuardedBuffer& deltas) {
      kernel(rows[0].as<int16_t>(), rows[1].as<int16_t>(), rows[2].as<int16_t>(),
             deltas.as<int16_t>(), columns, tables);
    };
    run(ovra::FindDoubleDeltasPlain, rows[3]);
    run(find, rows[4]);
    ASSERT_TRUE(std::equal(rows[3].begin(), rows[3].end(), rows[4].begin())) << columns;
  }
}

TEST(YUsmDouble, ExtremeAmountsAreDefined) {
  Random random(64);
  Mask mask = RandomMask(random);
  const std::vector<uint8_t> source = RandomImage(mask, random);
  for (const float amount : {3e38F, -3e38F, HUGE_VALF, -HUGE_VALF, NAN}) {
    mask.coarse.amount = amount;
    mask.fine.amount = -amount;
    std::vector<uint8_t> out(source.size());
    EXPECT_EQ(
        Filter(mask, source.data(), out.data(), YUsmDoubleForm::kStreaming, KernelTier::kPlain),
        OVRA_OK);
  }
}

TEST(YUsmDouble, EveryFailingAllocationIsAnswered) {
  Random random(65);
  Mask mask = RandomMask(random);
  mask.coarse.weights = {32, 64, 32};
  const std::vector<uint8_t> source = RandomImage(mask, random);
  for (const YUsmDoubleForm form : {YUsmDoubleForm::kWholePlanes, YUsmDoubleForm::kStreaming}) {
    OvraStatus status = OVRA_ERROR_NO_MEMORY;
    int number = 1;
    for (; status == OVRA_ERROR_NO_MEMORY && number < 50; ++number) {
      std::vector<uint8_t> out(source.size(), 3);
      int outstanding = -1;
      {
        const ovra_test::FailAllocationsFrom failing(number);
        status = Filter(mask, source.data(), out.data(), form, KernelTier::kPlain);
        outstanding = ovra_test::FailAllocationsFrom::Outstanding();
      }
      EXPECT_EQ(outstanding, 0);
      EXPECT_EQ(out == std::vector<uint8_t>(source.size(), 3), status != OVRA_OK);
    }
    EXPECT_EQ(status, OVRA_OK);
    EXPECT_GT(number, 5);
  }
  auto* context = reinterpret_cast<OvraYUsmDoubleContext*>(16);
  OvraStatus status = OVRA_OK;
  {
    const ovra_test::FailAllocationsFrom failing(1);
    const ovra::YUsmBand band = mask.coarse.Parameters();
    status = OvraYUsmDouble_Init(kRgb8, 1, band.weights, 1, band.weights, 1.0F, band.level_table,
                                 band.difference_table, 1.0F, band.level_table,
                                 band.difference_table, &context);
  }
  EXPECT_EQ(status, OVRA_ERROR_NO_MEMORY);
  EXPECT_EQ(context, nullptr);
}

}  // namespace
