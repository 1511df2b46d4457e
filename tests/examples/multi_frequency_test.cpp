// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numbers>
#include <vector>

#include "ovra/filter.h"
#include "support/random.h"
#include "support/tone_pictures.h"

namespace ovra_test {
namespace {

// With all bands alike.
OvraMultiFrequencyParams Params(uint32_t band_count, float base_gain = 1,
                                const OvraMultiFrequencyBand& band = {1, 0, 0, 1},
                                float pivot = 0.5F) {
  OvraMultiFrequencyParams params = {band_count, base_gain, pivot, 0, {}};
  std::fill_n(params.band, band_count, band);
  return params;
}

Picture16 Processed(const Picture16& picture, const OvraMultiFrequencyParams& params) {
  Picture16 result = picture;
  EXPECT_EQ(OvraMultiFrequency(picture.Bytes(), result.Bytes(), picture.width, picture.height,
                               picture.Format(), &params),
            OVRA_OK);
  return result;
}

Picture16 Grey(uint32_t width, uint32_t height, uint32_t depth_bits, const auto& value) {
  return Picture16(width, height, depth_bits, 1, OVRA_MODEL_GREY).FillGrey(value);
}

// The arithmetic, which is the same on every platform.
TEST(MultiFrequency, Anchors) {
  OvraMultiFrequencyParams params = Params(4, 0.875F, {1.75F, 0.0078125F, 0.5F, 0.125F});
  for (int k = 1; k < 4; ++k) params.band[k].gain = params.band[k - 1].gain - 0.25F;
  EXPECT_EQ(Fnv1a(Processed(AnchorPicture(12), params)), 0x64878121);
  EXPECT_EQ(Fnv1a(Processed(AnchorPicture(10), params)), 0xce51c10b);

  const Picture16 wide = AnchorPicture(12);
  std::vector<uint8_t> bytes;
  for (const uint16_t sample : wide.samples) bytes.push_back(static_cast<uint8_t>(sample >> 4));
  ASSERT_EQ(Fnv1a(bytes.data(), bytes.size()), 0x1afece5e);
  EXPECT_EQ(OvraMultiFrequency(bytes.data(), bytes.data(), wide.width, wide.height, 0x120, &params),
            OVRA_OK);
  EXPECT_EQ(Fnv1a(bytes.data(), bytes.size()), 0xe86bd8d8);
}

struct Layout {
  OvraColorModel model;
  uint32_t channels;
  uint32_t changed;
};

constexpr Layout kLayouts[] = {{OVRA_MODEL_GREY, 1, 1}, {OVRA_MODEL_RGB, 3, 3},
                               {OVRA_MODEL_BGR, 3, 3},  {OVRA_MODEL_YCC, 3, 1},
                               {OVRA_MODEL_RGBA, 4, 3}, {OVRA_MODEL_BGRA, 4, 3}};

TEST(MultiFrequency, UnitWeightsGiveTheSourceAndChangesAreBounded) {
  for (const Layout& layout : kLayouts) {
    for (uint32_t depth_bits = 9; depth_bits <= 16; ++depth_bits) {
      const Picture16 noise = Noise(70, 45, depth_bits, layout.channels, layout.model);
      for (const uint32_t bands : {1U, 4U, 8U}) {
        EXPECT_EQ(Processed(noise, Params(bands, 1, {1, 0.125F, 0, 0.25F})), noise) << depth_bits;
        const Picture16 changed =
            Processed(noise, Params(bands, 1, {2, 0.0078125F, 0.5F, 0.03125F}));
        const double most = std::ldexp(1.0, static_cast<int>(depth_bits)) * bands *
                                (0.03125 - 0.0078125 + 0.5 * 0.0078125) +
                            2 + bands * std::ldexp(1.0, static_cast<int>(depth_bits) - 13);
        for (size_t i = 0; i < noise.samples.size(); ++i) {
          const bool is_copied = i % layout.channels >= layout.changed;
          ASSERT_LE(std::abs(changed.samples[i] - noise.samples[i]), is_copied ? 0 : most);
        }
      }
    }
  }
}

TEST(MultiFrequency, FlatPicturesMoveAboutThePivot) {
  for (uint32_t depth_bits = 9; depth_bits <= 16; ++depth_bits) {
    const int32_t range = 1 << depth_bits;
    const int32_t off = depth_bits <= 12 ? 1 : depth_bits <= 14 ? 2 : depth_bits == 15 ? 4 : 8;
    for (const float base_gain : {0.0F, 0.5F, 1.5F, 2.0F}) {
      const OvraMultiFrequencyParams params = Params(6, base_gain, {3, 0.01F, 1, 0.5F}, 0.25F);
      for (int32_t v = 0; v < range; v += range / 16) {
        const Picture16 flat = Grey(21, 13, depth_bits, [v](uint32_t, uint32_t) { return v; });
        const double moved = v + (double{base_gain} - 1) * (v - 0.25 * range);
        const std::vector<uint16_t> samples = Processed(flat, params).samples;
        EXPECT_NEAR(samples[0], std::clamp(moved, 0.0, range - 1.0), off);
        EXPECT_EQ(samples, std::vector<uint16_t>(samples.size(), samples[0]));
      }
    }
  }
}

TEST(MultiFrequency, AlternatingColumnsAreBandOne) {
  for (const uint32_t depth_bits : {10U, 12U, 16U}) {
    const auto v = 1U << (depth_bits - 1);
    const auto a = 1U << (depth_bits - 4);
    const Picture16 columns =
        Grey(600, 10, depth_bits, [=](uint32_t x, uint32_t) { return x % 2 == 0 ? v - a : v + a; });
    for (const float gain : {0.0F, 0.5F, 2.5F}) {
      OvraMultiFrequencyParams params = Params(4, 1, {3, 0, 0, 0.5F});
      params.band[0] = {gain, 0, 0, 0.25F};
      const Picture16 processed = Processed(columns, params);
      for (uint32_t x = 128; x < 600 - 128; ++x) {
        const double expected = v + (x % 2 == 0 ? -1.0 : 1.0) * gain * a;
        ASSERT_NEAR(processed.samples[5 * 600 + x], expected, depth_bits == 16 ? 4 : 1) << x;
      }
    }
  }
}

// The amplitude of period P that is left, along rows, of a wave of amplitude 1.
double Amplitude(const Picture16& picture, uint32_t period, uint32_t first) {
  double sine = 0;
  double cosine = 0;
  const uint32_t count = 64 * period;
  for (uint32_t x = first; x < first + count; ++x) {
    const double angle = 2 * std::numbers::pi * x / period;
    sine += std::sin(angle) * picture.samples[x];
    cosine += std::cos(angle) * picture.samples[x];
  }
  return std::hypot(sine, cosine) * 2 / count;
}

TEST(MultiFrequency, BandsHoldTheirOctaves) {
  const struct {
    uint32_t period;
    double shares[5];
  } waves[] = {{6, {0.68, 0.32, 0, 0, 0}},
               {11, {0.28, 0.54, 0.18, 0, 0}},
               {22, {0.08, 0.26, 0.50, 0.17, 0}},
               {45, {0.02, 0.07, 0.25, 0.48, 0.18}}};
  for (const auto& [period, shares] : waves) {
    const Picture16 wave = Grey(4000, 3, 16, [p = period](uint32_t x, uint32_t) {
      return std::lround(32768 + 4000 * std::sin(2 * std::numbers::pi * x / p));
    });
    const double before = Amplitude(wave, period, 500);
    for (uint32_t band = 0; band < 5; ++band) {
      OvraMultiFrequencyParams params = Params(6);
      params.band[band].gain = 2;
      EXPECT_NEAR(Amplitude(Processed(wave, params), period, 500) / before, 1 + shares[band], 0.03)
          << period << ", " << band;
    }
  }
}

TEST(MultiFrequency, NoiseIsDampedAndNeverEnlarged) {
  const struct {
    float gain, damping;
    double least, most;  // what is left
  } cases[] = {{1, 1, 0, 0.08}, {1, 0.5F, 0.48, 0.53}, {4, 0, 0.98, 1.02}};
  const Picture16 noise = NoisyGrey(256, 16, 32768, 0.01 * 65536);
  for (const auto& c : cases) {
    const Picture16 damped = Processed(noise, Params(3, 1, {c.gain, 0.03F, c.damping, 1}));
    const double left = DeviationOf(damped.samples) / DeviationOf(noise.samples);
    EXPECT_TRUE(left >= c.least && left <= c.most) << left;
  }
}

TEST(MultiFrequency, SymmetricAndTheSameAtAllDepths) {
  const OvraMultiFrequencyParams params = Params(4, 0.75F, {2, 0.01F, 0.5F, 0.125F});
  // Backwards: mirrored in both axes. Both sides less one are multiples of 2^4.
  const Picture16 noise = Noise(65, 33, 12);
  Picture16 mirrored = noise;
  std::reverse(mirrored.samples.begin(), mirrored.samples.end());
  Picture16 back = Processed(mirrored, params);
  std::reverse(back.samples.begin(), back.samples.end());
  EXPECT_EQ(back.samples, Processed(noise, params).samples);

  const Picture16 deep = Noise(61, 30, 8);
  Picture16 wide = deep;
  wide.depth_bits = 16;
  for (uint16_t& sample : wide.samples) sample = static_cast<uint16_t>(256 * sample);
  std::vector<uint8_t> bytes(deep.samples.begin(), deep.samples.end());
  ASSERT_EQ(OvraMultiFrequency(bytes.data(), bytes.data(), 61, 30, deep.Format(), &params),
            OVRA_OK);
  const Picture16 result = Processed(wide, params);
  for (size_t i = 0; i < bytes.size(); ++i) {
    const bool is_limited = bytes[i] == 0 || bytes[i] == 255;
    ASSERT_NEAR(bytes[i], result.samples[i] / 256.0, is_limited ? 1.5 : 0.75) << i;
  }
}

}  // namespace
}  // namespace ovra_test
