// SPDX-License-Identifier: MIT
// The pattern that the context families of colour conversion share.
#include "color/handle.h"

#include <gtest/gtest.h>

#include <vector>

#include "color/conversion.h"
#include "support/failing_malloc.h"

namespace {

using ovra::ContextPtr;
using ovra::Status;

struct Context {
  int value = 0;
  ovra::WorkMemory<uint8_t> table;
};

Status MakeWithTable(ContextPtr<Context>* context) {
  *context = ovra::MakeContext<Context>();
  if (*context == nullptr || !(*context)->table.Allocate(100)) return OVRA_ERROR_NO_MEMORY;
  (*context)->value = 42;
  return OVRA_OK;
}

TEST(ColorHandle, IsClearedFirstAndFilledOnlyOnSuccess) {
  uintptr_t handle = 7;
  EXPECT_EQ(ovra::CreateHandle<Context>(nullptr, OVRA_ERROR_CUBE_NULL, MakeWithTable),
            OVRA_ERROR_CUBE_NULL);
  const Status refused =
      ovra::CreateHandle<Context>(&handle, OVRA_ERROR_CUBE_NULL, [&](ContextPtr<Context>* made) {
        EXPECT_EQ(handle, 0U);
        *made = ovra::MakeContext<Context>();
        return Status{OVRA_ERROR_CUBE_CHANNELS};
      });
  EXPECT_EQ(refused, OVRA_ERROR_CUBE_CHANNELS);
  EXPECT_EQ(handle, 0U);
  ASSERT_EQ(ovra::CreateHandle<Context>(&handle, OVRA_ERROR_CUBE_NULL, MakeWithTable), OVRA_OK);
  EXPECT_EQ(ovra::ContextOf<Context>(handle)->value, 42);
  ovra::ReleaseHandle<Context>(&handle);
  EXPECT_EQ(handle, 0U);
  ovra::ReleaseHandle<Context>(&handle);  // nothing is there any more
}

TEST(ColorHandle, LeaksNothingWhenMemoryRunsOut) {
  for (int failing = 1; failing <= 3; ++failing) {
    uintptr_t handle = 7;
    Status status = OVRA_OK;
    int outstanding = 0;
    {
      const ovra_test::FailAllocationsFrom fail(failing);
      status = ovra::CreateHandle<Context>(&handle, OVRA_ERROR_CUBE_NULL, MakeWithTable);
      ovra::ReleaseHandle<Context>(&handle);
      outstanding = ovra_test::FailAllocationsFrom::Outstanding();
    }
    EXPECT_EQ(status, failing <= 2 ? OVRA_ERROR_NO_MEMORY : OVRA_OK) << failing;
    EXPECT_EQ(outstanding, 0) << failing;
  }
}

// Each case has everything wrong that is checked later.
TEST(ColorFormats, AreDecodedBothThenJudgedInOrder) {
  const ovra::FormatRules input = {ovra::NumberSet::Of(3),
                                   1001,
                                   ovra::NumberSet::Between(8, 12),
                                   1002,
                                   ovra::IsRgbBgrOrYcc,
                                   1003,
                                   1004};
  const ovra::FormatRules output = {ovra::NumberSet::Of(3, 4),
                                    2001,
                                    ovra::NumberSet::Between(8, 14),
                                    2002,
                                    ovra::IsFourChannelCmyk,
                                    2003,
                                    2004};
  struct Case {
    ovra::FormatPair codes;
    Status expected;
  };
  const Case cases[] = {
      {{0x000004FF, 0x000004FF}, OVRA_ERROR_FORMAT_CHANNELS},
      {{0x0001041F, 0x000004FF}, OVRA_ERROR_FORMAT_DEPTH},
      {{0x00010418, 0x00011FF8}, OVRA_ERROR_FORMAT_CHANNELS},
      {{0x00010418, 0x00010418}, 1001},
      {{0x00010425, 0x00010418}, 1002},
      {{0x00010424, 0x00010418}, 1003},
      {{0x00010324, 0x00010418}, 1004},
      {{0x00000324, 0x00010418}, 2001},
      {{0x00000224, 0x00010437}, 2002},
      {{0x00000124, 0x00011036}, 2003},
      {{0x00000120, 0x00011226}, 2003},
      {{0x00000120, 0x00011236}, 2004},
      {{0x00000120, 0x00001236}, OVRA_OK},
  };
  for (const Case& c : cases) {
    ovra::DecodedFormatPair formats;
    EXPECT_EQ(ovra::AcceptFormats(c.codes, input, output, &formats), c.expected)
        << std::hex << c.codes.input << " " << c.codes.output;
  }
}

TEST(ColorImages, RowsKeepTheInputsAlignmentAndNegativeSizesHaveNone) {
  ovra::DecodedFormatPair formats;
  formats.input = {3, 8, OVRA_MODEL_RGB, 0, 4, 0};
  formats.output = {4, 10, OVRA_MODEL_CMYK, 0, 1, 0};
  const uint8_t source[64] = {};
  uint8_t destination[64] = {};
  std::vector<std::ptrdiff_t> offsets;
  for (const auto& [width, height] : {std::pair(3, 3), {-3, 3}, {3, -3}}) {
    ovra::ForEachRow({source, destination, width, height}, formats,
                     [&](const uint8_t* in, uint8_t* out) {
                       offsets.push_back(in - source);
                       offsets.push_back(out - destination);
                     });
  }
  EXPECT_EQ(offsets, (std::vector<std::ptrdiff_t>{0, 0, 12, 24, 24, 48}));
}

}  // namespace
