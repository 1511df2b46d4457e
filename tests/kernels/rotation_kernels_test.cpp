// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "geometry/rotation/rotation.h"
#include "ovra/geometry.h"
#include "support/guarded_buffer.h"
#include "support/random.h"
#include "support/tiers.h"

namespace {

using ovra::KernelTier;
using ovra_test::Guard;
using ovra_test::GuardedBuffer;
using ovra_test::RandomInt;

struct PixelKind {
  uint32_t depth_bits;
  uint32_t channels;
  OvraColorModel model;
};

// One for each size of a pixel.
constexpr PixelKind kKinds[] = {
    {8, 1, OVRA_MODEL_GREY}, {16, 1, OVRA_MODEL_GREY}, {8, 3, OVRA_MODEL_RGB},
    {8, 4, OVRA_MODEL_RGBA}, {16, 3, OVRA_MODEL_RGB},  {16, 4, OVRA_MODEL_RGBA},
};

// Both images begin or both end beside an inaccessible page; the source ends with its last pixel,
// without padding, so that starts and ends stand at every alignment.
void ExpectEqualsPlain(KernelTier tier, int32_t mode, const PixelKind& kind, int32_t width,
                       int32_t height, ovra_test::Random& random) {
  const OvraPixelFormatCode code = OvraMakePixelFormat(kind.depth_bits, kind.channels, kind.model,
                                                       1U << random() % 3, OVRA_ROWS_TOP_DOWN);
  ovra::PixelFormat format;
  ASSERT_EQ(ovra::ValidateRotationFormat(code, &format), OVRA_OK);
  const auto stride = [&](int32_t pixels) {
    return static_cast<size_t>(ovra::RowStride(pixels, format));
  };
  const size_t pixel_bytes = kind.channels * (kind.depth_bits > 8 ? 2 : 1);
  const size_t source_bytes =
      stride(width) * static_cast<size_t>(height - 1) + static_cast<size_t>(width) * pixel_bytes;
  const size_t out_bytes = mode % 2 == 0 ? stride(width) * static_cast<size_t>(height)
                                         : stride(height) * static_cast<size_t>(width);
  const Guard guard = random() % 2 == 0 ? Guard::kAfter : Guard::kBefore;
  GuardedBuffer source(source_bytes, guard);
  ovra_test::FillSamples(random, source.begin(), source.end(), 255U);
  std::vector<uint8_t> expected(out_bytes, 0x11);
  GuardedBuffer actual(out_bytes, guard);
  ovra::RotateImage(source.data(), expected.data(), width, height, code, mode, KernelTier::kPlain);
  ovra::RotateImage(source.data(), actual.data(), width, height, code, mode, tier);
  ASSERT_TRUE(std::equal(expected.begin(), expected.end(), actual.begin()))
      << "mode " << mode << ", " << width << " x " << height << ", depth " << kind.depth_bits
      << ", channels " << kind.channels << ", alignment " << format.alignment_bytes;
}

class RotationKernels : public ovra_test::AcceleratedTierTest {};

TEST_P(RotationKernels, EqualPlain) {
  ovra_test::Random random(32);
  for (int32_t mode = OVRA_ROTATE_NONE; mode <= OVRA_ROTATE_TRANSPOSE; ++mode) {
    for (const PixelKind& kind : kKinds) {
      const auto check = [&](int32_t width, int32_t height) {
        ExpectEqualsPlain(GetParam(), mode, kind, width, height, random);
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

INSTANTIATE_TEST_SUITE_P(Tiers, RotationKernels, ovra_test::AcceleratedTiers(),
                         ovra_test::TierParamName);

// As an operation writes its result turned: a few rows at a time, in their own stride.
TEST(OrientRows, WritesTheRowsOfAPictureInRunsOfAnyLength) {
  constexpr int32_t kWidth = 37;
  constexpr int32_t kHeight = 83;
  constexpr std::ptrdiff_t kRowsStride = 3 * kWidth;
  constexpr OvraPixelFormatCode kCode =
      OvraMakePixelFormat(8, 3, OVRA_MODEL_RGB, 1, OVRA_ROWS_TOP_DOWN);
  ovra_test::Random random(33);
  std::vector<uint8_t> source(kRowsStride * kHeight);
  ovra_test::FillSamples(random, source.data(), source.data() + source.size(), 255U);
  const ovra::RotationKernels& kernels = ovra::RotationKernelsOf(KernelTier::kPlain);
  for (int32_t mode = OVRA_ROTATE_NONE; mode <= OVRA_ROTATE_TRANSPOSE; ++mode) {
    const std::ptrdiff_t columns = mode % 2 == 0 ? kWidth : kHeight;
    const std::ptrdiff_t packed = 3 * columns;
    const std::ptrdiff_t stride = packed + 5;
    const std::ptrdiff_t rows = kWidth + kHeight - columns;
    std::vector<uint8_t> expected(static_cast<size_t>(packed * rows));
    ovra::RotateImage(source.data(), expected.data(), kWidth, kHeight, kCode, mode,
                      KernelTier::kPlain);
    std::vector<uint8_t> actual(static_cast<size_t>(stride * rows), 0x11);
    const ovra::OrientedImage image = {actual.data(), stride,  ovra::OrientationOf(mode, false),
                                       kWidth,        kHeight, 3};
    for (std::ptrdiff_t first = 0, count = 0; first < kHeight; first += count) {
      count = std::min<std::ptrdiff_t>(RandomInt(random, 1, 20), kHeight - first);
      ovra::OrientRows(source.data() + first * kRowsStride, kRowsStride, first, count, image,
                       kernels);
    }
    for (std::ptrdiff_t y = 0; y < rows; ++y) {
      const uint8_t* const row = actual.data() + y * stride;
      ASSERT_TRUE(std::equal(row, row + packed, expected.data() + y * packed)) << mode;
      ASSERT_EQ(std::count(row + packed, row + stride, 0), 5) << mode;
    }
  }
}

}  // namespace
