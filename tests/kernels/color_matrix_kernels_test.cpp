// SPDX-License-Identifier: MIT
#include "color/color_matrix_kernels.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "color/color_matrix.h"
#include "support/failing_malloc.h"
#include "support/guarded_buffer.h"
#include "support/random.h"
#include "support/tiers.h"

namespace {

using ovra::DoubleMatrix;
using ovra::FixedMatrix;
using ovra::KernelTier;
using ovra_test::Guard;
using ovra_test::GuardedBuffer;
using ovra_test::Random;

// Weights at the limits of 16 and of 32 bits, where the accelerated forms change their products.
int32_t RandomWeight(Random& random, bool narrow) {
  static constexpr int32_t kSpecial[] = {0,     512,    -32768,    32767,
                                         32768, -32769, INT32_MIN, INT32_MAX};
  if (random() % 3 == 0) return kSpecial[random() % (narrow ? 4 : 8)];
  return ovra_test::RandomInt(random, narrow ? -32768 : INT32_MIN, narrow ? 32767 : INT32_MAX);
}

void Randomize(Random& random, bool narrow, uint32_t output_depth, FixedMatrix* matrix) {
  for (auto& row : matrix->weight) {
    for (int32_t& weight : row) weight = RandomWeight(random, narrow);
  }
  for (int32_t& offset : matrix->offset) offset = RandomWeight(random, random() % 2 == 0);
  matrix->shift = ovra_test::RandomInt(random, 9, 13);
  matrix->max = (1 << output_depth) - 1;
}

void Randomize(Random& random, bool special, uint32_t output_depth, DoubleMatrix* matrix) {
  using Limits = std::numeric_limits<double>;
  const double kSpecial[] = {0,
                             -0.0,
                             Limits::denorm_min(),
                             Limits::max(),
                             -Limits::max(),
                             Limits::infinity(),
                             -Limits::infinity(),
                             Limits::quiet_NaN()};
  for (auto& row : matrix->weight) {
    for (double& weight : row) {
      const double mantissa = ovra_test::RandomInt(random, INT32_MIN, INT32_MAX);
      weight = std::ldexp(mantissa, ovra_test::RandomInt(random, -45, -29));
      if (special && random() % 8 == 0) weight = kSpecial[random() % 8];
    }
  }
  matrix->max = (1 << output_depth) - 1;
}

template <class Matrix, class In, class Out>
void ExpectEqualToPlain(KernelTier tier) {
  auto* const plain = ovra::SelectConvertMatrix<Matrix, In, Out>(KernelTier::kPlain);
  auto* const accelerated = ovra::SelectConvertMatrix<Matrix, In, Out>(tier);
  ASSERT_NE(plain, accelerated);
  Random random(5);
  for (int pixels = 0; pixels <= 110; ++pixels) {
    for (int round = 0; round < 6; ++round) {
      Matrix matrix;
      Randomize(random, round % 2 == 0, sizeof(Out) == 1 ? 8 : 9 + random() % 8, &matrix);
      const Guard guard = round < 3 ? Guard::kAfter : Guard::kBefore;
      const auto samples = static_cast<size_t>(3 * pixels);
      GuardedBuffer source(samples * sizeof(In), guard);
      ovra_test::FillSamples(random, source.as<In>(), source.as<In>() + samples,
                             std::numeric_limits<In>::max());
      GuardedBuffer expected(samples * sizeof(Out), guard);
      GuardedBuffer actual(samples * sizeof(Out), guard);
      plain(source.as<const In>(), expected.as<Out>(), pixels, matrix);
      accelerated(source.as<const In>(), actual.as<Out>(), pixels, matrix);
      ASSERT_TRUE(std::equal(expected.begin(), expected.end(), actual.begin()))
          << pixels << " pixels, round " << round;
    }
  }
}

class ColorMatrixKernels : public ovra_test::AcceleratedTierTest {};

TEST_P(ColorMatrixKernels, FixedEqualsPlain) {
  ExpectEqualToPlain<FixedMatrix, uint8_t, uint8_t>(GetParam());
  ExpectEqualToPlain<FixedMatrix, uint8_t, uint16_t>(GetParam());
  ExpectEqualToPlain<FixedMatrix, uint16_t, uint8_t>(GetParam());
  ExpectEqualToPlain<FixedMatrix, uint16_t, uint16_t>(GetParam());
}

TEST_P(ColorMatrixKernels, DoubleEqualsPlain) {
  ExpectEqualToPlain<DoubleMatrix, uint8_t, uint8_t>(GetParam());
  ExpectEqualToPlain<DoubleMatrix, uint8_t, uint16_t>(GetParam());
  ExpectEqualToPlain<DoubleMatrix, uint16_t, uint8_t>(GetParam());
  ExpectEqualToPlain<DoubleMatrix, uint16_t, uint16_t>(GetParam());
}

INSTANTIATE_TEST_SUITE_P(Tiers, ColorMatrixKernels, ovra_test::AcceleratedTiers(),
                         ovra_test::TierParamName);

TEST(ColorMatrix, FailingAllocationLeavesNothing) {
  const ovra::ColorMatrix matrix = {};
  const uint8_t source[3] = {};
  uint8_t destination[3] = {77, 77, 77};
  uintptr_t handle = 1;
  ovra::Status init = 0;
  ovra::Status once = 0;
  {
    const ovra_test::FailAllocationsFrom fail(1);
    init = ovra::InitColorMatrix({0x120, 0x120}, &matrix, &handle);
    once = ovra::ConvertByColorMatrixOnce({source, destination, 1, 1}, {0x120, 0x120}, &matrix,
                                          KernelTier::kPlain);
  }
  EXPECT_EQ(init, OVRA_ERROR_NO_MEMORY);
  EXPECT_EQ(handle, 0U);
  EXPECT_EQ(once, OVRA_ERROR_NO_MEMORY);
  EXPECT_EQ(destination[0], 77);
  {
    const ovra_test::FailAllocationsFrom count(100);
    once = ovra::ConvertByColorMatrixOnce({source, destination, 1, 1}, {0x120, 0x120}, &matrix,
                                          KernelTier::kPlain);
    init = ovra_test::FailAllocationsFrom::Outstanding();
  }
  EXPECT_EQ(once, OVRA_OK);
  EXPECT_EQ(init, 0);
}

}  // namespace
