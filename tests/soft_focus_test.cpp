// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "ovra/filter.h"
#include "support/guarded_buffer.h"
#include "support/random.h"

namespace {

using ovra_test::Guard;
using ovra_test::GuardedBuffer;
using ovra_test::Random;
using ovra_test::RandomInt;
using Bytes = std::vector<uint8_t>;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

OvraSoftFocusParams Params(int32_t radius, double decay_base, int32_t decay_exponent, double mix) {
  OvraSoftFocusParams params = {};
  params.radius = radius;
  params.decay_exponent = decay_exponent;
  params.decay_base = decay_base;
  params.mix = mix;
  return params;
}

// --- Soft focus from its definition: whole padded planes, each pass writes transposed -------------

struct Constants {
  uint64_t gain;
  uint64_t feedback;
  uint64_t input;
};

// Filters `lines` lines of `length` pixels.
Bytes FilterTransposed(const Bytes& in, size_t length, size_t lines, const Constants& constants) {
  const auto [gain, feedback, input] = constants;
  Bytes out(in.size());
  std::vector<uint64_t> line(length);
  for (size_t y = 0; y < lines; ++y) {
    for (size_t c = 0; c < 3; ++c) {
      const auto sample = [&](size_t i) { return uint64_t{in[(y * length + i) * 3 + c]}; };
      line[0] = sample(0) * 65536;
      uint64_t s = sample(0) * gain * 65536;
      for (size_t i = 1; i < length; ++i) {
        s = ((s + 32768) >> 16) * feedback + sample(i) * 65536;
        line[i] = ((s + 32768) >> 16) * input;
      }
      uint64_t t = line[length - 1] * gain;
      for (size_t i = length; i-- > 0;) {
        if (i + 1 < length) t = ((t + 32768) >> 16) * feedback + line[i];
        const uint64_t value = (((t + 32768) >> 16) * input) >> 16;
        out[(i * lines + y) * 3 + c] = static_cast<uint8_t>(std::min<uint64_t>(value, 255));
      }
    }
  }
  return out;
}

// For parameters that blur.
Bytes Reference(const Bytes& in, size_t width, size_t height, const OvraSoftFocusParams& params) {
  const auto scale = static_cast<float>(static_cast<double>(std::min(width, height)) / 2503.0);
  const auto r = static_cast<size_t>(params.radius * double{scale} + 0.5);
  const double b =
      std::pow(std::pow(params.decay_base, params.decay_exponent), 1.0 / static_cast<double>(r));
  const auto feedback = static_cast<uint64_t>(b * 65536.0 + 0.5);
  const Constants constants = {static_cast<uint64_t>(1 / (1 - b) + 0.5), feedback,
                               65536 - feedback};
  const size_t padded_width = width + r;
  const size_t padded_height = height + r;
  Bytes plane;
  for (size_t y = 0; y < padded_height; ++y) {
    for (size_t x = 0; x < padded_width; ++x) {
      const size_t at = (std::min(y, height - 1) * width + std::min(x, width - 1)) * 3;
      plane.insert(plane.end(), {in[at], in[at + 1], in[at + 2]});
    }
  }
  plane = FilterTransposed(plane, padded_width, padded_height, constants);
  plane = FilterTransposed(plane, padded_height, padded_width, constants);
  const auto share = static_cast<uint32_t>(params.mix * 65536.0 + 0.5);
  Bytes out(in.size());
  for (size_t i = 0; i < in.size(); ++i) {
    const size_t row = i / (3 * width);
    const uint32_t blurred = plane[row * padded_width * 3 + i % (3 * width)];
    out[i] = static_cast<uint8_t>((in[i] * (65536 - share) + blurred * share) >> 16);
  }
  return out;
}

// --- The export ----------------------------------------------------------------------------------

Bytes RandomPicture(Random& random, size_t width, size_t height) {
  Bytes picture(3 * width * height);
  ovra_test::FillSamples(random, picture.data(), picture.data() + picture.size(), 255U);
  return picture;
}

Bytes Softened(const Bytes& in, size_t width, size_t height, const OvraSoftFocusParams& params,
               bool in_place = false, Guard guard = Guard::kAfter) {
  GuardedBuffer source(in.size(), guard);
  std::copy(in.begin(), in.end(), source.begin());
  GuardedBuffer other(in.size(), guard);
  GuardedBuffer& destination = in_place ? source : other;
  EXPECT_EQ(OvraSoftFocus(source.data(), destination.data(), static_cast<uint32_t>(width),
                          static_cast<uint32_t>(height), &params),
            OVRA_OK);
  return {destination.begin(), destination.end()};
}

// Radii that scale to `r` pixels at this size.
int32_t RadiusFor(double r, size_t width, size_t height) {
  return static_cast<int32_t>(r * 2503.0 / static_cast<double>(std::min(width, height)));
}

TEST(SoftFocus, EqualsItsDefinition) {
  struct Case {
    size_t width;
    size_t height;
    double pixels;  // effective radius
    double decay_base;
    int32_t decay_exponent;
    double mix;
  };
  const Case cases[] = {
      {1, 1, 1, 0.1, 1, 1.0},      {1, 40, 3, 0.1, 1, 0.5},    {40, 1, 3, 0.1, 1, 0.5},
      {23, 19, 1, 0.9, 1, 1.0},    {64, 5, 7, 0.1, 1, 0.3},    {5, 64, 7, 0.5, 2, 0.999},
      {33, 35, 30, 0.1, 1, 1.0},   {70, 20, 12, 2.0, -3, 0.7}, {20, 70, 100, 0.1, 1, 0.8},
      {37, 18, 90, 0.7, 1, 1.0},    // a gain of about 252
      {37, 18, 93, 0.7, 1, 1.0},    // and of about 261
      {20, 21, 150, 0.6, 1, 1.0},   // a gain of about 294
      {9, 8, 100, 0.99, 1, 0.6},    // a gain of about 9950
      {9, 8, 2, 1e-9, 1, 1.0},      // next to no blur
      {9, 8, 1, 1e-300, 1, 1.0},    // a feedback of 0
      {9, 8, 1, 0.999999, 1, 1.0},  // an input of 0: black
      {9, 8, 3, 5e-324, 1, 0.25},
  };
  Random random(40);
  for (const Case& c : cases) {
    const OvraSoftFocusParams params =
        Params(RadiusFor(c.pixels + 0.2, c.width, c.height), c.decay_base, c.decay_exponent, c.mix);
    for (const bool bright : {false, true}) {
      const Bytes picture =
          bright ? Bytes(3 * c.width * c.height, 255) : RandomPicture(random, c.width, c.height);
      const Bytes expected = Reference(picture, c.width, c.height, params);
      for (const bool in_place : {false, true}) {
        for (const Guard guard : {Guard::kAfter, Guard::kBefore}) {
          ASSERT_EQ(Softened(picture, c.width, c.height, params, in_place, guard), expected)
              << c.width << " x " << c.height << ", radius " << c.pixels << ", base "
              << c.decay_base;
        }
      }
    }
  }
}

// All that the padding does is done after some steps; a radius may be far longer.
TEST(SoftFocus, RadiiBeyondAllMemory) {
  Random random(41);
  constexpr size_t kSide = 6;
  const Bytes picture = RandomPicture(random, kSide, kSide);
  // A decay of a half from pixel to pixel, which settles in some dozen steps.
  const OvraSoftFocusParams settled = Params(RadiusFor(200.2, kSide, kSide), 0.5, 200, 1.0);
  EXPECT_EQ(Softened(picture, kSide, kSide, settled), Reference(picture, kSide, kSide, settled));
  EXPECT_NE(Softened(picture, kSide, kSide, Params(0x7FFFFFFF, 1e-300, 1, 1.0)), picture);
}

TEST(SoftFocus, CopiesWhenNothingIsToBeBlurred) {
  Random random(42);
  constexpr size_t kWidth = 30;
  constexpr size_t kHeight = 25;
  const Bytes picture = RandomPicture(random, kWidth, kHeight);
  const int32_t blurring = RadiusFor(5, kWidth, kHeight);
  ASSERT_NE(Softened(picture, kWidth, kHeight, Params(blurring, 0.1, 1, 1.0)), picture);
  const OvraSoftFocusParams cases[] = {
      Params(50, 0.1, 1, 1.0),  // scales to 0.4993
      Params(0, 0.1, 1, 1.0),
      Params(-blurring, 0.1, 1, 1.0),
      Params(std::numeric_limits<int32_t>::min(), 0.1, 1, 1.0),
      Params(blurring, 1.0, 1, 1.0),  // decays that are not between 0 and 1
      Params(blurring, 0.1, 0, 1.0),
      Params(blurring, 0.0, 1, 1.0),
      Params(blurring, 0.0, -1, 1.0),
      Params(blurring, 1.5, 1, 1.0),
      Params(blurring, -0.5, 1, 1.0),
      Params(blurring, kNaN, 1, 1.0),
      Params(blurring, 0.1, 1, 0.0),  // no share
      Params(blurring, 0.1, 1, -1.0),
      Params(blurring, 0.1, 1, kNaN),
  };
  for (const OvraSoftFocusParams& params : cases) {
    for (const bool in_place : {false, true}) {
      EXPECT_EQ(Softened(picture, kWidth, kHeight, params, in_place), picture)
          << params.radius << ' ' << params.decay_base << ' ' << params.mix;
    }
  }
  EXPECT_NE(Softened(picture, kWidth, kHeight, Params(51, 0.1, 1, 1.0)), picture);  // 0.5094
  EXPECT_EQ(Softened(picture, kWidth, kHeight, Params(blurring, 0.1, 1, 7.0)),
            Softened(picture, kWidth, kHeight, Params(blurring, 0.1, 1, 1.0)));
}

TEST(SoftFocus, Statuses) {
  uint8_t pixels[12] = {1, 2, 3};
  uint8_t other[12] = {4, 5, 6};
  const OvraSoftFocusParams params = Params(5000, 0.1, 1, 1.0);
  EXPECT_EQ(OvraSoftFocus(nullptr, other, 0, 0, &params), OVRA_ERROR_SOFT_FOCUS_NULL);
  EXPECT_EQ(OvraSoftFocus(pixels, nullptr, 0, 0, &params), OVRA_ERROR_SOFT_FOCUS_NULL);
  EXPECT_EQ(OvraSoftFocus(pixels, other, 0, 0, nullptr), OVRA_ERROR_SOFT_FOCUS_NULL);
  EXPECT_EQ(OvraSoftFocus(pixels, other, 0, 0xFFFFFFFF, &params), OVRA_OK);
  EXPECT_EQ(OvraSoftFocus(pixels, other, 0xFFFFFFFF, 0, &params), OVRA_OK);
  EXPECT_EQ(OvraSoftFocus(pixels, other, 0xFFFFFFFF, 0xFFFFFFFF, &params), OVRA_ERROR_NO_MEMORY);
  EXPECT_EQ(other[0], 4);
}

// The powers come from each platform's mathematics library; the pictures must not depend on it.
TEST(SoftFocus, SameOnEveryPlatform) {
  constexpr size_t kSide = 12;
  Random random(43);
  const Bytes picture = RandomPicture(random, kSide, kSide);
  uint32_t hash = 2166136261U;  // FNV-1a
  for (int i = 0; i < 400; ++i) {
    const double base = 0.001 * RandomInt(random, 1, 999);
    const int exponent =
        RandomInt(random, 1, 4);  // drawn in an order that holds for every compiler
    const int radius = RandomInt(random, 110, 20000);
    const OvraSoftFocusParams params = Params(radius, base, exponent, 1.0);
    for (const uint8_t sample : Softened(picture, kSide, kSide, params)) {
      hash = (hash ^ sample) * 16777619U;
    }
  }
  EXPECT_EQ(hash, 2178454907U);
}

}  // namespace
