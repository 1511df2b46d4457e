// SPDX-License-Identifier: MIT
// Tables of the luminance unsharp mask's context, and its failing allocations.
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <vector>

#include "filter/yusm.h"
#include "support/failing_malloc.h"
#include "support/random.h"
#include "support/yusm_reference.h"

namespace {

class YUsmTableTest : public testing::Test {
 protected:
  YUsmTableTest() : level_(OVRA_LEVEL_TABLE_SIZE, -5), difference_(OVRA_DIFFERENCE_TABLE_SIZE, 3) {}

  // The correction table's entry for a difference of luminance.
  int32_t Correction(int32_t difference, float amount, uint32_t depth_bits) {
    ovra::BuildYUsmTables(level_.data(), difference_.data(), amount, depth_bits, context_.get());
    return context_->correction_table[difference + 1024];
  }

  std::vector<int16_t> level_;
  std::vector<int16_t> difference_;
  std::unique_ptr<ovra::YUsmContext> context_ = std::make_unique<ovra::YUsmContext>();
};

TEST_F(YUsmTableTest, AmountAndDepth) {
  struct {
    int32_t difference;
    float amount;
    uint32_t depth_bits;
    int32_t expected;
  } const cases[] = {{7, 1.0F, 8, 0},      {7, 2.0F, 8, 21},     {7, 2.0F, 9, 21},
                     {7, 2.0F, 10, 21},    {7, 2.0F, 12, 84},    {7, 2.0F, 14, 336},
                     {7, 1.5F, 8, 11},     {-7, 1.5F, 8, -10},   {-7, 2.0F, 8, -20},
                     {7, 0.5F, 8, -10},    {-1, 1.125F, 12, -1}, {-1024, 2.0F, 8, -3071},
                     {1023, 2.0F, 8, 3069}};
  for (const auto& test : cases) {
    EXPECT_EQ(Correction(test.difference, test.amount, test.depth_bits), test.expected)
        << test.difference << " " << test.amount << " " << test.depth_bits;
  }
  EXPECT_TRUE(std::all_of(std::begin(context_->level_table), std::end(context_->level_table),
                          [](int32_t entry) { return entry == -5; }));
}

TEST_F(YUsmTableTest, ExtremeAmountsSaturate) {
  constexpr float kInfinity = std::numeric_limits<float>::infinity();
  constexpr int32_t kMax = std::numeric_limits<int32_t>::max();
  constexpr int32_t kMin = std::numeric_limits<int32_t>::min();
  EXPECT_EQ(Correction(1, kInfinity, 8), kMax);
  EXPECT_EQ(Correction(-1, kInfinity, 8), kMin);
  EXPECT_EQ(Correction(0, kInfinity, 8), 0);
  EXPECT_EQ(Correction(1, -1e30F, 14), kMin);
  EXPECT_EQ(Correction(1, std::numeric_limits<float>::quiet_NaN(), 8), 0);
}

TEST(YUsmMemory, EveryFailingAllocationIsAnswered) {
  ovra_test::Random random(44);
  const ovra_test::YUsmCase test = ovra_test::RandomYUsmCase(random);
  const std::vector<uint8_t> source = ovra_test::RandomYUsmImage(test, random);
  std::vector<uint8_t> out = source;
  constexpr int kAllocations = 4;  // the context, two rings, one row
  for (int number = 1; number <= kAllocations + 1; ++number) {
    OvraStatus status = OVRA_OK;
    int outstanding = -1;
    {
      const ovra_test::FailAllocationsFrom failing(number);
      status = OvraYUsmSingleStep(source.data(), out.data(), test.width, test.height, test.Format(),
                                  test.TapCount(), test.weights.data(), test.amount,
                                  test.level.data(), test.difference.data());
      outstanding = ovra_test::FailAllocationsFrom::Outstanding();
    }
    EXPECT_EQ(status, number <= kAllocations ? OVRA_ERROR_NO_MEMORY : OVRA_OK) << number;
    EXPECT_EQ(outstanding, 0);
    EXPECT_EQ(out == source, number <= kAllocations);
  }
  auto* context = reinterpret_cast<OvraYUsmContext*>(16);
  OvraStatus status = OVRA_OK;
  {
    const ovra_test::FailAllocationsFrom failing(1);
    status = OvraYUsm_Init(test.Format(), test.TapCount(), test.weights.data(), test.amount,
                           test.level.data(), test.difference.data(), &context);
  }
  EXPECT_EQ(status, OVRA_ERROR_NO_MEMORY);
  EXPECT_EQ(context, nullptr);
}

}  // namespace
