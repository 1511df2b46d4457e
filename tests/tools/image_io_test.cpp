// SPDX-License-Identifier: MIT
// What commands.txt cannot say of files: bytes inside them, and tiles.
#include "image_io.h"

#include <png.h>
#include <tiffio.h>

#include "tools/run_program.h"

namespace {

using ovra_host::FileFormat;
using ovra_host::Image;
using ovra_host::ReadImage;
using ovra_test::TemporaryFolder;

TEST(ImageIo, SixteenBitPngIsBigEndianInTheFile) {
  const TemporaryFolder folder;
  Image image(1, 1, FileFormat(16, 1));
  *image.Row16(0) = 0x1234;
  ovra_host::WriteImage(image, folder.File("a.png"));
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

// A TIFF whose picture is `image`, in tiles.
void WriteTiles(const std::string& path, const Image& image) {
  constexpr int32_t kTile = 16;
  TIFF* const tiff = TIFFOpen(path.c_str(), "w");
  TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, image.width());
  TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, image.height());
  TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, image.depth_bits());
  TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, image.channels());
  TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_RGB);
  TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
  const uint16_t alpha = EXTRASAMPLE_UNASSALPHA;
  if (image.channels() == 4) TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, 1, &alpha);
  TIFFSetField(tiff, TIFFTAG_TILEWIDTH, kTile);
  TIFFSetField(tiff, TIFFTAG_TILELENGTH, kTile);
  const size_t pixel_bytes = image.row_bytes() / static_cast<size_t>(image.width());
  const size_t tile_row = kTile * pixel_bytes;
  for (int32_t top = 0; top < image.height(); top += kTile) {
    for (int32_t left = 0; left < image.width(); left += kTile) {
      std::vector<uint8_t> tile(kTile * tile_row);
      const size_t first = static_cast<size_t>(left) * pixel_bytes;
      for (int32_t y = 0; y < std::min(kTile, image.height() - top); ++y) {
        std::copy_n(image.Row(top + y) + first, std::min(tile_row, image.row_bytes() - first),
                    tile.begin() + y * static_cast<std::ptrdiff_t>(tile_row));
      }
      TIFFWriteTile(tiff, tile.data(), static_cast<uint32_t>(left), static_cast<uint32_t>(top), 0,
                    0);
    }
  }
  TIFFClose(tiff);
}

TEST(ImageIo, ReadsTiffInTiles) {
  const TemporaryFolder folder;
  for (const uint32_t depth_bits : {8U, 16U}) {
    for (const uint32_t channels : {3U, 4U}) {
      const Image image = ovra_test::Noise(37, 21, depth_bits, channels);
      WriteTiles(folder.File("a.tif"), image);
      const Image back = ReadImage(folder.File("a.tif"));
      ASSERT_EQ(back.width(), image.width());
      ASSERT_EQ(back.format(), image.format());
      EXPECT_EQ(ovra_test::Bytes(back), ovra_test::Bytes(image));
    }
  }
}

}  // namespace
