// SPDX-License-Identifier: MIT
#include "image_io.h"

#include <gtest/gtest.h>
#include <png.h>
#include <sys/stat.h>
#include <tiffio.h>

#include <algorithm>
#include <cstring>
#include <tuple>

#include "error.h"
#include "support/random.h"
#include "tools/temporary_folder.h"

namespace {

using ovra_host::FileFormat;
using ovra_host::Image;
using ovra_host::ReadImage;
using ovra_host::WriteImage;
using ovra_test::TemporaryFolder;

Image RandomImage(int32_t width, int32_t height, uint32_t depth_bits, uint32_t channels) {
  ovra_test::Random random(depth_bits + channels);
  Image image(width, height, FileFormat(depth_bits, channels));
  for (size_t i = 0; i < image.size_bytes(); ++i) {
    image.data()[i] = static_cast<uint8_t>(random() >> 24);
  }
  return image;
}

void ExpectSame(const Image& a, const Image& b) {
  ASSERT_EQ(a.width(), b.width());
  ASSERT_EQ(a.height(), b.height());
  ASSERT_EQ(a.format(), b.format());
  EXPECT_EQ(std::memcmp(a.data(), b.data(), a.size_bytes()), 0);
}

std::string ErrorOf(const std::string& path, const Image& image) {
  try {
    WriteImage(image, path);
  } catch (const ovra_host::Error& error) {
    return error.what();
  }
  return "";
}

// Extension, depth, channels.
using LosslessCase = std::tuple<const char*, uint32_t, uint32_t>;

class LosslessTest : public testing::TestWithParam<LosslessCase> {};

TEST_P(LosslessTest, ComesBackAsItWas) {
  const auto& [extension, depth_bits, channels] = GetParam();
  const TemporaryFolder folder;
  const std::string path = folder.File(std::string("picture") + extension);
  // Odd widths have rows that end between words; the large one spans several strips.
  for (const auto& [width, height] : {std::pair{1, 1}, {7, 5}, {301, 203}}) {
    const Image image = RandomImage(width, height, depth_bits, channels);
    WriteImage(image, path);
    ExpectSame(ReadImage(path), image);
  }
}

INSTANTIATE_TEST_SUITE_P(PngAndTiff, LosslessTest,
                         testing::Combine(testing::Values(".png", ".tif", ".TIFF"),
                                          testing::Values(8U, 16U), testing::Values(1U, 3U, 4U)));
INSTANTIATE_TEST_SUITE_P(Bmp, LosslessTest, testing::Values(LosslessCase{".bmp", 8, 3}));

TEST(ImageIo, SixteenBitPngIsBigEndianInTheFile) {
  const TemporaryFolder folder;
  Image image(1, 1, FileFormat(16, 1));
  *image.Row16(0) = 0x1234;
  WriteImage(image, folder.File("a.png"));
  std::FILE* const stream = std::fopen(folder.File("a.png").c_str(), "rb");
  png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png_create_info_struct(png);
  png_init_io(png, stream);
  png_read_png(png, info, PNG_TRANSFORM_IDENTITY, nullptr);
  const png_bytep row = png_get_rows(png, info)[0];
  EXPECT_EQ(row[0], 0x12);
  EXPECT_EQ(row[1], 0x34);
  png_destroy_read_struct(&png, &info, nullptr);
  std::fclose(stream);
}

TEST(ImageIo, JpegComesBackNearly) {
  const TemporaryFolder folder;
  for (const uint32_t channels : {1U, 3U}) {
    Image image(64, 48, FileFormat(8, channels));
    for (int32_t y = 0; y < image.height(); ++y) {
      for (size_t i = 0; i < image.row_bytes(); ++i) {
        image.Row(y)[i] = static_cast<uint8_t>(2 * y + static_cast<int32_t>(i / channels) + 20);
      }
    }
    WriteImage(image, folder.File("a.jpg"), {.jpeg_quality = 95});
    const Image back = ReadImage(folder.File("a.jpg"));
    ASSERT_EQ(back.format(), image.format());
    int32_t worst = 0;
    for (size_t i = 0; i < image.size_bytes(); ++i) {
      worst = std::max(worst, std::abs(image.data()[i] - back.data()[i]));
    }
    EXPECT_LE(worst, 6) << channels;
  }
}

TEST(ImageIo, LowerJpegQualityIsSmaller) {
  const TemporaryFolder folder;
  const Image image = RandomImage(64, 64, 8, 3);
  WriteImage(image, folder.File("low.jpg"), {.jpeg_quality = 20});
  WriteImage(image, folder.File("high.jpg"), {.jpeg_quality = 95});
  EXPECT_LT(2 * ovra_test::ReadBytes(folder.File("low.jpg")).size(),
            ovra_test::ReadBytes(folder.File("high.jpg")).size());
}

TEST(ImageIo, GreyInBmpComesBackAsColor) {
  const TemporaryFolder folder;
  const Image image = RandomImage(5, 3, 8, 1);
  WriteImage(image, folder.File("a.bmp"));
  const Image back = ReadImage(folder.File("a.bmp"));
  ASSERT_EQ(back.format(), FileFormat(8, 3));
  for (size_t i = 0; i < back.size_bytes(); ++i) EXPECT_EQ(back.data()[i], image.data()[i / 3]);
}

TEST(ImageIo, RefusesWhatTheFormatCannotHold) {
  const TemporaryFolder folder;
  const struct {
    const char* name;
    uint32_t depth_bits;
    uint32_t channels;
  } cases[] = {
      {"a.jpg", 16, 3}, {"a.jpg", 8, 4},  {"a.bmp", 16, 1}, {"a.bmp", 8, 4},
      {"a.gif", 8, 3},  {"a.png", 12, 3}, {"a.tif", 8, 2},  {"missing-folder/a.png", 8, 3}};
  for (const auto& c : cases) {
    const Image image(4, 4, FileFormat(c.depth_bits, c.channels));
    EXPECT_NE(ErrorOf(folder.File(c.name), image), "") << c.name;
  }
  EXPECT_EQ(folder.FileCount(), 0U);
}

TEST(ImageIo, WritesThroughALinkAndKeepsTheModeOfTheFile) {
  const TemporaryFolder folder;
  const Image image = RandomImage(3, 3, 8, 3);
  WriteImage(image, folder.File("real.png"));
  ASSERT_EQ(::chmod(folder.File("real.png").c_str(), 0640), 0);
  std::filesystem::create_symlink("real.png", folder.File("link.png"));
  const Image other = RandomImage(4, 4, 16, 3);
  WriteImage(other, folder.File("link.png"));
  EXPECT_TRUE(std::filesystem::is_symlink(folder.File("link.png")));
  ExpectSame(ReadImage(folder.File("real.png")), other);
  struct stat information;
  ASSERT_EQ(::stat(folder.File("real.png").c_str(), &information), 0);
  EXPECT_EQ(information.st_mode & 0777, 0640U);
}

// PNG files of the kinds that WriteImage does not make, as rows of packed samples.
struct PngKind {
  int bits;
  int color_type;
  int interlace;
  std::vector<uint8_t> rows;  // 2 x 2 pixels, one padded row after another
  bool transparent_color;
  OvraPixelFormatCode format;
  std::vector<uint8_t> samples;
};

void WritePngKind(const std::string& path, const PngKind& kind) {
  std::FILE* const stream = std::fopen(path.c_str(), "wb");
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png_create_info_struct(png);
  png_init_io(png, stream);
  png_set_IHDR(png, info, 2, 2, kind.bits, kind.color_type, kind.interlace, 0, 0);
  const png_color palette[] = {{10, 20, 30}, {40, 50, 60}, {70, 80, 90}};
  if (kind.color_type == PNG_COLOR_TYPE_PALETTE) png_set_PLTE(png, info, palette, 3);
  png_color_16 clear = {};
  png_byte alphas[] = {0, 128};
  if (kind.transparent_color) png_set_tRNS(png, info, alphas, 2, &clear);
  png_write_info(png, info);
  const size_t row_bytes = kind.rows.size() / 2;
  png_bytep rows[] = {const_cast<png_bytep>(kind.rows.data()),
                      const_cast<png_bytep>(kind.rows.data() + row_bytes)};
  png_write_image(png, rows);
  png_write_end(png, info);
  png_destroy_write_struct(&png, &info);
  std::fclose(stream);
}

TEST(ImageIo, ExpandsEveryKindOfPng) {
  const OvraPixelFormatCode grey = FileFormat(8, 1);
  const OvraPixelFormatCode rgb = FileFormat(8, 3);
  const OvraPixelFormatCode rgba = FileFormat(8, 4);
  const PngKind kinds[] = {
      // 1 bit grey; 4 bits grey interlaced
      {1, PNG_COLOR_TYPE_GRAY, 0, {0x80, 0x40}, false, grey, {255, 0, 0, 255}},
      {4, PNG_COLOR_TYPE_GRAY, 1, {0x0F, 0x30}, false, grey, {0, 255, 51, 0}},
      // palette of 2 bits, without and with alpha
      {2,
       PNG_COLOR_TYPE_PALETTE,
       0,
       {0x10, 0x90},
       false,
       rgb,
       {10, 20, 30, 40, 50, 60, 70, 80, 90, 40, 50, 60}},
      {2,
       PNG_COLOR_TYPE_PALETTE,
       0,
       {0x10, 0x90},
       true,
       rgba,
       {10, 20, 30, 0, 40, 50, 60, 128, 70, 80, 90, 255, 40, 50, 60, 128}},
      // grey with alpha; grey with one transparent value
      {8,
       PNG_COLOR_TYPE_GRAY_ALPHA,
       0,
       {1, 2, 3, 4, 5, 6, 7, 8},
       false,
       rgba,
       {1, 1, 1, 2, 3, 3, 3, 4, 5, 5, 5, 6, 7, 7, 7, 8}},
      {8,
       PNG_COLOR_TYPE_GRAY,
       0,
       {0, 9, 8, 7},
       true,
       rgba,
       {0, 0, 0, 0, 9, 9, 9, 255, 8, 8, 8, 255, 7, 7, 7, 255}},
  };
  const TemporaryFolder folder;
  for (const PngKind& kind : kinds) {
    WritePngKind(folder.File("a.png"), kind);
    const Image image = ReadImage(folder.File("a.png"));
    ASSERT_EQ(image.format(), kind.format);
    EXPECT_EQ(std::vector<uint8_t>(image.data(), image.data() + image.size_bytes()), kind.samples);
  }
}

// A TIFF whose picture is `image`, in tiles or planes or with another meaning of its samples.
struct TiffKind {
  bool tiled = false;
  bool planes = false;
  uint16_t extra = EXTRASAMPLE_UNASSALPHA;
  uint16_t photometric = PHOTOMETRIC_RGB;
  uint16_t sample_format = SAMPLEFORMAT_UINT;
};

void WriteTiffKind(const std::string& path, const Image& image, const TiffKind& kind) {
  constexpr uint32_t kTile = 16;
  TIFF* const tiff = TIFFOpen(path.c_str(), "w");
  TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, image.width());
  TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, image.height());
  TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, image.depth_bits());
  TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, image.channels());
  TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, kind.photometric);
  TIFFSetField(tiff, TIFFTAG_SAMPLEFORMAT, kind.sample_format);
  TIFFSetField(tiff, TIFFTAG_PLANARCONFIG,
               kind.planes ? PLANARCONFIG_SEPARATE : PLANARCONFIG_CONTIG);
  if (image.channels() == 4) TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, 1, &kind.extra);
  const size_t pixel_bytes = image.row_bytes() / static_cast<size_t>(image.width());
  if (kind.tiled) {
    TIFFSetField(tiff, TIFFTAG_TILEWIDTH, kTile);
    TIFFSetField(tiff, TIFFTAG_TILELENGTH, kTile);
    for (int32_t top = 0; top < image.height(); top += kTile) {
      for (int32_t left = 0; left < image.width(); left += kTile) {
        std::vector<uint8_t> tile(kTile * kTile * pixel_bytes);
        for (int32_t y = 0; y < int32_t{kTile} && top + y < image.height(); ++y) {
          const auto columns = static_cast<size_t>(std::min<int32_t>(kTile, image.width() - left));
          std::memcpy(tile.data() + static_cast<size_t>(y) * kTile * pixel_bytes,
                      image.Row(top + y) + static_cast<size_t>(left) * pixel_bytes,
                      columns * pixel_bytes);
        }
        TIFFWriteTile(tiff, tile.data(), static_cast<uint32_t>(left), static_cast<uint32_t>(top), 0,
                      0);
      }
    }
  } else if (kind.planes) {
    for (uint16_t c = 0; c < image.channels(); ++c) {
      for (int32_t y = 0; y < image.height(); ++y) {
        std::vector<uint8_t> row;
        for (size_t x = c; x < image.row_bytes(); x += image.channels()) {
          row.push_back(image.Row(y)[x]);
        }
        TIFFWriteScanline(tiff, row.data(), static_cast<uint32_t>(y), c);
      }
    }
  } else {
    for (int32_t y = 0; y < image.height(); ++y) {
      std::vector<uint8_t> row(image.Row(y), image.Row(y) + image.row_bytes());
      TIFFWriteScanline(tiff, row.data(), static_cast<uint32_t>(y), 0);
    }
  }
  TIFFClose(tiff);
}

TEST(ImageIo, ReadsTiffInTilesAndInPlanes) {
  const TemporaryFolder folder;
  const std::string path = folder.File("a.tif");
  for (const uint32_t depth_bits : {8U, 16U}) {
    for (const uint32_t channels : {3U, 4U}) {
      const Image image = RandomImage(37, 21, depth_bits, channels);
      WriteTiffKind(path, image, {.tiled = true});
      ExpectSame(ReadImage(path), image);
    }
  }
  const Image image = RandomImage(37, 21, 8, 3);
  WriteTiffKind(path, image, {.planes = true});
  ExpectSame(ReadImage(path), image);
}

TEST(ImageIo, UndoesTiffColorsMultipliedByAlpha) {
  const TemporaryFolder folder;
  Image image(1, 1, FileFormat(16, 4));
  const uint16_t multiplied[] = {1000, 2000, 0, 32768};
  std::memcpy(image.data(), multiplied, sizeof(multiplied));
  WriteTiffKind(folder.File("a.tif"), image, {.extra = EXTRASAMPLE_ASSOCALPHA});
  const Image back = ReadImage(folder.File("a.tif"));
  EXPECT_EQ(std::vector<uint16_t>(back.Row16(0), back.Row16(0) + 4),
            (std::vector<uint16_t>{2000, 4000, 0, 32768}));
}

TEST(ImageIo, ReadsAnInvertedTiffAndRefusesSignedSamples) {
  const TemporaryFolder folder;
  Image image(2, 1, FileFormat(8, 1));
  image.data()[1] = 200;
  WriteTiffKind(folder.File("a.tif"), image, {.photometric = PHOTOMETRIC_MINISWHITE});
  const Image back = ReadImage(folder.File("a.tif"));
  EXPECT_EQ(back.Row(0)[0], 255);
  EXPECT_EQ(back.Row(0)[back.channels()], 55);
  WriteTiffKind(folder.File("b.tif"), image,
                {.photometric = PHOTOMETRIC_MINISBLACK, .sample_format = SAMPLEFORMAT_INT});
  EXPECT_THROW(ReadImage(folder.File("b.tif")), ovra_host::Error);
}

}  // namespace
