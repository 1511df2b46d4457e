// SPDX-License-Identifier: MIT
// How much memory bands, turned resizes and free trimming take. Linked to the objects, so that
// allocations can be counted.
#include <gtest/gtest.h>

#include <vector>

#include "ovra/ovra.h"
#include "support/failing_malloc.h"

namespace {

using ovra_test::FailAllocationsFrom;

constexpr int kNone = 1000000;  // no allocation fails

struct Page {
  int32_t width;
  int32_t to_width;
  OvraPixelFormatCode format;

  uint64_t Channels() const { return (format >> 4 & 15) + 1; }
  uint64_t IntermediateBytes() const { return (format & 15) == 0 ? 2 : 4; }
};

// Of a context for a page of this height, whose proportions stay.
size_t BytesOfContext(const Page& page, int32_t height) {
  const FailAllocationsFrom none(kNone);
  OvraBandResizeContext* context = nullptr;
  const auto to_height = static_cast<int32_t>(int64_t{height} * page.to_width / page.width);
  EXPECT_EQ(OvraBandResize_Init(page.width, height, page.to_width, to_height, page.format, 0, 0,
                                page.width, height, &context),
            OVRA_OK);
  const size_t bytes = FailAllocationsFrom::RequestedBytes();
  OvraBandResize_Free(&context);
  EXPECT_EQ(FailAllocationsFrom::Outstanding(), 0);
  return bytes;
}

TEST(ResampleMemory, BandsDependOnTheWidths) {
  constexpr uint64_t kKib = 1024;
  const Page pages[] = {{6000, 3000, 0x0120}, {6000, 3000, 0x0128}, {6000, 1200, 0x0120},
                        {6000, 1200, 0x0128}, {6000, 30, 0x1030},   {1000, 1, 0x0008},
                        {600, 1200, 0x0000},  {40, 8, 0x0128}};
  for (const Page& page : pages) {
    const size_t bytes = BytesOfContext(page, 10000);
    EXPECT_EQ(bytes, BytesOfContext(page, 1000000)) << page.width << " to " << page.to_width;
    const auto width = static_cast<uint64_t>(page.width);
    const auto to_width = static_cast<uint64_t>(page.to_width);
    const uint64_t taps = to_width >= width ? 4 : 8;
    const uint64_t engine = 80 * kKib +
                            (to_width + 32) * page.Channels() * taps * page.IntermediateBytes() +
                            to_width * (2 * taps + 24) + 16 * taps;
    const uint64_t reduction =
        128 * kKib + 128 * width * page.Channels() + 320 * width + 64 * to_width;
    EXPECT_LE(bytes, 100 * to_width < 33 * width ? reduction : engine)
        << page.width << " to " << page.to_width << " " << page.format;
  }
}

TEST(ResampleMemory, RunsOfBandsTakeNone) {
  const std::vector<uint8_t> band(600 * 3 * 20, 9);
  std::vector<uint8_t> out(300 * 3 * 20);
  for (const int32_t to_width : {300, 60}) {
    OvraBandResizeContext* context = nullptr;
    ASSERT_EQ(
        OvraBandResize_Init(600, 400, to_width, to_width * 2 / 3, 0x120, 0, 0, 600, 400, &context),
        OVRA_OK);
    const FailAllocationsFrom first(1);
    for (int32_t row = 0; row < 400; row += 20) {
      int32_t taken = 0;
      int32_t written = 0;
      EXPECT_EQ(OvraBandResize(band.data(), 600, 20, out.data(), to_width, 20, 0x120, row, &taken,
                               &written, context),
                OVRA_OK);
    }
    EXPECT_EQ(FailAllocationsFrom::Requested(), 0);
    OvraBandResize_Free(&context);
  }
}

TEST(ResampleMemory, TurnsAndTrimmingTakeNoPicture) {
  const std::vector<uint8_t> source(size_t{400} * 4000 * 3);
  std::vector<uint8_t> destination(source.size());
  size_t bytes[2] = {};
  for (const int k : {0, 1}) {
    const int32_t height = k == 0 ? 400 : 4000;
    const FailAllocationsFrom none(kNone);
    EXPECT_EQ(OvraResizeRotateImageROI(source.data(), 400, height, destination.data(), height / 2,
                                       200, 0x120, 0, 0, 400, height, OVRA_ROTATE_QUARTER_LEFT),
              OVRA_OK);
    bytes[k] = FailAllocationsFrom::RequestedBytes();
  }
  EXPECT_EQ(bytes[0], bytes[1]);
  const FailAllocationsFrom none(kNone);
  EXPECT_EQ(OvraFreeTrimming(source.data(), 400, 4000, destination.data(), 400, 4000, 0x120, 0, 0,
                             77, nullptr),
            OVRA_OK);
  EXPECT_LT(FailAllocationsFrom::RequestedBytes(), size_t{256} * 1024);
}

}  // namespace
