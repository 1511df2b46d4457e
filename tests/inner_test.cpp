// SPDX-License-Identifier: MIT
// What no export shows, or only where sizes meet: the processor's tiers, limits of work memory, decoders
// of single fields, the last column of a vector.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <iterator>
#include <limits>
#include <random>
#include <vector>

#include "core/cpu.h"
#include "core/dib_raw/kernels.h"
#include "core/pixel_format.h"
#include "core/row_copy/kernels.h"
#include "core/work_memory.h"
#include "geometry/rotation/rotation.h"
#include "ovra/filter.h"
#include "ovra/resample.h"
#include "resample/kernel_table.h"
#include "support/forced_tier.h"
#include "support/guarded_buffer.h"

namespace {

// Tests of accelerated kernels have nothing to run where detection finds less than there is, so it
// must not miss a tier.
TEST(Cpu, DetectsWhatTheProcessorHas) {
  __builtin_cpu_init();
  const auto expected = __builtin_cpu_supports("avx2")     ? ovra::KernelTier::kAvx2
                        : __builtin_cpu_supports("sse4.1") ? ovra::KernelTier::kSse
                                                           : ovra::KernelTier::kPlain;
  EXPECT_EQ(ovra::DetectedTier(), expected);
  EXPECT_TRUE(ovra::CpuHasMmx());
  EXPECT_TRUE(ovra::CpuHasSse());
}

TEST(WorkMemory, StartsAtACacheLineAndRefusesSizesThatDoNotFit) {
  for (const uint64_t size : {1U, 63U, 4096U, 300000U}) {
    ovra::WorkMemory<uint32_t> memory;
    ASSERT_TRUE(memory.Allocate(size));
    EXPECT_EQ(reinterpret_cast<uintptr_t>(memory.data()) % ovra::WorkMemory<uint32_t>::kAlignment,
              0U);
    EXPECT_FALSE(memory.Allocate(std::numeric_limits<size_t>::max() / sizeof(uint32_t)));
    EXPECT_FALSE(memory.Allocate(std::numeric_limits<uint64_t>::max()));
    EXPECT_EQ(memory.data(), nullptr);
  }
}

TEST(ResizeKernelTable, CompilersMakeWhatCallsMake) {
  std::vector<float> table(ovra::kKernelTableEntries);
  ASSERT_EQ(ovra::CalcCubicSpline(ovra::kResizeKernelParameter, table.data()), OVRA_OK);
  EXPECT_EQ(std::memcmp(table.data(), ovra::ResizeKernelTable(), sizeof(float) * table.size()), 0);
}

// Of every field all 16 or 256 values, alone in an otherwise valid word.
TEST(PixelFormat, AcceptsExactlyTheKnownValues) {
  const struct {
    uint32_t shift, values;
    bool (*is_known)(uint32_t value);
    ovra::Status refused;
  } fields[] = {
      {0, 16, [](uint32_t value) { return value <= 9; }, OVRA_ERROR_FORMAT_DEPTH},
      {4, 16, [](uint32_t value) { return value <= 3; }, OVRA_ERROR_FORMAT_CHANNELS},
      {8, 256, [](uint32_t value) { return value <= 7 || (value >= 0x10 && value <= 0x12); },
       OVRA_ERROR_FORMAT_COLOR_MODEL},
      {16, 16, [](uint32_t value) { return value <= 2; }, OVRA_ERROR_FORMAT_ARRANGEMENT},
      {20, 16, [](uint32_t value) { return value <= 2; }, OVRA_ERROR_FORMAT_ROW_ALIGNMENT},
      {24, 16, [](uint32_t value) { return value <= 1; }, OVRA_ERROR_FORMAT_ROW_ORDER},
      {28, 16, [](uint32_t) { return true; }, OVRA_OK},
  };
  for (const auto& field : fields) {
    for (uint32_t value = 0; value < field.values; ++value) {
      ovra::PixelFormat format;
      EXPECT_EQ(ovra::DecodePixelFormat(value << field.shift, &format),
                field.is_known(value) ? OVRA_OK : field.refused)
          << field.shift << ' ' << value;
    }
  }
}

TEST(PixelFormat, DecodersWriteRefusedFieldsOnlyWhereTheyStayInPlace) {
  constexpr uint32_t kUntouched = 77;
  const struct {
    ovra::Status (*decode)(ovra::PixelFormatCode, uint32_t*);
    uint32_t decoded;  // of 0xF1221234
    uint32_t refused;  // what is written for 0xFFFFFFFF
  } cases[] = {
      {ovra::DecodeChannelCount, 4, kUntouched}, {ovra::DecodeSampleDepth, 12, kUntouched},
      {ovra::DecodeColourModel, 0x1200, 0xFF00}, {ovra::DecodeArrangement, 0x20000, 0xF0000},
      {ovra::DecodeRowAlignment, 4, kUntouched}, {ovra::DecodeRowOrder, 0x1000000, 0xF000000},
  };
  for (const auto& c : cases) {
    uint32_t out = kUntouched;
    EXPECT_NE(c.decode(0xFFFFFFFF, &out), OVRA_OK);
    EXPECT_EQ(out, c.refused);
    EXPECT_EQ(c.decode(0xF1221234, &out), OVRA_OK);
    EXPECT_EQ(out, c.decoded);
    EXPECT_EQ(c.decode(0, nullptr), OVRA_ERROR_NULL_DECODER_OUTPUT);
  }
}

// Only pictures larger than any that the conformance test draws are written round the cache. Rows
// begin anywhere in a cache line, and end beside memory that may not be touched.
TEST(RowMoves, RoundTheCacheAreThoseOfThePlainKernels) {
  using ovra::KernelTier;
  using ovra_test::GuardedBuffer;
  constexpr ptrdiff_t kRows = 9;
  // Mirrors of pixels of so many bytes, a copy of bytes, and the exchange of red and blue.
  constexpr int kCopy = -1, kSwap = -3, kKinds[] = {1, 2, 3, 4, 6, 8, kCopy, kSwap};
  const auto kernel = [](int kind, KernelTier tier) {
    if (kind == kCopy) return ovra::RowCopyKernelsOf(tier).copy;
    return kind == kSwap
               ? ForTier(tier, ovra::kDibRawPlain, ovra::kDibRawSse, ovra::kDibRawAvx2)
                     .swap_red_blue
               : ForTier(tier, ovra::kRotationPlain, ovra::kRotationSse, ovra::kRotationAvx2)
                     .reverse[kind];
  };
  std::mt19937 random(1);
  for (int round = 0; round < 500; ++round) {
    const int kind = kKinds[random() % std::size(kKinds)];
    const int pixel_bytes = std::abs(kind);
    const ptrdiff_t pixels = 1 + static_cast<ptrdiff_t>(random() % 400);
    const auto padding = static_cast<ptrdiff_t>(random() % 4);
    const ptrdiff_t bytes = pixels * pixel_bytes;
    SCOPED_TRACE(testing::Message() << pixels << " pixels of " << pixel_bytes);
    GuardedBuffer source(static_cast<size_t>(kRows * bytes));
    for (uint8_t& byte : source) byte = static_cast<uint8_t>(random());
    const auto written = [&](const auto& write) {
      GuardedBuffer to(static_cast<size_t>(kRows * (bytes + padding) + 1));
      write(to.data() + 1);
      return std::vector<uint8_t>(to.begin(), to.end());
    };
    const auto moved = [&](KernelTier tier, bool streaming) {
      return written([&](uint8_t* to) {
        kernel(kind, tier)(
            {source.data(), bytes, to, bytes + padding, pixels, kRows, padding, streaming});
      });
    };
    const ovra::PixelPattern pattern(source.data(), pixel_bytes);
    for (const KernelTier tier : ovra_test::AllTiers()) {
      ASSERT_EQ(moved(tier, true), moved(KernelTier::kPlain, false)) << ovra_test::TierName(tier);
      const std::vector<uint8_t> filled = written([&](uint8_t* to) {
        ovra::RowCopyKernelsOf(tier).fill({to, bytes, pixels, kRows, pattern, true});
      });
      ASSERT_EQ(filled[0], GuardedBuffer::kFill);
      for (ptrdiff_t i = 0; i < kRows * bytes; ++i) {
        ASSERT_EQ(filled[static_cast<size_t>(i + 1)], source[static_cast<size_t>(i % pixel_bytes)]);
      }
    }
  }
}

// Blocks as they are in pictures of any width, of widths of a power of two, and written round the cache.
TEST(Transposition, OfBlocksIsThatOfThePlainKernels) {
  using ovra_test::GuardedBuffer;
  constexpr int kPixelBytes[] = {1, 2, 3, 4, 6, 8};
  constexpr ptrdiff_t kGaps[] = {1, 32, 512, 4096};  // the strides are multiples
  std::mt19937 random(1);
  for (int round = 0; round < 400; ++round) {
    const int pixel_bytes = kPixelBytes[random() % std::size(kPixelBytes)];
    const auto draw = [&random](unsigned count) { return 1 + ptrdiff_t(random() % count); };
    const ptrdiff_t rows = round % 40 == 0 ? 256 + draw(50) : draw(70), columns = draw(80);
    const auto stride = [&](ptrdiff_t pixels) {
      const ptrdiff_t gap = kGaps[random() % std::size(kGaps)];
      return (pixels * pixel_bytes + gap - 1) / gap * gap;
    };
    const ptrdiff_t from_stride = stride(columns), to_stride = stride(rows);
    SCOPED_TRACE(testing::Message() << columns << " x " << rows << " of " << pixel_bytes << ' '
                                    << from_stride << ' ' << to_stride);
    GuardedBuffer source(static_cast<size_t>((rows - 1) * from_stride + columns * pixel_bytes));
    for (uint8_t& byte : source) byte = static_cast<uint8_t>(random());
    const auto transposed = [&](ovra::KernelTier tier, bool streaming) {
      GuardedBuffer to(static_cast<size_t>((columns - 1) * to_stride + rows * pixel_bytes));
      ovra::RotationKernelsOf(tier).transpose_block[pixel_bytes](
          source.data(), from_stride, to.data(), to_stride, rows, columns, streaming);
      return std::vector<uint8_t>(to.begin(), to.end());
    };
    const std::vector<uint8_t> expected = transposed(ovra::KernelTier::kPlain, false);
    for (const ovra::KernelTier tier : ovra_test::AllTiers()) {
      ASSERT_EQ(transposed(tier, round % 2 == 0), expected) << ovra_test::TierName(tier);
    }
  }
}

// Curves that are the same everywhere have forms of their own, which random curves hardly meet.
TEST(YUsmDouble, EvenCurvesAreThoseOfThePlainKernels) {
  constexpr uint32_t kWidth = 67, kHeight = 12;
  constexpr int32_t kCoarse[] = {20, 44, 44, 20}, kFine[] = {1, 2, 2};
  std::mt19937 random(1);
  std::vector<uint8_t> source(size_t{3} * kWidth * kHeight);
  for (uint8_t& sample : source) sample = random() % 2 * 255;
  for (const float amount : {0.0F, 0.4F, 1.0F, 3.7F, -2.3F, 9.0F, 1e6F}) {
    for (const int16_t entry : {128, 77, -32768}) {
      const std::vector<int16_t> level(OVRA_LEVEL_TABLE_SIZE, entry);
      const std::vector<int16_t> difference(OVRA_DIFFERENCE_TABLE_SIZE, 128);
      SCOPED_TRACE(testing::Message() << amount << ' ' << entry);
      ovra_test::ExpectTiersAgree([&] {
        std::vector<uint8_t> sharpened(source.size());
        EXPECT_EQ(
            OvraYUsmDoubleSingleStep(source.data(), sharpened.data(), kWidth, kHeight, 0x120, 4,
                                     kCoarse, 3, kFine, amount, level.data(), difference.data(),
                                     1 - amount, level.data(), difference.data()),
            OVRA_OK);
        return sharpened;
      });
    }
  }
}

}  // namespace
