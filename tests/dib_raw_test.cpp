// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "ovra/basic.h"
#include "support/guarded_buffer.h"
#include "support/random.h"

namespace {

using ovra_test::GuardedBuffer;
using Bytes = std::vector<uint8_t>;

TEST(DibRaw, PlacesEveryByte) {
  const Bytes raw = {1, 2, 3, 4,  5,  6,    // top row: two pixels, red green blue
                     7, 8, 9, 10, 11, 12};  // bottom row
  const Bytes dib = {9, 8, 7, 12, 11, 10, 0, 0, 3, 2, 1, 6, 5, 4, 0, 0};
  Bytes to_dib(dib.size(), 0xEE);
  OvraRaw2Dib(raw.data(), to_dib.data(), 2, 2);
  EXPECT_EQ(to_dib, dib);
  Bytes to_raw(raw.size(), 0xEE);
  OvraDib2Raw(dib.data(), to_raw.data(), 2, 2);
  EXPECT_EQ(to_raw, raw);
}

// The DIB ends at its last pixel here: the padding of the last row may not exist for a reader.
TEST(DibRaw, RoundTripInsideTheBuffers) {
  ovra_test::Random random(1);
  constexpr size_t kHeight = 3;
  for (size_t width = 1; width <= 70; ++width) {
    const size_t stride = (3 * width + 3) / 4 * 4;
    GuardedBuffer raw(3 * width * kHeight);
    ovra_test::FillSamples(random, raw.begin(), raw.end(), 255U);
    GuardedBuffer dib(stride * kHeight);
    OvraRaw2Dib(raw.data(), dib.data(), static_cast<uint32_t>(width), kHeight);
    for (size_t end = stride; end <= dib.size(); end += stride) {
      for (size_t i = 3 * width; i < stride; ++i) ASSERT_EQ(dib[end - stride + i], 0) << width;
    }
    GuardedBuffer unpadded(stride * (kHeight - 1) + 3 * width);
    std::copy(dib.begin(), dib.begin() + unpadded.size(), unpadded.begin());
    GuardedBuffer back(raw.size());
    OvraDib2Raw(unpadded.data(), back.data(), static_cast<uint32_t>(width), kHeight);
    ASSERT_TRUE(std::equal(raw.begin(), raw.end(), back.begin())) << width;
  }
}

TEST(DibRaw, SizesOfZeroOrBeyondSignedDoNothing) {
  GuardedBuffer dib(0);  // no byte may be touched
  GuardedBuffer raw(0);
  const uint32_t sizes[] = {0, 0x80000000U, 0xFFFFFFFFU};
  for (const uint32_t size : sizes) {
    OvraDib2Raw(dib.data(), raw.data(), size, 5);
    OvraDib2Raw(dib.data(), raw.data(), 5, size);
    OvraRaw2Dib(raw.data(), dib.data(), size, 5);
    OvraRaw2Dib(raw.data(), dib.data(), 5, size);
  }
}

TEST(DibRaw, NullDoesNothing) {
  Bytes buffer(8, 0xEE);
  OvraDib2Raw(nullptr, buffer.data(), 1, 2);
  OvraDib2Raw(buffer.data(), nullptr, 1, 2);
  OvraRaw2Dib(nullptr, buffer.data(), 1, 2);
  OvraRaw2Dib(buffer.data(), nullptr, 1, 2);
  EXPECT_EQ(buffer, Bytes(8, 0xEE));
}

}  // namespace
