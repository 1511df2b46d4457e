// SPDX-License-Identifier: MIT
#include "ovra/tone.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numeric>
#include <string>
#include <vector>

#include "ovra/geometry.h"
#include "support/random.h"
#include "support/tone_forms.h"
#include "support/tone_pictures.h"

namespace ovra_test {
namespace {

Picture16 TonedBy(const ToneExports& form, const Picture16& picture,
                  const OvraHyperToneParams& params, const std::vector<uint16_t>* curve = nullptr) {
  void* context = nullptr;
  const ToneExports::Init init = picture.depth_bits == 10 ? form.init : form.init_12;
  EXPECT_EQ(init(picture.Format(), &params, curve == nullptr ? nullptr : curve->data(), &context),
            OVRA_OK);
  Picture16 result = picture;
  EXPECT_EQ(form.run(picture.Bytes(), result.Bytes(), picture.width, picture.height,
                     picture.Format(), context),
            OVRA_OK);
  EXPECT_EQ(form.free(&context), OVRA_OK);
  EXPECT_EQ(context, nullptr);
  return result;
}

// The arithmetic, which is the same on every platform.
TEST(Tone, Anchors) {
  struct Case {
    OvraHyperToneParams params;
    uint32_t depth_bits;
    uint32_t hashes[4];
  };
  constexpr OvraHyperToneParams kOther = {0.75F, 1.25F, -0.25F, 1.5F, 0.0625F, 0.5F, 3, 0};
  const Case cases[] = {
      {kToneDefaults, 10, {0xd3cffa97, 0x97f809b9, 0x9879e008, 0x4c577fba}},
      {kToneDefaults, 12, {0xdd43d830, 0x5b1d4df0, 0x69696672, 0x71c38605}},
      {kOther, 10, {0xdb997a31, 0xa2dc7abd, 0x64d5a180, 0xd8f9450d}},
      {kOther, 12, {0xebbb9e76, 0xfd0bced6, 0x058debf2, 0xefa66fe2}},
  };
  ASSERT_EQ(Fnv1a(AnchorPicture(12)), 0xc741fe82);
  ASSERT_EQ(Fnv1a(AnchorPicture(10)), 0xf1171100);
  for (const Case& c : cases) {
    for (size_t i = 0; i < 4; ++i) {
      EXPECT_EQ(Fnv1a(TonedBy(kToneForms[i], AnchorPicture(c.depth_bits), c.params)), c.hashes[i])
          << kToneForms[i].name << ", " << c.depth_bits << " bits, scale " << c.params.scale;
    }
  }
}

// What is black but for the detail in it gets the gain of the quarter code above black: 2.25 / 0.25,
// held to 32767 / 8192.
TEST(Tone, BlackHasTheGainOfTheEntryAboveIt) {
  std::vector<uint16_t> curve(1024, 3);
  curve[0] = 2;
  Picture16 speck = Picture16(16, 16, 10);
  for (uint32_t c = 0; c < 3; ++c) speck.At(5, 5, c) = 1;
  const OvraHyperToneParams params = {1, 0, 0, 1, 0.12F, 1, 3, 0};
  const Picture16 toned = TonedBy(kToneForms[1], speck, params, &curve);
  ASSERT_STREQ(kToneForms[1].name, "HyperToneLight");
  EXPECT_EQ(toned.samples[3 * (16 * 5 + 5)], 4);
}

// Slopes, steps and noise in colours; repeatable.
Picture16 Scene(uint32_t width, uint32_t height, uint32_t depth_bits) {
  Picture16 picture(width, height, depth_bits);
  Random random(7);
  const auto max = static_cast<int32_t>(picture.MaxSample());
  for (uint32_t y = 0; y < height; ++y) {
    for (uint32_t x = 0; x < width; ++x) {
      const auto slope = static_cast<int32_t>((x * 9 + y * 5 + (x / 37 + y / 29) % 3 * 700) % 4096);
      for (uint32_t c = 0; c < 3; ++c) {
        const int32_t sample = slope + RandomInt(random, -90, 90) + 200 * static_cast<int32_t>(c);
        picture.At(x, y, c) =
            static_cast<uint16_t>(std::clamp(sample >> (12 - depth_bits), 0, max));
      }
    }
  }
  return picture;
}

Picture16 Grey(uint32_t width, uint32_t height, uint32_t depth_bits, uint32_t value) {
  return Picture16(width, height, depth_bits).FillGrey([=](uint32_t, uint32_t) { return value; });
}

class ToneForms : public testing::TestWithParam<ToneExports> {
 protected:
  static bool IsHybrid() { return GetParam().is_hybrid; }
  static Picture16 Toned(const Picture16& picture, const OvraHyperToneParams& params,
                         const std::vector<uint16_t>* curve = nullptr) {
    return TonedBy(GetParam(), picture, params, curve);
  }
};

TEST_P(ToneForms, NothingToDoGivesTheSource) {
  for (const uint32_t depth_bits : {10U, 12U}) {
    const Picture16 scene = Scene(150, 90, depth_bits);
    std::vector<uint16_t> same(scene.MaxSample() + 1);
    std::iota(same.begin(), same.end(), uint16_t{0});
    for (int32_t scale = 3; scale <= 8; ++scale) {
      const OvraHyperToneParams no_amount = {0, 1.5F, -0.5F, 1.5F, 0.15F, 0, scale, 0};
      EXPECT_EQ(Toned(scene, no_amount).samples, scene.samples) << scale;
      const OvraHyperToneParams unit = {1, 1, 1, 1, 0.05F, 1, scale, 0};
      EXPECT_EQ(Toned(scene, unit, &same).samples, scene.samples) << scale;
    }
  }
}

TEST_P(ToneForms, FlatGreysFollowTheCurve) {
  for (const uint32_t depth_bits : {10U, 12U}) {
    const uint32_t max = Picture16(1, 1, depth_bits).MaxSample();
    std::vector<uint16_t> curve(max + 1);
    for (uint32_t v = 0; v <= max; ++v) {
      curve[v] = static_cast<uint16_t>(std::min({399 * v / 100, v / 2 + max / 3, max}));
    }
    for (uint32_t v = 0; v <= max; v += max / 31) {
      const Picture16 flat = Grey(19, 9, depth_bits, v);
      OvraHyperToneParams params = {1, 1.2F, 0.8F, 1.4F, 0.03F, 0.5F, static_cast<int>(3 + v % 6),
                                    0};
      EXPECT_EQ(Toned(flat, params, &curve).samples, Grey(19, 9, depth_bits, curve[v]).samples);
      params.amount = 0.75F;
      const double x = static_cast<double>(v) / max;
      const double u = 1 - x;
      const double expected = max * (x + 0.75 * (1.2 * x * u * u * u - 0.8 * x * x * x * u));
      EXPECT_NEAR(Toned(flat, params).samples[0], expected, 1) << v;
    }
  }
}

TEST_P(ToneForms, ColoursKeepRatiosOrDifferences) {
  const Picture16 scene = Scene(130, 70, 12);
  const auto max = static_cast<int32_t>(scene.MaxSample());
  OvraHyperToneParams params = {1, 1, 0.4F, 1.3F, 0.12F, 1, 4, 0};
  for (const float colour : {1.0F, 0.0F}) {
    params.colour = colour;
    if (colour == 0 && !IsHybrid()) continue;
    const Picture16 toned = Toned(scene, params);
    EXPECT_NE(toned.samples, scene.samples);
    for (size_t i = 0; i < scene.samples.size(); i += 3) {
      const auto* const from = reinterpret_cast<const uint16_t*>(scene.Bytes()) + i;
      const auto* const to = reinterpret_cast<const uint16_t*>(toned.Bytes()) + i;
      const int32_t strongest = std::max({from[0], from[1], from[2]});
      const int32_t becomes = std::max({to[0], to[1], to[2]});
      const bool is_limited = std::min({to[0], to[1], to[2]}) == 0 || becomes == max;
      if (is_limited && !(IsHybrid() && colour == 1)) continue;
      for (int c = 0; c < 3; ++c) {
        if (colour == 1) {
          ASSERT_LE(std::abs(to[c] * strongest - from[c] * becomes), strongest) << i;
        } else {
          ASSERT_LE(std::abs(to[c] - to[0] - (from[c] - from[0])), 1) << i;
        }
      }
    }
  }
}

// The same picture with rows for columns.
Picture16 Turned(const Picture16& picture) {
  Picture16 turned(picture.height, picture.width, picture.depth_bits);
  EXPECT_EQ(OvraRotateImage(picture.Bytes(), turned.Bytes(), static_cast<int32_t>(picture.width),
                            static_cast<int32_t>(picture.height), picture.Format(),
                            OVRA_ROTATE_TRANSPOSE),
            OVRA_OK);
  return turned;
}

// What a step between two flats deviates from them, by the distance from the edge, in codes.
TEST_P(ToneForms, HalosAtStepsStaySmallAndEnd) {
  constexpr uint32_t kEdge = 192;
  const OvraHyperToneParams params = {1, 1, 0.5F, 1.25F, 0.12F, 1, 4, 0};
  struct Zone {
    uint32_t distance;
    double classic, hybrid;  // percent of the range
  };
  constexpr Zone kZones[] = {{64, 100 / 4096.0, 100 / 4096.0},
                             {32, 0.5, 0.3},
                             {16, 2.6, 1.4},
                             {4, 6, 4.2},
                             {0, 10.5, 7.5}};
  for (const uint32_t low : {40U, 600U, 1500U}) {
    for (const uint32_t step : {120U, 400U, 1100U, 2560U}) {
      for (const bool falls : {false, true}) {
        const uint32_t left = falls ? low + step : low;
        const uint32_t right = falls ? low : low + step;
        const Picture16 picture = Picture16(2 * kEdge, 24, 12).FillGrey([=](uint32_t x, uint32_t) {
          return x < kEdge ? left : right;
        });
        const int32_t flats[] = {Toned(Grey(8, 8, 12, left), params).samples[0],
                                 Toned(Grey(8, 8, 12, right), params).samples[0]};
        const Picture16 toned = Toned(picture, params);
        const Picture16 turned = Turned(Toned(Turned(picture), params));
        for (uint32_t x = 0; x < picture.width; ++x) {
          const uint32_t distance = x < kEdge ? kEdge - 1 - x : x - kEdge;
          const Zone& zone = *std::find_if(std::begin(kZones), std::end(kZones),
                                           [=](const Zone& z) { return z.distance <= distance; });
          double most = (IsHybrid() ? zone.hybrid : zone.classic) * 4096 / 100;
          if (IsHybrid() && step >= 2560 && distance >= 4) most = 1;
          for (const int32_t value : {toned.samples[3 * x], turned.samples[3 * x]}) {
            ASSERT_LE(std::abs(value - flats[x < kEdge ? 0 : 1]), most)
                << left << " to " << right << " at " << distance;
          }
        }
      }
    }
  }
}

TEST_P(ToneForms, RampsDoNotFall) {
  const OvraHyperToneParams params = {1, 1.5F, 1, 1.5F, 0.15F, 1, 4, 0};
  for (const uint32_t width : {2U, 5U, 13U, 40U, 150U}) {
    const Picture16 ramp = Picture16(400, 16, 12).FillGrey([=](uint32_t x, uint32_t) {
      return 300 + 2700 * (std::clamp(x, 120U, 120 + width) - 120) / width;
    });
    const Picture16 toned = Toned(ramp, params);
    for (uint32_t x = 121; x <= 120 + width; ++x) {
      ASSERT_GE(toned.samples[3 * x], toned.samples[3 * x - 3]) << width << ", " << x;
    }
  }
}

// A single pixel that is made brighter does not become darker, whatever it stands among.
TEST_P(ToneForms, PixelsKeepTheirOrder) {
  const OvraHyperToneParams params = IsHybrid()
                                         ? OvraHyperToneParams{1, 1, 0.5F, 1.25F, 0.12F, 1, 3, 0}
                                         : OvraHyperToneParams{1, 1.5F, 1, 1.5F, 0.15F, 1, 3, 0};
  for (const double grey : {100.0, 1500.0, 3500.0}) {
    Picture16 picture = NoisyGrey(21, 12, grey, 50);
    int32_t before = 0;
    for (uint32_t v = 0; v <= 4095; v += 15) {
      std::fill_n(&picture.At(10, 11), 3, static_cast<uint16_t>(v));
      const int32_t becomes = Toned(picture, params).At(10, 11);
      ASSERT_GE(becomes, before - 1) << v << " among " << grey;
      before = becomes;
    }
  }
}

TEST_P(ToneForms, NoiseGrowsNoMoreThanTheLight) {
  const OvraHyperToneParams params = {0.9F, 1.5F, 1, 1.5F, 0.1F, 1, 4, 0};
  for (const double x : {0.05, 0.2, 0.5, 0.8}) {
    const Picture16 noise = NoisyGrey(128, 12, x * 4095, 0.006 * 4096);
    const double grows = DeviationOf(Toned(noise, params).samples) / DeviationOf(noise.samples);
    EXPECT_LE(grows, (1 + 0.9 * 1.5 * std::pow(1 - x, 3)) * (1 + 0.9 * 0.5 * x / (x + 0.25)) * 1.03)
        << x;
  }
}

// The base of the pyramid is off by `edge` at most.
TEST_P(ToneForms, PixelsGetTheGainOfAToneNear) {
  if (IsHybrid()) return;
  const Picture16 bricks = Picture16(200, 120, 12).FillGrey([](uint32_t x, uint32_t y) {
    return (x / 23 + y / 17) % 5 * 1000 + (x * 7 + y * 13) % 90;
  });
  const Picture16 toned = Toned(bricks, {1, 1, 0.5F, 1, 0.12F, 1, 5, 0});
  for (size_t i = 0; i < bricks.samples.size(); i += 3) {
    double least = 4;
    double most = 0;
    for (int k = -60; k <= 60; ++k) {
      const double x = std::clamp(bricks.samples[i] / 4095.0 + 0.002 * k, 0.0, 1.0);
      const double gain = 1 + std::pow(1 - x, 3) - 0.5 * x * x * (1 - x);
      least = std::min(least, gain);
      most = std::max(most, gain);
    }
    ASSERT_LE(toned.samples[i], bricks.samples[i] * most + 2) << i;
    ASSERT_GE(toned.samples[i], bricks.samples[i] * least - 2) << i;
  }
}

TEST(Tone, LightFormsComeCloseToTheFullOnes) {
  const Picture16 scene = Picture16(480, 320, 12).FillGrey([](uint32_t x, uint32_t y) {
    const double slope = 900 + 2.0 * x + 300 * std::sin(x / 40.0) * std::cos(y / 30.0);
    return std::hypot(x - 150.0, y - 160.0) < 70 ? 0.3 * slope : slope + (x * y) % 60;
  });
  const auto peak_to_noise = [&](size_t full, const OvraHyperToneParams& params) {
    const Picture16 a = TonedBy(kToneForms[full], scene, params);
    const Picture16 b = TonedBy(kToneForms[full + 1], scene, params);
    double squares = 0;
    for (size_t i = 0; i < a.samples.size(); ++i)
      squares += std::pow(a.samples[i] - b.samples[i], 2);
    return 10 * std::log10(4095.0 * 4095 * static_cast<double>(a.samples.size()) / squares);
  };
  for (const size_t full : {0, 2}) {
    EXPECT_GE(peak_to_noise(full, kToneDefaults), 48) << full;
    EXPECT_GE(peak_to_noise(full, {1, 1.5F, 1, 1.5F, 0.12F, 1, 4, 0}), 40) << full;
  }
}

// A dark disc on a light ground, seen from some distance.
TEST_P(ToneForms, DiscTellsTheFamiliesApart) {
  const Picture16 disc = Picture16(512, 512, 12).FillGrey([](uint32_t x, uint32_t y) {
    return std::hypot(x - 256.0, y - 256.0) < 60 ? 123U : 2867U;
  });
  const OvraHyperToneParams params = {1, 1.5F, 1, 1, 0.12F, 1, 6, 0};
  const double flat = Toned(Grey(4, 4, 12, 2867), params).samples[0];
  const Picture16 toned = Toned(disc, params);
  double most = 0;
  for (uint32_t x = 256 + 70; x < 256 + 80; ++x) {
    most = std::max(most, std::abs(toned.samples[3 * (256 * 512 + x)] / flat - 1));
  }
  EXPECT_TRUE(IsHybrid() ? most < 0.002 : most > 0.01 && most < 0.05) << most;
}

TEST_P(ToneForms, TwelveBitsAreFourTimesTenBits) {
  const Picture16 ten = Scene(200, 120, 10);
  Picture16 twelve = ten;
  twelve.depth_bits = 12;
  for (uint16_t& sample : twelve.samples) sample = static_cast<uint16_t>(4 * sample);
  const Picture16 a = Toned(ten, kToneDefaults);
  const Picture16 b = Toned(twelve, kToneDefaults);
  for (size_t i = 0; i < a.samples.size(); ++i) {
    ASSERT_NEAR(4 * a.samples[i], b.samples[i], 8) << i;
  }
}

TEST_P(ToneForms, SymmetricInChannelsAndSpace) {
  const Picture16 scene = Scene(65, 33, 12);
  const auto swapped = [](Picture16 picture) {
    for (size_t i = 0; i < picture.samples.size(); i += 3) {
      std::swap(picture.samples[i], picture.samples[i + 2]);
    }
    picture.model = picture.model == OVRA_MODEL_RGB ? OVRA_MODEL_BGR : OVRA_MODEL_RGB;
    return picture;
  };
  const Picture16 toned = Toned(scene, kToneDefaults);
  EXPECT_EQ(swapped(Toned(swapped(scene), kToneDefaults)).samples, toned.samples);
  if (std::string(GetParam().name) != "HyperTone") return;
  // Reading all samples backwards turns the picture by half and swaps the channels. Both sides less one
  // are multiples of 2^scale.
  Picture16 backwards = scene;
  std::reverse(backwards.samples.begin(), backwards.samples.end());
  backwards.model = OVRA_MODEL_BGR;
  Picture16 back = Toned(backwards, kToneDefaults);
  std::reverse(back.samples.begin(), back.samples.end());
  EXPECT_EQ(back.samples, toned.samples);
}

INSTANTIATE_TEST_SUITE_P(All, ToneForms, testing::ValuesIn(kToneForms),
                         [](const auto& form) { return std::string(form.param.name); });

}  // namespace
}  // namespace ovra_test
