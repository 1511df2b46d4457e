// SPDX-License-Identifier: MIT
#include "resample/resize/resize.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "ovra/resample.h"
#include "resample/kernel_table.h"
#include "resample/resize/kernels.h"
#include "support/failing_malloc.h"
#include "support/guarded_buffer.h"
#include "support/random.h"
#include "support/resize_reference.h"
#include "support/tiers.h"

namespace {

using ovra::KernelTier;
using ovra_test::Guard;
using ovra_test::GuardedBuffer;
using ovra_test::Random;
using ovra_test::RandomInt;
using ovra_test::ResizeCase;

using Table = std::vector<float>;

ovra::PixelFormatCode FormatOf(const ResizeCase& c) {
  const OvraColorModel model = c.channels == 1   ? OVRA_MODEL_GREY
                               : c.channels == 3 ? OVRA_MODEL_RGB
                                                 : OVRA_MODEL_CMYK;
  return OvraMakePixelFormat(static_cast<uint32_t>(c.depth_bits), static_cast<uint32_t>(c.channels),
                             model, static_cast<uint32_t>(c.alignment),
                             c.bottom_up ? OVRA_ROWS_BOTTOM_UP : OVRA_ROWS_TOP_DOWN);
}

ovra::Status Resize(const ResizeCase& c, const float* table, const uint8_t* source,
                    uint8_t* destination, KernelTier tier) {
  const ovra::ResizeShape shape = {{c.source_width, c.source_height},
                                   {c.destination_width, c.destination_height},
                                   {c.x, c.y, c.width, c.height}};
  return ovra::ResizeImageCoreVar(
      {source, destination, FormatOf(c), shape}, {c.horizontal_factor, c.vertical_factor},
      {table, {c.horizontal_stretch, c.horizontal_taps}, {c.vertical_stretch, c.vertical_taps}},
      tier);
}

Table CubicTable(float a = -0.75F) {
  Table table(ovra::kKernelTableEntries);
  ovra::CalcCubicSpline(a, table.data());
  return table;
}

// Kernels of the library, and ones whose weights overflow every fixed-point sum.
Table RandomTable(Random& random) {
  if (RandomInt(random, 0, 2) != 0) {
    return CubicTable(0.01F * static_cast<float>(RandomInt(random, -200, 100)));
  }
  Table table(ovra::kKernelTableEntries);
  for (float& value : table) value = static_cast<float>(RandomInt(random, -1000, 1000));
  if (RandomInt(random, 0, 3) == 0) table[100] = std::numeric_limits<float>::quiet_NaN();
  return table;
}

double RandomFactor(Random& random) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  constexpr double kExtremes[] = {1e-300, -1e-300, 1e-5, -1e-5,     1e9,        -1e9,
                                  1.0,    -0.5,    -2.0, kInfinity, -kInfinity, 5e-324};
  const int32_t kind = RandomInt(random, 0, 35);
  if (kind < 12) return kExtremes[kind];
  return 0.33 + 0.001 * RandomInt(random, 0, kind < 24 ? 700 : 2500);
}

int32_t RandomTaps(Random& random) {
  constexpr int32_t kTaps[] = {4, 5, 6, 7, 8, 16};
  const int32_t kind = RandomInt(random, 0, 7);
  return kind < 6 ? kTaps[kind] : RandomInt(random, 4, 24);
}

ResizeCase RandomCase(Random& random) {
  constexpr int32_t kMaxSide = 60;
  constexpr int32_t kChannels[] = {1, 3, 4};
  ResizeCase c = {};
  c.horizontal_taps = RandomTaps(random);
  c.vertical_taps = RandomTaps(random);
  c.source_width = RandomInt(random, c.horizontal_taps, kMaxSide);
  c.source_height = RandomInt(random, c.vertical_taps, kMaxSide / 2);
  c.destination_width = RandomInt(random, c.horizontal_taps, kMaxSide);
  c.destination_height = RandomInt(random, c.vertical_taps, kMaxSide / 2);
  c.width = RandomInt(random, c.horizontal_taps, c.source_width);
  c.height = RandomInt(random, c.vertical_taps, c.source_height);
  c.x = RandomInt(random, -10, c.source_width - c.width);
  c.y = RandomInt(random, -10, c.source_height - c.height);
  c.depth_bits = std::max(8, RandomInt(random, 1, 16));
  c.channels = kChannels[RandomInt(random, 0, 2)];
  c.alignment = 1 << RandomInt(random, 0, 2);
  c.bottom_up = RandomInt(random, 0, 1) == 1;
  c.horizontal_factor = RandomFactor(random);
  c.vertical_factor = RandomFactor(random);
  c.horizontal_stretch = 0.01F * static_cast<float>(RandomInt(random, 50, 250));
  c.vertical_stretch = 0.01F * static_cast<float>(RandomInt(random, 50, 250));
  return c;
}

// Fills samples up to their depth's maximum.
void FillImage(Random& random, int32_t depth_bits, GuardedBuffer* image) {
  const uint32_t max = (1U << depth_bits) - 1;
  if (depth_bits == 8) {
    ovra_test::FillSamples(random, image->begin(), image->end(), max);
  } else {
    auto* samples = image->as<uint16_t>();
    ovra_test::FillSamples(random, samples, samples + image->size() / 2, max);
  }
}

class ResizeEngine : public ovra_test::AcceleratedTierTest {};
using ResizeKernels = ResizeEngine;

// Both guards: a row may be the first or the last thing in memory.
TEST_P(ResizeEngine, EqualsTheDefinition) {
  Random random(5);
  for (int trial = 0; trial < 250; ++trial) {
    const ResizeCase c = RandomCase(random);
    const Table table = RandomTable(random);
    const Guard guard = trial % 2 == 0 ? Guard::kAfter : Guard::kBefore;
    GuardedBuffer source(c.ImageBytes(c.source_width, c.source_height), guard);
    FillImage(random, c.depth_bits, &source);
    const size_t destination_bytes = c.ImageBytes(c.destination_width, c.destination_height);
    GuardedBuffer destination(destination_bytes, guard);
    std::vector<uint8_t> expected(destination_bytes, GuardedBuffer::kFill);
    ovra_test::ResizeReference(c, table.data(), source.data()).Write(expected.data());
    ASSERT_EQ(Resize(c, table.data(), source.data(), destination.data(), GetParam()), OVRA_OK);
    ASSERT_TRUE(std::equal(expected.begin(), expected.end(), destination.begin()))
        << "trial " << trial << " depth " << c.depth_bits << " channels " << c.channels << " taps "
        << c.horizontal_taps << " " << c.vertical_taps << " factors " << c.horizontal_factor << " "
        << c.vertical_factor;
  }
}

INSTANTIATE_TEST_SUITE_P(Tiers, ResizeEngine,
                         testing::Values(KernelTier::kPlain, KernelTier::kSse, KernelTier::kAvx2),
                         ovra_test::TierParamName);

template <class Sample>
void ExpectOtherThanPlain(KernelTier tier) {
  const auto& plain = ovra::kResizePlain.Of<Sample>();
  const auto& kernels =
      ovra::ForTier(tier, ovra::kResizePlain, ovra::kResizeSse, ovra::kResizeAvx2).Of<Sample>();
  for (const int32_t taps : {4, 5, 6, 7, 8, 9, 16, 17}) {
    EXPECT_NE(kernels.Vertical(taps), plain.Vertical(taps)) << taps;
    for (const uint32_t channels : {1U, 3U, 4U}) {
      EXPECT_NE(kernels.Horizontal(taps, channels).run, plain.Horizontal(taps, channels).run);
    }
  }
}

TEST_P(ResizeKernels, AreOtherThanPlain) {
  ExpectOtherThanPlain<uint8_t>(GetParam());
  ExpectOtherThanPlain<uint16_t>(GetParam());
}

INSTANTIATE_TEST_SUITE_P(Tiers, ResizeKernels, ovra_test::AcceleratedTiers(),
                         ovra_test::TierParamName);

constexpr ResizeCase kSmallCase = {20, 20, 30,    30,  0,   0,    20,   20, 8,
                                   3,  1,  false, 1.5, 1.5, 1.0F, 1.0F, 4,  4};
constexpr int kWorkBlocks = 4;

TEST(ResizeMemory, EveryFailingBlockIsReportedAndNothingIsWritten) {
  const Table table = CubicTable();
  const std::vector<uint8_t> source(20 * 20 * 6, 100);
  for (const int32_t depth : {8, 12}) {
    ResizeCase c = kSmallCase;
    c.depth_bits = depth;
    for (int number = 1; number <= kWorkBlocks + 1; ++number) {
      std::vector<uint8_t> destination(30 * 30 * 6, 1);
      ovra::Status status = -1;
      int outstanding = 0;
      {
        const ovra_test::FailAllocationsFrom failure(number);
        status = Resize(c, table.data(), source.data(), destination.data(), KernelTier::kPlain);
        outstanding = failure.Outstanding();
      }
      EXPECT_EQ(outstanding, 0);
      EXPECT_EQ(status, number <= kWorkBlocks ? OVRA_ERROR_NO_MEMORY : OVRA_OK) << number;
      const bool untouched = std::count(destination.begin(), destination.end(), 1) ==
                             static_cast<std::ptrdiff_t>(destination.size());
      EXPECT_EQ(untouched, number <= kWorkBlocks) << number;
    }
  }
}

TEST(ResizeMemory, TheTableComesBeforeTheSizesAndAfterTheFormat) {
  const auto failing = [](ovra::PixelFormatCode format) {
    const ovra_test::FailAllocationsFrom failure(1);
    return OvraResizeImage(nullptr, 0, 0, nullptr, 0, 0, format);
  };
  EXPECT_EQ(failing(0), OVRA_ERROR_NO_MEMORY);
  EXPECT_EQ(failing(0x40), OVRA_ERROR_FORMAT_CHANNELS);
  ovra::Status status = -1;
  {
    const ovra_test::FailAllocationsFrom failure(1);
    status = OvraResizeImageVAR(nullptr, 0, 0, nullptr, 0, 0, 0, 0.1, 0.1);
  }
  EXPECT_EQ(status, OVRA_ERROR_NO_MEMORY);
}

// Two arrays a row: the third and the fourth of them belong to the second row.
TEST(ResizeMemory, TheGenericVerticalKernelLeavesOutRowsWithoutMemory) {
  const Table table = CubicTable();
  const std::vector<uint8_t> source(20 * 20 * 3, 100);
  ResizeCase c = kSmallCase;
  c.vertical_taps = 9;
  for (const int failing : {3, 4}) {
    std::vector<uint8_t> destination(30 * 30 * 3, 1);
    ovra::Status status = -1;
    {
      const ovra_test::FailAllocation failure(kWorkBlocks + failing);
      status = Resize(c, table.data(), source.data(), destination.data(), KernelTier::kPlain);
    }
    EXPECT_EQ(status, OVRA_OK);
    for (size_t row = 0; row < 30; ++row) {
      const uint8_t* const pixels = destination.data() + 90 * row;
      EXPECT_EQ(std::count(pixels, pixels + 90, 1), row == 1 ? 90 : 0) << row;
    }
  }
}

}  // namespace
