// SPDX-License-Identifier: MIT
// The built program as a user runs it: what commands.txt cannot say.
#include "ovra/filter.h"
#include "tools/run_program.h"

namespace ovra_test {
namespace {

// Each command hands its options over: compared with calls of the library.
TEST_F(ProgramTest, SmoothsAndSoftens) {
  const Image image = Noise(30, 20, 8, 3);
  Image expected = image;
  ASSERT_EQ(OvraEFilterImage(image.data(), expected.data(), 30, 20, image.format()), OVRA_OK);
  ExpectResult("smooth", image, expected);
  const OvraSoftFocusParams params = {500, 1, 0.2, {}, 0.8};
  ASSERT_EQ(OvraSoftFocus(image.data(), expected.data(), 30, 20, &params), OVRA_OK);
  ExpectResult("softfocus --radius 500 --decay 0.2 --mix 0.8", image, expected);
}

TEST_F(ProgramTest, Sharpens) {
  const Image image = Noise(30, 20, 8, 3);
  const int32_t taps[] = {10, 30, 48, 30, 10};
  const int32_t coarse[] = {16, 16, 16, 32, 16, 16, 16};
  const OvraResponsePoint levels[] = {{0.0, 0.5}, {1.0, 1.5}};
  const OvraResponsePoint differences[] = {{-1.0, 1.0}, {0.0, 0.25}, {1.0, 0.75}};
  int16_t level[OVRA_LEVEL_TABLE_SIZE];
  int16_t difference[OVRA_DIFFERENCE_TABLE_SIZE];
  ASSERT_EQ(OvraYUsmMakeTable(image.format(), 2, levels, 3, differences, level, difference),
            OVRA_OK);
  const std::string options =
      " --taps 10,30,48,30,10 --level 0:0.5,1:1.5 --difference -1:1,0:0.25,1:0.75";
  Image expected = image;
  ASSERT_EQ(OvraYUsmSingleStep(image.data(), expected.data(), 30, 20, image.format(), 5, taps, 3.0F,
                               level, difference),
            OVRA_OK);
  ExpectResult("sharpen --amount 3" + options, image, expected);
  ASSERT_EQ(
      OvraYUsmDoubleSingleStep(image.data(), expected.data(), 30, 20, image.format(), 7, coarse, 5,
                               taps, 1.5F, level, difference, 3.0F, level, difference),
      OVRA_OK);
  ExpectResult(
      "sharpen --double --amount 3 --coarse-amount 1.5 --coarse-taps 16,16,16,32,16,16,16" +
          options,
      image, expected);
}

// A sample that the mask leaves alone keeps the bits that the mask does not see.
TEST_F(ProgramTest, SharpensSixteenBits) {
  Image image(40, 40, FileFormat(16, 3));
  for (int32_t y = 0; y < 40; ++y) {
    for (size_t i = 0; i < 120; ++i) image.Row16(y)[i] = i < 60 ? 12345 : 45679;
  }
  Write("a.png", image);
  ExpectSuccess("sharpen --radius 1 a.png b.png");
  const Image sharp = Read("b.png");
  ASSERT_EQ(sharp.format(), image.format());
  EXPECT_EQ(sharp.Row16(20)[0], 12345);
  EXPECT_EQ(sharp.Row16(20)[119], 45679);
  EXPECT_LT(sharp.Row16(20)[59], 12345);
  EXPECT_GT(sharp.Row16(20)[60], 45679);
  EXPECT_EQ((sharp.Row16(20)[59] - 12345) % 4, 0);
}

}  // namespace
}  // namespace ovra_test
