// SPDX-License-Identifier: MIT
#include "filter/soft_focus_kernels.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "filter/soft_focus.h"
#include "support/failing_malloc.h"
#include "support/guarded_buffer.h"
#include "support/random.h"
#include "support/tiers.h"

namespace {

using ovra::KernelTier;
using ovra_test::Guard;
using ovra_test::GuardedBuffer;
using ovra_test::Random;
using ovra_test::RandomInt;

// Every pair of gain and feedback that a decay can give, about `decay`.
ovra::SoftFocusRecursion Recursion(double decay) {
  const auto feedback = static_cast<uint32_t>(decay * 65536 + 0.5);
  return {static_cast<uint64_t>(1 / (1 - decay) + 0.5), feedback, 65536 - feedback};
}

class SoftFocusKernels : public ovra_test::AcceleratedTierTest {
 protected:
  // Both kernels on the same lines, which end at an inaccessible page.
  static void ExpectEqualLines(const ovra::SoftFocusRecursion& recursion, size_t length,
                               size_t padding, size_t count, const std::vector<uint8_t>& samples) {
    ASSERT_EQ(samples.size(), length * count);
    std::vector<uint8_t> expected = samples;
    GuardedBuffer actual(samples.size());
    std::copy(samples.begin(), samples.end(), actual.begin());
    std::vector<uint32_t> work((length + padding) * ovra::kSoftFocusWorkWords);
    ovra::SoftFocusLines lines = {
        expected.data(), static_cast<std::ptrdiff_t>(count), static_cast<std::ptrdiff_t>(length),
        static_cast<std::ptrdiff_t>(padding), static_cast<std::ptrdiff_t>(count)};
    ovra::FilterSoftFocusLinesPlain(recursion, lines, work.data());
    lines.samples = actual.data();
    ovra::SelectFilterSoftFocusLines(recursion, GetParam())(recursion, lines, work.data());
    ASSERT_TRUE(std::equal(expected.begin(), expected.end(), actual.begin()))
        << recursion.gain << ' ' << recursion.feedback << ' ' << length << " x " << count;
  }
};

TEST_P(SoftFocusKernels, LinesEqualPlain) {
  EXPECT_NE(ovra::SelectFilterSoftFocusLines(Recursion(0.5), GetParam()),
            &ovra::FilterSoftFocusLinesPlain);
  Random random(45);
  for (size_t count = 1; count <= 110; ++count) {
    const auto length = static_cast<size_t>(RandomInt(random, 1, 20));
    const auto padding = static_cast<size_t>(RandomInt(random, 1, 30));
    std::vector<uint8_t> samples(length * count);
    ovra_test::FillSamples(random, samples.data(), samples.data() + samples.size(), 255U);
    const double decay = RandomInt(random, 1, 65279) / 65536.0;
    ExpectEqualLines(Recursion(decay), length, padding, count, samples);
  }
}

// Where states are largest, and where they fall from there: white lines, and white lines with black
// ends, over all gains that run in 16 bits.
TEST_P(SoftFocusKernels, NoGainOverflows) {
  constexpr size_t kLength = 12;
  constexpr size_t kCount = 16;
  std::vector<uint8_t> white(kLength * kCount, 255);
  std::vector<uint8_t> falling = white;
  std::fill(falling.begin() + kCount * kLength / 2, falling.end(), uint8_t{0});
  std::vector<uint8_t> rising(falling.rbegin(), falling.rend());
  for (uint32_t step = 0; step < 2 * 256; ++step) {
    // Both ends of the range of decays that round to one gain, and its middle.
    const double gain = 1 + step / 2 + (step % 2 == 0 ? -0.499999 : 0.499999);
    const double decay = gain <= 1 ? 1e-3 : 1 - 1 / gain;
    const ovra::SoftFocusRecursion recursion = Recursion(decay);
    ASSERT_LE(recursion.gain, ovra::kSoftFocusMaxNarrowGain);
    for (const size_t padding : {size_t{1}, size_t{300}}) {
      for (const auto& samples : {white, falling, rising}) {
        ExpectEqualLines(recursion, kLength, padding, kCount, samples);
      }
    }
  }
}

TEST_P(SoftFocusKernels, RowsAndMixEqualPlain) {
  ovra::GatherSoftFocusRows* const gather = ovra::SelectGatherSoftFocusRows(GetParam());
  ovra::ScatterSoftFocusRows* const scatter = ovra::SelectScatterSoftFocusRows(GetParam());
  ovra::MixSoftFocusRow* const mix = ovra::SelectMixSoftFocusRow(GetParam());
  EXPECT_NE(gather, &ovra::GatherSoftFocusRowsPlain);
  EXPECT_NE(scatter, &ovra::ScatterSoftFocusRowsPlain);
  EXPECT_NE(mix, &ovra::MixSoftFocusRowPlain);
  constexpr size_t kRows = ovra::kSoftFocusRows;
  Random random(46);
  for (size_t bytes = 1; bytes <= 70; ++bytes) {
    const auto count = static_cast<std::ptrdiff_t>(bytes);
    GuardedBuffer picture(kRows * bytes);
    ovra_test::FillSamples(random, picture.begin(), picture.end(), 255U);
    GuardedBuffer back(kRows * bytes);
    const uint8_t* in[kRows];
    uint8_t* out[kRows];
    for (size_t k = 0; k < kRows; ++k) {
      in[k] = picture.data() + k * bytes;
      out[k] = back.data() + k * bytes;
    }
    std::vector<uint8_t> expected(kRows * bytes);
    GuardedBuffer lines(kRows * bytes);
    ovra::GatherSoftFocusRowsPlain(in, expected.data(), count);
    gather(in, lines.data(), count);
    ASSERT_TRUE(std::equal(expected.begin(), expected.end(), lines.begin())) << bytes;
    scatter(lines.data(), out, count);
    ASSERT_TRUE(std::equal(picture.begin(), picture.end(), back.begin())) << bytes;

    const auto share = static_cast<uint32_t>(RandomInt(random, 1, 65536));
    GuardedBuffer mixed(bytes);
    ovra::MixSoftFocusRowPlain(in[kRows - 1], in[1], expected.data(), count, share);
    mix(in[kRows - 1], in[1], mixed.data(), count, share);
    ASSERT_TRUE(std::equal(mixed.begin(), mixed.end(), expected.begin())) << bytes;
  }
}

// Every pair of samples at shares from end to end.
TEST_P(SoftFocusKernels, MixesEveryPair) {
  constexpr size_t kPairs = 65536;
  std::vector<uint8_t> source(kPairs);
  std::vector<uint8_t> blurred(kPairs);
  for (size_t i = 0; i < kPairs; ++i) {
    source[i] = static_cast<uint8_t>(i);
    blurred[i] = static_cast<uint8_t>(i >> 8);
  }
  for (const uint32_t share : {1U, 2U, 255U, 21845U, 32767U, 32768U, 32769U, 65535U, 65536U}) {
    std::vector<uint8_t> expected(kPairs);
    std::vector<uint8_t> actual(kPairs);
    ovra::MixSoftFocusRowPlain(source.data(), blurred.data(), expected.data(), kPairs, share);
    ovra::SelectMixSoftFocusRow(GetParam())(source.data(), blurred.data(), actual.data(), kPairs,
                                            share);
    ASSERT_EQ(actual, expected) << share;
  }
}

INSTANTIATE_TEST_SUITE_P(Tiers, SoftFocusKernels, ovra_test::AcceleratedTiers(),
                         ovra_test::TierParamName);

TEST(SoftFocusMemory, FailingAllocations) {
  constexpr uint32_t kSide = 20;
  ovra::SoftFocusParams params = {};
  params.radius = 1000;
  params.decay_base = 0.1;
  params.decay_exponent = 1;
  params.mix = 1.0;
  for (const bool in_place : {false, true}) {
    std::vector<uint8_t> source(3 * kSide * kSide, 9);
    source[0] = 200;
    const std::vector<uint8_t> untouched = source;
    ovra::Status status = OVRA_ERROR_NO_MEMORY;
    int failures = 0;
    while (status == OVRA_ERROR_NO_MEMORY) {
      std::vector<uint8_t> other = untouched;
      std::vector<uint8_t>& destination = in_place ? source : other;
      int leaked = -1;
      {
        const ovra_test::FailAllocationsFrom failing(failures + 1);
        status = ovra::SoftFocus(source.data(), destination.data(), kSide, kSide, &params,
                                 KernelTier::kPlain);
        leaked = ovra_test::FailAllocationsFrom::Outstanding();
      }
      EXPECT_EQ(leaked, 0);
      EXPECT_EQ(destination == untouched, status != OVRA_OK);
      if (status != OVRA_OK) ++failures;
    }
    EXPECT_EQ(status, OVRA_OK);
    EXPECT_EQ(failures, in_place ? 3 : 2);
  }
}

}  // namespace
