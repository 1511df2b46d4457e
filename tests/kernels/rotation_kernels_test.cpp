// SPDX-License-Identifier: MIT
#include "geometry/rotation_kernels.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "core/pixel_format.h"
#include "support/guarded_buffer.h"
#include "support/random.h"
#include "support/tiers.h"

namespace {

using ovra::KernelTier;
using ovra::Orientation;
using ovra_test::Guard;
using ovra_test::GuardedBuffer;
using ovra_test::RandomInt;

constexpr Orientation kAll[] = {
    Orientation::kCopy,         Orientation::kQuarterLeft, Orientation::kHalfTurn,
    Orientation::kQuarterRight, Orientation::kMirror,      Orientation::kAntiTranspose,
    Orientation::kFlipVertical, Orientation::kTranspose,
};

bool Transposes(Orientation orientation) {
  return orientation == Orientation::kQuarterLeft || orientation == Orientation::kQuarterRight ||
         orientation == Orientation::kTranspose || orientation == Orientation::kAntiTranspose;
}

// Both images begin or both end beside an inaccessible page; the source ends with its last pixel,
// without padding, so that starts and ends stand at every alignment. Two channels, which the export
// refuses, are covered here alone.
void ExpectEqualsPlain(KernelTier tier, Orientation orientation, int32_t sample_bytes,
                       int32_t channels, int32_t alignment, int32_t width, int32_t height,
                       ovra_test::Random& random) {
  const auto stride = [&](int32_t pixels, int32_t row_alignment) {
    return static_cast<size_t>(ovra::RowStride(pixels, channels, 8 * sample_bytes, row_alignment));
  };
  const bool transposes = Transposes(orientation);
  const auto rows = static_cast<size_t>(height);
  const auto out_rows = static_cast<size_t>(transposes ? width : height);
  const Guard guard = random() % 2 == 0 ? Guard::kAfter : Guard::kBefore;
  GuardedBuffer source(stride(width, alignment) * (rows - 1) + stride(width, 1), guard);
  ovra_test::FillSamples(random, source.begin(), source.end(), 255U);
  const size_t out_bytes = stride(transposes ? height : width, alignment) * out_rows;
  std::vector<uint8_t> expected(out_bytes, 0x11);
  GuardedBuffer actual(out_bytes, guard);
  ovra::SelectOrient(orientation, sample_bytes, KernelTier::kPlain)(
      source.data(), expected.data(), width, height, channels, alignment);
  ovra::SelectOrient(orientation, sample_bytes, tier)(source.data(), actual.data(), width, height,
                                                      channels, alignment);
  ASSERT_TRUE(std::equal(expected.begin(), expected.end(), actual.begin()))
      << "orientation " << static_cast<int>(orientation) << ", " << width << " x " << height
      << ", sample bytes " << sample_bytes << ", channels " << channels << ", alignment "
      << alignment;
}

class RotationKernels : public ovra_test::AcceleratedTierTest {};

TEST_P(RotationKernels, EqualPlain) {
  ovra_test::Random random(32);
  for (const Orientation orientation : kAll) {
    for (int32_t sample_bytes = 1; sample_bytes <= 2; ++sample_bytes) {
      ASSERT_NE(ovra::SelectOrient(orientation, sample_bytes, KernelTier::kPlain),
                ovra::SelectOrient(orientation, sample_bytes, GetParam()));
      for (int32_t channels = 1; channels <= 4; ++channels) {
        const auto check = [&](int32_t width, int32_t height) {
          ExpectEqualsPlain(GetParam(), orientation, sample_bytes, channels, 1 << random() % 3,
                            width, height, random);
        };
        for (int32_t size = 1; size <= 70; ++size) {
          const int32_t other = RandomInt(random, 1, 140);
          ASSERT_NO_FATAL_FAILURE(check(size, other));
          ASSERT_NO_FATAL_FAILURE(check(other, size));
        }
        // More rows than a block of any tier takes.
        ASSERT_NO_FATAL_FAILURE(check(RandomInt(random, 1, 70), RandomInt(random, 257, 600)));
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Tiers, RotationKernels, ovra_test::AcceleratedTiers(),
                         ovra_test::TierParamName);

// Not to be reached through the export: no pixel is moved, the padding is cleared all the same.
TEST(RotationKernelsPlain, OtherChannelCountsClearThePaddingOnly) {
  const uint8_t source[4] = {1, 2, 3, 4};
  uint8_t destination[8] = {7, 7, 7, 7, 7, 7, 7, 7};
  const uint8_t expected[8] = {7, 7, 7, 7, 7, 0, 0, 0};
  for (const Orientation orientation : {Orientation::kMirror, Orientation::kTranspose}) {
    EXPECT_EQ(
        ovra::SelectOrient(orientation, 1, KernelTier::kPlain)(source, destination, 1, 1, 5, 4),
        OVRA_OK);
    EXPECT_TRUE(std::equal(std::begin(expected), std::end(expected), destination));
  }
}

}  // namespace
