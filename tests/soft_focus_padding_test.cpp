// SPDX-License-Identifier: MIT
// The padding behind the lines of soft focus, which runs of steps pass, against a walk step by step.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <vector>

#include "filter/soft_focus/kernels.h"
#include "ovra/filter.h"
#include "support/random.h"

namespace {

using ovra_test::Random;
using ovra_test::RandomInt;

// A line with its padding, walked step by step.
std::vector<uint8_t> Walked(const ovra::SoftFocusRecursion& recursion,
                            const std::vector<uint8_t>& samples, size_t padding) {
  const auto rounded = [](uint64_t state) { return (state + 32768) >> 16; };
  const uint64_t feedback = recursion.feedback;
  std::vector<uint64_t> line(samples.size() + padding);
  line[0] = uint64_t{samples[0]} << 16;
  uint64_t state = samples[0] * recursion.gain << 16;
  for (size_t i = 1; i < line.size(); ++i) {
    state = rounded(state) * feedback + (uint64_t{samples[std::min(i, samples.size() - 1)]} << 16);
    line[i] = rounded(state) * recursion.input;
  }
  std::vector<uint8_t> out(samples.size());
  state = line.back() * recursion.gain;
  for (size_t i = line.size(); i-- > 0;) {
    if (i + 1 < line.size()) state = rounded(state) * feedback + line[i];
    const uint64_t value = rounded(state) * recursion.input >> 16;
    if (i < out.size()) out[i] = static_cast<uint8_t>(std::min<uint64_t>(value, 255));
  }
  return out;
}

void ExpectWalked(const ovra::SoftFocusRecursion& recursion, const std::vector<uint8_t>& samples,
                  size_t padding) {
  std::vector<uint8_t> actual = samples;
  std::vector<uint32_t> work(samples.size());
  const auto length = static_cast<std::ptrdiff_t>(samples.size());
  ovra::kSoftFocusPlain.filter_lines(
      recursion, {actual.data(), 1, length, static_cast<std::ptrdiff_t>(padding), 1}, work.data());
  ASSERT_EQ(actual, Walked(recursion, samples, padding))
      << recursion.gain << ' ' << recursion.feedback << ", " << samples.size() << " + " << padding;
}

// Every feedback whose state goes on to change for long, and shorter ones; every gain that may come
// with a feedback.
TEST(SoftFocusPadding, EqualsItsWalk) {
  Random random(47);
  for (int round = 0; round < 1500; ++round) {
    const int32_t bits = RandomInt(random, 1, 16);
    const auto input = static_cast<uint32_t>(RandomInt(random, (1 << bits) / 2, 1 << bits));
    // The decay is anywhere within half a unit of the feedback.
    const double unrounded = input + RandomInt(random, -500, 499) / 1000.0;
    const ovra::SoftFocusRecursion recursion = {
        static_cast<uint64_t>(65536 / std::max(unrounded, 0.5001) + 0.5), 65536 - input, input};
    std::vector<uint8_t> samples(static_cast<size_t>(RandomInt(random, 1, 4)));
    for (uint8_t& sample : samples) {
      sample = static_cast<uint8_t>(RandomInt(random, 0, 2) * RandomInt(random, 0, 127));
      if (RandomInt(random, 0, 3) == 0) sample = 255;
    }
    const int32_t longest = RandomInt(random, 0, 1) == 0 ? 40 : 30000;
    ExpectWalked(recursion, samples, static_cast<size_t>(RandomInt(random, 1, longest)));
  }
}

// The longest blurs from one end of the samples to the other, until nothing changes any more.
TEST(SoftFocusPadding, EqualsItsWalkToTheEnd) {
  constexpr size_t kSteps = 3000000;
  for (const uint32_t input : {1U, 2U, 37U}) {
    for (const uint64_t gain : {65536 * 2 / (2 * input + 1) + 1, 65536 * 2 / (2 * input - 1)}) {
      for (const std::vector<uint8_t>& samples :
           {std::vector<uint8_t>{255, 0}, {0, 255}, {0, 0, 1}, {255}}) {
        ExpectWalked({gain, 65536 - input, input}, samples, kSteps);
      }
    }
  }
}

// Minutes when every step of the padding is walked, for every line.
TEST(SoftFocusPadding, TimeDoesNotDependOnTheRadius) {
  constexpr uint32_t kSide = 200;
  Random random(48);
  std::vector<uint8_t> source(3 * kSide * kSide);
  ovra_test::FillSamples(random, source.data(), source.data() + source.size(), 255U);
  std::vector<uint8_t> destination(source.size());
  const auto begin = std::chrono::steady_clock::now();
  for (const int32_t pixels : {100, 20000, 1000000, 20000000, 45000000}) {
    // With the longest radius, 1 - 1/65536 from pixel to pixel.
    const OvraSoftFocusParams params = {
        static_cast<int32_t>(pixels * 2503.0 / kSide), 1, 1e-300, {}, 1.0};
    ASSERT_EQ(OvraSoftFocus(source.data(), destination.data(), kSide, kSide, &params), OVRA_OK);
    ASSERT_NE(destination, source);
    ASSERT_NE(destination, std::vector<uint8_t>(source.size()));
  }
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(60));
}

}  // namespace
