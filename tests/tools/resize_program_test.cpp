// SPDX-License-Identifier: MIT
// ovra resize: sizes, parts, turns, bands.
#include <tiffio.h>

#include <cstring>

#include "exif.h"
#include "support/random.h"
#include "tools/run_program.h"

namespace {

using ovra_host::FileFormat;
using ovra_host::Image;
using ovra_test::Bytes;
using ovra_test::PeakMemory;
using ovra_test::ProgramTest;

Image Noisy(int32_t width, int32_t height, uint32_t depth_bits, uint32_t channels) {
  ovra_test::Random random(static_cast<uint32_t>(width));
  Image image(width, height, FileFormat(depth_bits, channels));
  for (size_t i = 0; i < image.size_bytes(); ++i) {
    image.data()[i] = static_cast<uint8_t>(random() >> 24);
  }
  return image;
}

// EXIF data that holds nothing but an orientation.
ovra_host::Blob Orientation(uint8_t value) {
  return {'I', 'I', 42, 0, 8, 0,     0, 0, 1, 0, 0x12, 0x01, 3,
          0,   1,   0,  0, 0, value, 0, 0, 0, 0, 0,    0,    0};
}

// In one step with the resize, and as steps of their own: stored turned, upright, turned again.
TEST_F(ProgramTest, ResizesAndTurnsInOneStep) {
  const Image image = Noisy(61, 47, 8, 3);
  for (const uint8_t orientation : {1, 2, 6, 7}) {
    ovra_host::Picture picture = {image, {}};
    picture.metadata.exif = Orientation(orientation);
    WritePicture(picture, folder_.File("a.tif"));
    ASSERT_EQ(Run("rotate --mode none a.tif upright.tif").exit_code, 0);
    for (const char* turn : {"none", "left", "half", "transpose"}) {
      for (const char* size : {"--scale 0.4", "--crop 3,5,40,30 --scale 1.5",
                               "--crop 3,5,40,30 --scale 70%", "--width 20"}) {
        const std::string options = std::string(size) + " --turn " + turn;
        ASSERT_EQ(Run("resize " + options + " a.tif b.tif").exit_code, 0) << options;
        ASSERT_EQ(Run("resize " + options + " upright.tif c.tif").exit_code, 0) << options;
        const Image joined = Read("b.tif");
        const Image upright = Read("c.tif");
        ASSERT_EQ(joined.width(), upright.width()) << options;
        // The resize truncates weights: mirrored, it is off by a little.
        for (size_t i = 0; i < joined.size_bytes(); ++i) {
          ASSERT_NEAR(joined.data()[i], upright.data()[i], 2) << options << int{orientation};
        }
      }
      ASSERT_EQ(Run(std::string("resize --scale 0.4 upright.tif c.tif")).exit_code, 0);
      ASSERT_EQ(Run(std::string("rotate c.tif d.tif --mode ") + turn).exit_code, 0);
      ASSERT_EQ(Run(std::string("resize --scale 0.4 upright.tif b.tif --turn ") + turn).exit_code,
                0);
      EXPECT_EQ(Bytes(Read("b.tif")), Bytes(Read("d.tif"))) << turn;
    }
  }
}

TEST_F(ProgramTest, ResizesPicturesOfAnySize) {
  for (const auto& [width, height] : {std::pair{1, 1}, {3, 2}, {5, 40}, {40, 7}}) {
    Image image(width, height, FileFormat(8, 3));
    std::fill_n(image.data(), image.size_bytes(), uint8_t{90});
    Write("a.png", image);
    for (const char* options : {"--scale 7", "--scale 0.9", "--scale 0.45", "--fast --scale 0.4"}) {
      ASSERT_EQ(Run(std::string("resize a.png b.png ") + options).exit_code, 0) << options << width;
      for (const uint8_t sample : Bytes(Read("b.png"))) ASSERT_NEAR(sample, 90, 1) << options;
    }
  }
}

// Transparent pixels give no color: a red disc on transparent green keeps a red rim.
TEST_F(ProgramTest, AveragesColorsByAlpha) {
  Image image(40, 40, FileFormat(8, 4));
  for (int32_t y = 0; y < 40; ++y) {
    for (int32_t x = 0; x < 40; ++x) {
      const uint8_t red[] = {200, 0, 0, 255};
      const uint8_t clear_green[] = {0, 255, 0, 0};
      std::memcpy(image.Row(y) + 4 * x, x + y < 37 ? red : clear_green, 4);
    }
  }
  Write("a.png", image);
  for (const char* options : {"", "--bands 7 "}) {
    ASSERT_EQ(Run(std::string("resize --scale 0.6 ") + options + "a.png b.png").exit_code, 0);
    const Image result = Read("b.png");
    for (size_t i = 0; i < result.size_bytes(); i += 4) {
      if (result.data()[i + 3] <= 8) continue;
      ASSERT_LT(result.data()[i + 1], 6) << options << i;
    }
  }
  ASSERT_EQ(Run("resize --straight --scale 0.6 a.png b.png").exit_code, 0);
  const std::vector<uint8_t> straight = Bytes(Read("b.png"));
  bool mixed = false;
  for (size_t i = 0; i < straight.size(); i += 4)
    mixed |= straight[i + 3] > 100 && straight[i + 1] > 20;
  EXPECT_TRUE(mixed);
}

TEST_F(ProgramTest, BandsGiveTheBytesOfTheWhole) {
  for (const char* name : {"a.png", "a.jpg", "a.tif", "a.bmp"}) {
    Write(name, Noisy(90, 70, 8, 3));
    for (const char* options : {"--fast --scale 0.2", "--scale 0.7", "--scale 1.5 --turn left",
                                "--crop 10,5,60,50 --scale 0.6"}) {
      const std::string command = std::string("resize ") + options + " " + name;
      ASSERT_EQ(Run(command + " b.png").exit_code, 0);
      for (const char* rows : {"1", "13", "500"}) {
        ASSERT_EQ(Run(command + " c.png --bands " + rows).exit_code, 0) << command;
        EXPECT_EQ(Bytes(Read("b.png")), Bytes(Read("c.png"))) << command << rows;
      }
    }
  }
}

// 60000 pixels wide, the lower half lighter than the upper one; eight columns of tones. Strips are
// written again and again as they were packed once.
void WriteLargeTiff(const std::string& path, uint32_t height, uint16_t channels) {
  constexpr uint32_t kWidth = 60000;
  constexpr uint32_t kStripRows = 100;
  const size_t row_bytes = size_t{kWidth} * channels;
  for (const bool packing : {true, false}) {
    static std::vector<uint8_t> packed[2];
    TIFF* const tiff = TIFFOpen(path.c_str(), packing ? "w" : "w8");
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, kWidth);
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, packing ? 2 * kStripRows : height);
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 8);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, channels);
    TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC,
                 channels == 1 ? PHOTOMETRIC_MINISBLACK : PHOTOMETRIC_RGB);
    TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_PACKBITS);
    TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, kStripRows);
    if (packing) {
      std::vector<uint8_t> strip(row_bytes * kStripRows);
      for (uint32_t half = 0; half < 2; ++half) {
        for (size_t i = 0; i < strip.size(); ++i) {
          strip[i] = static_cast<uint8_t>(i % row_bytes * 8 / row_bytes * 16 + 100 * half);
        }
        TIFFWriteEncodedStrip(tiff, half, strip.data(), static_cast<tmsize_t>(strip.size()));
      }
      TIFFClose(tiff);
      TIFF* const read = TIFFOpen(path.c_str(), "r");
      for (uint32_t half = 0; half < 2; ++half) {
        packed[half].resize(TIFFRawStripSize64(read, half));
        TIFFReadRawStrip(read, half, packed[half].data(), -1);
      }
      TIFFClose(read);
      continue;
    }
    for (uint32_t s = 0; s < height / kStripRows; ++s) {
      std::vector<uint8_t>& bytes = packed[s >= height / kStripRows / 2 ? 1 : 0];
      TIFFWriteRawStrip(tiff, s, bytes.data(), static_cast<tmsize_t>(bytes.size()));
    }
    TIFFClose(tiff);
  }
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
