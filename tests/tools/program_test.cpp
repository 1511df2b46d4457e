// SPDX-License-Identifier: MIT
// The built program as a user runs it: what commands.txt cannot say.
#include <tiffio.h>

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

// 60000 pixels wide, the lower half lighter than the upper one; eight columns of tones. Each tone is
// packed as runs of 125 bytes.
void WriteLargeTiff(const std::string& path, uint32_t height, uint16_t channels) {
  constexpr uint32_t kStripRows = 100;
  TIFF* const tiff = TIFFOpen(path.c_str(), "w8");
  TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, 60000);
  TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, height);
  TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 8);
  TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, channels);
  TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
  TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, channels == 1 ? PHOTOMETRIC_MINISBLACK : PHOTOMETRIC_RGB);
  TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_PACKBITS);
  TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, kStripRows);
  constexpr int kRun = 125;
  const int runs = 60000 / 8 / kRun * channels;
  for (uint32_t s = 0; s < height / kStripRows; ++s) {
    std::vector<uint8_t> strip;
    for (int tone = 0; tone < int{kStripRows} * 8 * runs; ++tone) {
      const int level = tone / runs % 8 * 16 + (s < height / kStripRows / 2 ? 0 : 100);
      strip.push_back(uint8_t{257 - kRun});
      strip.push_back(static_cast<uint8_t>(level));
    }
    TIFFWriteRawStrip(tiff, s, strip.data(), static_cast<tmsize_t>(strip.size()));
  }
  TIFFClose(tiff);
}

TEST_F(ProgramTest, HugePicturesAreReducedInLittleMemory) {
  // A sanitizer is slow, and what it holds itself is counted too.
  constexpr uint32_t kHeight = OVRA_SANITIZED ? 1000 : 40000;
  constexpr int64_t kMostMemory = int64_t{OVRA_SANITIZED ? 2000 : 200} << 20;
  for (const uint16_t channels : {uint16_t{1}, uint16_t{3}}) {
    WriteLargeTiff(folder_.File("large.tif"), kHeight, channels);
    const int64_t peak = PeakMemory({"ovra", "resize", "--width", "600", "--bands", "64",
                                     folder_.File("large.tif"), folder_.File("small.png")});
    std::printf("%u channels: %.1f MB\n", channels, static_cast<double>(peak) / 1e6);
    ASSERT_GT(peak, 0);
    EXPECT_LT(peak, kMostMemory);
    const Image small = Read("small.png");
    ASSERT_EQ(small.width(), 600);
    ASSERT_EQ(small.height(), static_cast<int32_t>(kHeight / 100));
    for (int32_t x = 40; x < 600; x += 75) {
      const auto column = static_cast<size_t>(x) * channels;
      EXPECT_NEAR(small.Row(1)[column], x / 75 * 16, 1);
      EXPECT_NEAR(small.Row(small.height() - 2)[column], x / 75 * 16 + 100, 1);
    }
  }
}

}  // namespace
}  // namespace ovra_test
