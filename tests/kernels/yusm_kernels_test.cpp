// SPDX-License-Identifier: MIT
// Every tier of the luminance unsharp mask against plain.
#include "filter/yusm_kernels.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "filter/luminance_kernels.h"
#include "filter/yusm.h"
#include "support/guarded_buffer.h"
#include "support/random.h"
#include "support/tiers.h"
#include "support/yusm_reference.h"

namespace {

using ovra::KernelTier;
using ovra_test::Guard;
using ovra_test::GuardedBuffer;
using ovra_test::Random;
using ovra_test::RandomInt;

class YUsmKernels : public ovra_test::AcceleratedTierTest {};

void FillRandom(Random& random, GuardedBuffer& buffer) {
  ovra_test::FillSamples(random, buffer.begin(), buffer.end(), 255U);
}

bool AreEqual(const GuardedBuffer& a, const GuardedBuffer& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end());
}

struct LuminanceCase {
  uint32_t model;
  size_t channels;
};

constexpr LuminanceCase kModels[] = {{OVRA_MODEL_GREY, 1}, {OVRA_MODEL_RGB, 3},
                                     {OVRA_MODEL_BGR, 3},  {OVRA_MODEL_YCC, 3},
                                     {OVRA_MODEL_RGBA, 4}, {OVRA_MODEL_BGRA, 4}};

// Any samples, also above their depth, and any deltas; every row begins or ends at a guard.
TEST_P(YUsmKernels, LuminanceRowsEqualPlain) {
  Random random(51);
  for (const auto& [model, channels] : kModels) {
    for (int32_t depth = 8; depth <= 14; ++depth) {
      const auto plain = ovra::SelectLuminanceKernels(model, depth, KernelTier::kPlain);
      const auto accelerated = ovra::SelectLuminanceKernels(model, depth, GetParam());
      ASSERT_NE(plain.extract, accelerated.extract);
      ASSERT_NE(plain.add_deltas, accelerated.add_deltas);
      for (std::ptrdiff_t pixels = 0; pixels <= 70; pixels += RandomInt(random, 1, 3)) {
        const auto count = static_cast<size_t>(pixels);
        const Guard guard = RandomInt(random, 0, 1) == 0 ? Guard::kAfter : Guard::kBefore;
        GuardedBuffer source(count * channels * (depth == 8 ? 1 : 2), guard);
        FillRandom(random, source);
        GuardedBuffer expected(2 * count, guard);
        GuardedBuffer actual(2 * count, guard);
        plain.extract(source.data(), expected.as<int16_t>(), pixels, depth);
        accelerated.extract(source.data(), actual.as<int16_t>(), pixels, depth);
        ASSERT_TRUE(AreEqual(expected, actual)) << model << " " << depth << " " << pixels;

        GuardedBuffer deltas(2 * count, guard);
        FillRandom(random, deltas);
        GuardedBuffer expected_image(source.size(), guard);
        plain.add_deltas(source.data(), expected_image.data(), deltas.as<int16_t>(), pixels, depth);
        accelerated.add_deltas(source.data(), source.data(), deltas.as<int16_t>(), pixels, depth);
        ASSERT_TRUE(AreEqual(expected_image, source)) << model << " " << depth << " " << pixels;
      }
    }
  }
}

TEST_P(YUsmKernels, BlursEqualPlain) {
  Random random(52);
  for (const ovra::YUsmBlur blur :
       {ovra::YUsmBlur::kGeneral, ovra::YUsmBlur::kThreeTaps, ovra::YUsmBlur::kFiveTaps}) {
    const auto plain = ovra::SelectYUsmKernels(blur, KernelTier::kPlain);
    const auto accelerated = ovra::SelectYUsmKernels(blur, GetParam());
    ASSERT_NE(plain.blur_along, accelerated.blur_along);
    ASSERT_NE(plain.blur_across, accelerated.blur_across);
    for (std::ptrdiff_t width = 1; width <= 70; ++width) {
      std::vector<int32_t> weights = {32, 64, 32};
      if (blur == ovra::YUsmBlur::kFiveTaps) weights = {8, 32, 48, 32, 8};
      if (blur == ovra::YUsmBlur::kGeneral) {
        weights.resize(static_cast<size_t>(RandomInt(random, 1, 20)));
        const int32_t bound = RandomInt(random, 0, 1) == 0 ? 60 : 32767;
        for (int32_t& weight : weights) weight = RandomInt(random, -bound - 1, bound);
      }
      const size_t taps = weights.size();
      std::vector<int32_t> pairs;
      for (size_t k = 0; k < taps; k += 2) {
        pairs.push_back(ovra::WeightPair(weights[k], k + 1 < taps ? weights[k + 1] : 0));
      }
      const ovra::PlaneKernel kernel = {weights.data(), pairs.data(),
                                        static_cast<std::ptrdiff_t>(taps), ovra::kPlaneUnitSum};
      GuardedBuffer samples(2 * (static_cast<size_t>(width) + taps - 1));
      auto* const first = samples.as<int16_t>();
      const bool is_special = blur != ovra::YUsmBlur::kGeneral;
      for (size_t i = 0; i < samples.size() / 2; ++i) {
        first[i] = static_cast<int16_t>(is_special ? RandomInt(random, 0, 1023)
                                                   : RandomInt(random, INT16_MIN, INT16_MAX));
      }
      std::vector<const int16_t*> rows;
      for (size_t k = 0; k < taps; ++k) rows.push_back(first + k);
      const auto compare = [&](ovra::CombineRowsKernel* expected_form,
                               ovra::CombineRowsKernel* actual_form) {
        GuardedBuffer expected(2 * static_cast<size_t>(width));
        GuardedBuffer actual(2 * static_cast<size_t>(width));
        expected_form(rows.data(), kernel, expected.as<int16_t>(), width);
        actual_form(rows.data(), kernel, actual.as<int16_t>(), width);
        EXPECT_TRUE(AreEqual(expected, actual)) << static_cast<int>(blur) << " " << width;
      };
      compare(plain.blur_along, accelerated.blur_along);
      compare(plain.blur_across, accelerated.blur_across);
    }
  }
}

TEST_P(YUsmKernels, DeltasEqualPlain) {
  Random random(53);
  GuardedBuffer correction(4 * 2048);
  FillRandom(random, correction);
  GuardedBuffer level(4 * 1024);
  FillRandom(random, level);
  ovra::FindDeltasRow* const find = ovra::SelectYUsmKernels({}, GetParam()).find_deltas;
  for (std::ptrdiff_t columns = 0; columns <= 70; ++columns) {
    GuardedBuffer luminance(2 * static_cast<size_t>(columns));
    GuardedBuffer blurred(luminance.size());
    for (std::ptrdiff_t x = 0; x < columns; ++x) {
      const int32_t extreme = RandomInt(random, 0, 3);
      luminance.as<int16_t>()[x] =
          static_cast<int16_t>(extreme == 0   ? 0
                               : extreme == 1 ? 1023
                                              : RandomInt(random, 0, 1023));
      blurred.as<int16_t>()[x] = static_cast<int16_t>(1023 * RandomInt(random, 0, 1));
    }
    const ovra::YUsmTables tables = {correction.as<int32_t>(), level.as<int32_t>(),
                                     columns % 2 == 0 ? 14 : 16};
    GuardedBuffer expected(luminance.size());
    ovra::FindDeltasPlain(luminance.as<int16_t>(), blurred.as<int16_t>(), expected.as<int16_t>(),
                          columns, tables);
    find(luminance.as<int16_t>(), blurred.as<int16_t>(), blurred.as<int16_t>(), columns, tables);
    ASSERT_TRUE(AreEqual(expected, blurred)) << columns;
  }
}

TEST_P(YUsmKernels, RunsEqualPlain) {
  Random random(54);
  for (int i = 0; i < 60; ++i) {
    const ovra_test::YUsmCase test = ovra_test::RandomYUsmCase(random);
    const std::vector<uint8_t> source = ovra_test::RandomYUsmImage(test, random);
    const auto run = [&](KernelTier tier) {
      std::vector<uint8_t> out = source;
      EXPECT_EQ(
          ovra::RunYUsmSingleStep(source.data(), out.data(), test.width, test.height, test.Format(),
                                  {test.TapCount(), test.weights.data(), test.amount,
                                   test.level.data(), test.difference.data()},
                                  tier),
          OVRA_OK);
      return out;
    };
    ASSERT_EQ(run(GetParam()), run(KernelTier::kPlain)) << test.Describe();
  }
}

INSTANTIATE_TEST_SUITE_P(Tiers, YUsmKernels, ovra_test::AcceleratedTiers(),
                         ovra_test::TierParamName);

}  // namespace
