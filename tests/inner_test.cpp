// SPDX-License-Identifier: MIT
// What no export shows, or only where sizes meet: the processor's tiers, limits of work memory, decoders
// of single fields, the last column of a vector.
#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "core/cpu.h"
#include "core/pixel_format.h"
#include "core/work_memory.h"
#include "ovra/resample.h"
#include "support/forced_tier.h"

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

// Vector forms write three channels as four. Rows of this width leave one spare sample in their place
// of the ring, and where the first column alone reaches beyond the source, a whole step ends with the
// last one.
TEST(Resize, VectorFormsWriteNoSampleTooMany) {
  constexpr int32_t kWidth = 53, kHeight = 20, kSourceWidth = 130, kSourceHeight = 60;
  constexpr OvraPixelFormatCode kRgb =
      OvraMakePixelFormat(8, 3, OVRA_MODEL_RGB, 1, OVRA_ROWS_TOP_DOWN);
  std::vector<uint8_t> source(3 * kSourceWidth * kSourceHeight);
  for (size_t i = 0; i < source.size(); ++i) source[i] = static_cast<uint8_t>(128 + i * i % 128);
  for (const int32_t x : {1, 2}) {
    std::vector<uint8_t> plain;
    for (const ovra::KernelTier tier : ovra_test::AllTiers()) {
      const ovra_test::ForcedTier forced(tier);
      std::vector<uint8_t> resized(3 * kWidth * kHeight);
      ASSERT_EQ(OvraResizeImageROI(source.data(), kSourceWidth, kSourceHeight, resized.data(),
                                   kWidth, kHeight, kRgb, x, 8, 2 * kWidth, 2 * kHeight),
                OVRA_OK);
      if (plain.empty()) plain = resized;
      EXPECT_EQ(resized, plain) << ovra_test::TierName(tier) << " at " << x;
    }
  }
}

}  // namespace
