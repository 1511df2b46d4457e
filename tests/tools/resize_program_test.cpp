// SPDX-License-Identifier: MIT
// ovra resize: what commands.txt cannot say.
#include <tiffio.h>

#include "tools/run_program.h"

namespace ovra_test {
namespace {

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
