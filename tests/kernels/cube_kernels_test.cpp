// SPDX-License-Identifier: MIT
#include "color/cube_kernels.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "color/cascade.h"
#include "color/cube.h"
#include "support/color_cube.h"
#include "support/failing_malloc.h"
#include "support/guarded_buffer.h"
#include "support/random.h"
#include "support/tiers.h"

namespace {

using ovra::CubeKernelShape;
using ovra::KernelTier;
using ovra_test::Guard;
using ovra_test::GuardedBuffer;

std::vector<CubeKernelShape> AllShapes() {
  std::vector<CubeKernelShape> shapes;
  for (const bool deep_output : {false, true}) {
    for (const bool four_channels : {false, true}) {
      shapes.push_back({false, deep_output, false, four_channels});
      shapes.push_back({true, deep_output, false, four_channels});
      shapes.push_back({true, deep_output, true, four_channels});
    }
  }
  return shapes;
}

// A cube prepared for the kernels of one shape. Depths other than 8 and 16 bits make clamps act.
struct PreparedCube {
  PreparedCube(const CubeKernelShape& shape, bool reversed_samples, uint32_t seed) {
    ovra_test::Random random(seed);
    input_depth = shape.deep_input ? 11 : 8;
    const uint32_t max_output = shape.deep_output ? 1000 : 255;
    // Narrow coefficients of 8-bit input take whatever 16 bits hold.
    const uint32_t max_node = shape.deep_input && !shape.wide_coefficients ? 8191 : 65535;
    ovra_test::TestCube cube = ovra_test::RandomCube(random, {4, 9, 6}, shape.four_channels ? 4 : 3,
                                                     (1 << input_depth) - 1, max_node);
    const OvraColorCube record = cube.Record();
    const ovra::CubeLayout layout = {input_depth, shape.four_channels ? 4 : 3, shape.deep_input,
                                     false, reversed_samples};
    EXPECT_EQ(memory.Build(record, layout), OVRA_OK);
    EXPECT_EQ(memory.HasWideCoefficients(), shape.wide_coefficients);
    tables = memory.Tables(static_cast<int32_t>(max_output));
  }

  uint32_t input_depth;
  ovra::CubeMemory memory;
  ovra::CubeTables tables;
};

size_t InputBytes(const CubeKernelShape& shape) {
  return shape.deep_input ? 6 : 3;
}
size_t OutputBytes(const CubeKernelShape& shape) {
  return (shape.four_channels ? 4U : 3U) * (shape.deep_output ? 2U : 1U);
}

// Samples of any value, also above the depth.
void FillPixels(ovra_test::Random& random, GuardedBuffer& buffer) {
  for (uint8_t& byte : buffer) byte = static_cast<uint8_t>(random());
}

class CubeKernels : public ovra_test::AcceleratedTierTest {};

TEST_P(CubeKernels, EqualPlain) {
  std::vector<std::ptrdiff_t> widths = {250, 255, 256, 257, 258, 259, 263, 264, 266, 511, 770};
  for (std::ptrdiff_t width = 0; width <= 40; ++width) widths.push_back(width);
  ovra_test::Random random(64);
  for (const CubeKernelShape& shape : AllShapes()) {
    const PreparedCube cube(shape, shape.deep_output, 65);
    ovra::ConvertCubeRow* const plain = ovra::SelectCubeRow(shape, KernelTier::kPlain);
    ovra::ConvertCubeRow* const accelerated = ovra::SelectCubeRow(shape, GetParam());
    ASSERT_NE(plain, accelerated);
    for (const std::ptrdiff_t width : widths) {
      const Guard guard = width % 2 == 0 ? Guard::kAfter : Guard::kBefore;
      const auto pixels = static_cast<size_t>(width);
      GuardedBuffer source(pixels * InputBytes(shape), guard);
      FillPixels(random, source);
      GuardedBuffer expected(pixels * OutputBytes(shape), guard);
      GuardedBuffer actual(pixels * OutputBytes(shape), guard);
      plain(source.data(), expected.data(), width, cube.tables);
      accelerated(source.data(), actual.data(), width, cube.tables);
      ASSERT_TRUE(std::equal(expected.begin(), expected.end(), actual.begin()))
          << width << " pixels, shape " << shape.deep_input << shape.deep_output
          << shape.wide_coefficients << shape.four_channels;
    }
  }
}

TEST_P(CubeKernels, ConvertInPlaceWherePixelsKeepTheirSize) {
  ovra_test::Random random(66);
  for (const CubeKernelShape& shape : AllShapes()) {
    if (InputBytes(shape) != OutputBytes(shape)) continue;
    const PreparedCube cube(shape, false, 67);
    for (const size_t pixels : {1U, 7U, 8U, 9U, 255U, 257U, 1000U}) {
      GuardedBuffer source(pixels * InputBytes(shape));
      FillPixels(random, source);
      GuardedBuffer expected(source.size());
      const auto width = static_cast<std::ptrdiff_t>(pixels);
      ovra::SelectCubeRow(shape, KernelTier::kPlain)(source.data(), expected.data(), width,
                                                     cube.tables);
      ovra::SelectCubeRow(shape, GetParam())(source.data(), source.data(), width, cube.tables);
      ASSERT_TRUE(std::equal(expected.begin(), expected.end(), source.begin())) << pixels;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Tiers, CubeKernels, ovra_test::AcceleratedTiers(),
                         ovra_test::TierParamName);

// The handle, the coefficients (twice where they turn out to be wide) and three axes.
TEST(CubeMemory, EveryFailingAllocationIsReported) {
  ovra_test::Random random(68);
  for (const uint32_t max_node : {255U, 65535U}) {
    ovra_test::TestCube cube = ovra_test::RandomCube(random, {3, 3, 3}, 3, 1023, max_node);
    const OvraColorCube record = cube.Record();
    const int allocations = max_node == 255 ? 5 : 6;
    for (int failing = 1; failing <= allocations + 1; ++failing) {
      uintptr_t handle = 77;
      OvraStatus status = OVRA_OK;
      int outstanding = 0;
      {
        const ovra_test::FailAllocationsFrom fail(failing);
        status = OvraConvColorCube_Init(0x0122, 0x0120, &record, &handle);
        if (status == OVRA_OK) OvraConvColorCube_Free(&handle);
        outstanding = ovra_test::FailAllocationsFrom::Outstanding();
      }
      EXPECT_EQ(status, failing <= allocations ? OVRA_ERROR_NO_MEMORY : OVRA_OK) << failing;
      EXPECT_EQ(handle, 0U);
      EXPECT_EQ(outstanding, 0) << failing;
    }
  }
}

TEST(CubeMemory, HandleIsAllocatedBeforeFormatsAreJudged) {
  const OvraColorCube record = {};
  uintptr_t handle = 77;
  OvraStatus status = OVRA_OK;
  {
    const ovra_test::FailAllocationsFrom fail(1);
    status = OvraConvColorCube_Init(0x0420, 0x0F0120, &record, &handle);
  }
  EXPECT_EQ(status, OVRA_ERROR_NO_MEMORY);
}

TEST(CubeMemory, CascadeWithoutMemoryLeavesTheFirstCube) {
  ovra_test::Random random(69);
  ovra_test::TestCube first = ovra_test::RandomCube(random, {3, 4, 5}, 3, 255, 4095);
  ovra_test::TestCube second = ovra_test::RandomCube(random, {3, 3, 3}, 3, 4095, 4095);
  const std::vector<uint16_t> nodes = first.lattice;
  const OvraColorCube records[] = {first.Record(), second.Record()};
  for (int failing = 1; failing <= 5; ++failing) {
    OvraStatus status = OVRA_OK;
    {
      const ovra_test::FailAllocationsFrom fail(failing);
      status = OvraCascade3D(&records[0], &records[1]);
    }
    EXPECT_EQ(status, OVRA_ERROR_CASCADE_CONVERSION);
    EXPECT_EQ(first.lattice, nodes);
  }
}

}  // namespace
