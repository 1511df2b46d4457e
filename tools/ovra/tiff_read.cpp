// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstring>
#include <vector>

#include "error.h"
#include "tiff_session.h"

namespace ovra_host {
namespace {

struct Layout {
  uint32_t width = 0;
  uint32_t height = 0;
  uint16_t bits = 0;
  uint16_t channels = 0;
  uint16_t photometric = 0;
  uint16_t planar = 0;
  bool associated_alpha = false;  // colours are already multiplied by alpha

  // Samples as they are wanted here, pixel by pixel.
  bool Direct() const {
    const bool grey = photometric == PHOTOMETRIC_MINISBLACK && channels == 1;
    const bool color = photometric == PHOTOMETRIC_RGB && (channels == 3 || channels == 4);
    return (bits == 8 || bits == 16) && planar == PLANARCONFIG_CONTIG && (grey || color);
  }
};

// Divides colours by the alpha that they were multiplied by.
template <class Sample>
void DivideByAlpha(Sample* pixel, int32_t count, uint32_t max) {
  for (Sample* const end = pixel + 4 * std::ptrdiff_t{count}; pixel != end; pixel += 4) {
    const uint64_t alpha = pixel[3];
    if (alpha == 0 || alpha == max) continue;
    for (int c = 0; c < 3; ++c) {
      const uint64_t color = (pixel[c] * uint64_t{max} + alpha / 2) / alpha;
      pixel[c] = static_cast<Sample>(std::min<uint64_t>(color, max));
    }
  }
}

void DivideByAlpha(Image& image) {
  for (int32_t y = 0; y < image.height(); ++y) {
    if (image.depth_bits() == 8) {
      DivideByAlpha(image.Row(y), image.width(), image.max_sample());
    } else {
      DivideByAlpha(image.Row16(y), image.width(), image.max_sample());
    }
  }
}

class TiffReader {
 public:
  explicit TiffReader(const InputFile& file)
      : file_(file), session_(file.stream(), file.path(), "rm"), layout_(ReadLayout()) {}

  Image Read() {
    if (!layout_.Direct()) return ReadConverted();
    Image image(layout_.width, layout_.height, FileFormat(layout_.bits, layout_.channels));
    if (TIFFIsTiled(tiff()) != 0) {
      ReadTiles(image);
    } else {
      ReadStrips(image);
    }
    if (layout_.associated_alpha && layout_.channels == 4) DivideByAlpha(image);
    return image;
  }

 private:
  TIFF* tiff() const { return session_.get(); }

  [[noreturn]] void RefuseWithMessage() const { file_.Refuse(session_.message()); }

  Layout ReadLayout() const {
    if (session_.failed()) RefuseWithMessage();
    Layout layout;
    layout.width = session_.Field<uint32_t>(TIFFTAG_IMAGEWIDTH);
    layout.height = session_.Field<uint32_t>(TIFFTAG_IMAGELENGTH);
    layout.bits = session_.Field<uint16_t>(TIFFTAG_BITSPERSAMPLE);
    layout.channels = session_.Field<uint16_t>(TIFFTAG_SAMPLESPERPIXEL);
    layout.photometric = session_.Field<uint16_t>(TIFFTAG_PHOTOMETRIC);
    layout.planar = session_.Field<uint16_t>(TIFFTAG_PLANARCONFIG);
    uint16_t extra_count = 0;
    const uint16_t* extra = nullptr;
    TIFFGetFieldDefaulted(tiff(), TIFFTAG_EXTRASAMPLES, &extra_count, &extra);
    layout.associated_alpha = extra_count > 0 && extra[0] == EXTRASAMPLE_ASSOCALPHA;
    const auto sample_format = session_.Field<uint16_t>(TIFFTAG_SAMPLEFORMAT);
    if (sample_format != SAMPLEFORMAT_UINT && sample_format != SAMPLEFORMAT_VOID) {
      file_.Refuse("TIFF: only unsigned whole numbers are read as samples");
    }
    const uint64_t bytes_per_pixel = layout.Direct() ? layout.bits / 8 * layout.channels : 4;
    file_.CheckClaim(layout.width, layout.height, bytes_per_pixel);
    return layout;
  }

  void ReadStrips(Image& image) const {
    CheckRowSize(image, TIFFScanlineSize64(tiff()));
    for (int32_t y = 0; y < image.height(); ++y) {
      if (TIFFReadScanline(tiff(), image.Row(y), static_cast<uint32_t>(y), 0) < 0) {
        RefuseWithMessage();
      }
    }
  }

  void ReadTiles(Image& image) const {
    const auto tile_width = session_.Field<uint32_t>(TIFFTAG_TILEWIDTH);
    const auto tile_height = session_.Field<uint32_t>(TIFFTAG_TILELENGTH);
    const size_t pixel_bytes = size_t{image.bytes_per_sample()} * image.channels();
    file_.CheckClaim(tile_width, tile_height, pixel_bytes);
    const size_t tile_row_bytes = tile_width * pixel_bytes;
    std::vector<uint8_t> tile(tile_row_bytes * tile_height);
    if (TIFFTileSize64(tiff()) != tile.size()) file_.Refuse("TIFF: its tile sizes do not agree");
    for (uint32_t top = 0; top < layout_.height; top += tile_height) {
      for (uint32_t left = 0; left < layout_.width; left += tile_width) {
        if (TIFFReadTile(tiff(), tile.data(), left, top, 0, 0) < 0) RefuseWithMessage();
        const uint32_t rows = std::min(tile_height, layout_.height - top);
        const size_t bytes = std::min(tile_width, layout_.width - left) * pixel_bytes;
        for (uint32_t y = 0; y < rows; ++y) {
          std::memcpy(image.Row(static_cast<int32_t>(top + y)) + left * pixel_bytes,
                      tile.data() + y * tile_row_bytes, bytes);
        }
      }
    }
  }

  void CheckRowSize(const Image& image, uint64_t file_row_bytes) const {
    if (file_row_bytes != image.row_bytes()) file_.Refuse("TIFF: its row sizes do not agree");
  }

  // Palettes, few bits, planes, luma with colour differences: libtiff makes 8-bit RGB of them, with
  // alpha, and colours multiplied by it.
  Image ReadConverted() const {
    if (layout_.bits > 8) {
      file_.Refuse("TIFF: of this colour model or arrangement only 8 bits a sample are read");
    }
    char reason[1024] = "";
    if (TIFFRGBAImageOK(tiff(), reason) == 0) file_.Refuse(std::string("TIFF: ") + reason);
    Image image(layout_.width, layout_.height, FileFormat(8, 4));
    std::vector<uint32_t> pixels(size_t{layout_.width} * layout_.height);
    // Asked for in the orientation that the file states, pixels come in the order they are stored.
    const auto orientation = session_.Field<uint16_t>(TIFFTAG_ORIENTATION);
    if (TIFFReadRGBAImageOriented(tiff(), layout_.width, layout_.height, pixels.data(), orientation,
                                  1) == 0) {
      RefuseWithMessage();
    }
    bool opaque = true;
    uint8_t* bytes = image.data();
    for (const uint32_t pixel : pixels) {
      opaque = opaque && TIFFGetA(pixel) == 255;
      *bytes++ = static_cast<uint8_t>(TIFFGetR(pixel));
      *bytes++ = static_cast<uint8_t>(TIFFGetG(pixel));
      *bytes++ = static_cast<uint8_t>(TIFFGetB(pixel));
      *bytes++ = static_cast<uint8_t>(TIFFGetA(pixel));
    }
    if (opaque) return WithoutAlpha(image);
    DivideByAlpha(image);
    return image;
  }

  static Image WithoutAlpha(const Image& image) {
    Image result(image.width(), image.height(), FileFormat(8, 3));
    for (int32_t y = 0; y < image.height(); ++y) {
      for (int32_t x = 0; x < image.width(); ++x) {
        std::memcpy(result.Row(y) + std::ptrdiff_t{3} * x, image.Row(y) + std::ptrdiff_t{4} * x, 3);
      }
    }
    return result;
  }

  const InputFile& file_;
  TiffSession session_;
  Layout layout_;
};

}  // namespace

Image ReadTiff(const InputFile& file) {
  return TiffReader(file).Read();
}

}  // namespace ovra_host
