// SPDX-License-Identifier: MIT
// ovra clarity and ovra tone: what their options become, and what stays as it was.
#include "clarity.h"
#include "ovra/tone.h"
#include "picture_forms.h"
#include "tools/run_program.h"

namespace ovra_test {
namespace {

// Compared with the library's result at 12 bits: the dither stays within a step, on both sides.
TEST_F(ProgramTest, ToneHandsItsOptionsOver) {
  const Image image = Noise(70, 50, 8, 3);
  const Image wide = ovra_host::WithDepth(image, 12);
  Image expected(70, 50, wide.format());
  const OvraHyperToneParams params = {0.9F, 1.0F, 0.2F, 1.1F, 0.1F, 0.5F, 4, 0};
  void* context = nullptr;
  ASSERT_EQ(OvraHybridHyperToneLight_Init_12(wide.format(), &params, nullptr, &context), OVRA_OK);
  ASSERT_EQ(OvraHybridHyperToneLight(wide.data(), expected.data(), 70, 50, wide.format(), context),
            OVRA_OK);
  OvraHybridHyperToneLight_Free(&context);
  Write("a.png", image);
  ExpectSuccess(
      "tone --amount 0.9 --shadows 1 --highlights 0.2 --local-contrast 1.1 --edge 0.1 "
      "--colour 0.5 --scale 4 --form hybrid-light a.png b.png");
  const Image result = Read("b.png");
  double sum = 0;
  for (int32_t y = 0; y < 50; ++y) {
    for (size_t i = 0; i < 210; ++i) {
      const double off = result.Row(y)[i] - expected.Row16(y)[i] * 255.0 / 4095;
      EXPECT_LT(std::abs(off), 1) << i;
      sum += off;
    }
  }
  EXPECT_NEAR(sum / 10500, 0, 0.02);
}

// The four bits below the twelve go through the gain: a smooth ramp stays one.
TEST_F(ProgramTest, ToneKeepsDeepRampsSmooth) {
  Image image(2048, 16, FileFormat(16, 3));
  for (int32_t y = 0; y < 16; ++y) {
    for (size_t i = 0; i < 6144; ++i) image.Row16(y)[i] = static_cast<uint16_t>(9000 + i / 3 * 2);
  }
  Write("a.tif", image);
  ExpectSuccess("tone a.tif b.tif");
  const Image result = Read("b.tif");
  std::vector<uint16_t> tones(result.Row16(8), result.Row16(8) + 6144);
  std::sort(tones.begin(), tones.end());
  const auto distinct = std::unique(tones.begin(), tones.end()) - tones.begin();
  EXPECT_GT(distinct, 1000);  // rounded to 12 bits there are 256 and some
}

TEST_F(ProgramTest, ClarityHandsItsOptionsOver) {
  const Image image = Noise(70, 50, 16, 3);
  const OvraMultiFrequencyParams params = {
      2, 0.5F, 0.25F, 0, {{2, 0.01F, 0.5F, 0.2F}, {0.5F, 0, 0, 1}}};
  Image expected = image;
  ASSERT_EQ(OvraMultiFrequency(image.data(), expected.data(), 70, 50, image.format(), &params),
            OVRA_OK);
  ExpectResult("clarity --bands 2:0.01:0.5:0.2,0.5 --base-gain 0.5 --pivot 0.25", image, expected);
}

TEST(Clarity, SlidersBecomeBandsThatSuitTheSize) {
  const OvraMultiFrequencyParams small = ovra_host::ClarityParams({.clarity = 1}, 1200, 900, 0.001);
  EXPECT_EQ(small.band_count, 6U);
  EXPECT_FLOAT_EQ(small.band[3].gain, 1.5F);
  EXPECT_FLOAT_EQ(small.band[0].gain, 1);
  const OvraMultiFrequencyParams large =
      ovra_host::ClarityParams({.clarity = 1}, 6000, 4000, 0.001);
  EXPECT_EQ(large.band_count, 8U);
  EXPECT_FLOAT_EQ(large.band[5].gain, 1.5F);
  // All at once, and very noisy: still accepted by the library.
  const OvraMultiFrequencyParams all = ovra_host::ClarityParams({1, 1, 1, 1, 1}, 100, 100, 0.3);
  Image image(20, 20, FileFormat(8, 3));
  EXPECT_EQ(OvraMultiFrequency(image.data(), image.data(), 20, 20, image.format(), &all), OVRA_OK);
}

TEST(Clarity, NoiseIsToldFromThePicture) {
  Random random(5);
  std::normal_distribution<double> noise(0, 0.02 * 255);
  Image image(400, 300, FileFormat(8, 1));
  for (int32_t y = 0; y < 300; ++y) {
    for (int32_t x = 0; x < 400; ++x) {
      const double scene = 60 + x / 4 + (x / 50 % 2 == 0 ? 40 : 0);
      image.Row(y)[x] = static_cast<uint8_t>(std::lround(scene + noise(random)));
    }
  }
  EXPECT_NEAR(EstimateNoise(image), 0.02, 0.002);
  EXPECT_LT(EstimateNoise(Image(400, 300, FileFormat(16, 3))), 1e-9);
  EXPECT_EQ(EstimateNoise(Image(2, 2, FileFormat(8, 1))), 0);
}

}  // namespace
}  // namespace ovra_test
