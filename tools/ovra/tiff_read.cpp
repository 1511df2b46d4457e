// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstring>
#include <optional>
#include <utility>
#include <vector>

#include "error.h"
#include "srgb.h"
#include "tiff_session.h"

namespace ovra_host {
namespace {

// More than any file of pages holds; the ones behind them do not count.
constexpr int32_t kMaxPages = 100'000;

struct Layout {
  uint32_t width = 0;
  uint32_t height = 0;
  uint16_t bits = 0;
  uint16_t channels = 0;
  uint16_t photometric = 0;
  uint16_t planar = 0;
  bool has_alpha = false;
  bool associated_alpha = false;  // colours are already multiplied by alpha

  bool IsCmyk() const { return photometric == PHOTOMETRIC_SEPARATED && channels == 4; }

  // Samples as they are wanted here, or four inks, pixel by pixel.
  bool Direct() const {
    const bool grey = photometric == PHOTOMETRIC_MINISBLACK && channels == 1;
    const bool color = photometric == PHOTOMETRIC_RGB && (channels == 3 || channels == 4);
    const bool inks = IsCmyk() && bits == 8;
    return (bits == 8 || bits == 16) && planar == PLANARCONFIG_CONTIG && (grey || color || inks);
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

// A band of rows that the file does not hold one by one.
struct Band {
  std::vector<uint8_t> bytes;
  uint32_t first = 0;
  uint32_t end = 0;  // the row behind the last one
};

class TiffReader : public RowReader {
 public:
  TiffReader(InputFile file, int32_t page)
      : file_(std::move(file)), session_(file_.stream(), file_.path(), "rm") {
    if (session_.failed()) RefuseWithMessage();
    ChoosePage(page);
    layout_ = ReadLayout();
    header_.width = static_cast<int32_t>(layout_.width);
    header_.height = static_cast<int32_t>(layout_.height);
    header_.metadata = TiffMetadata(session_, file_);
    if (!layout_.Direct()) {
      CheckConvertible();
      header_.format = FileFormat(8, layout_.has_alpha ? 4 : 3);
      return;
    }
    header_.format = FileFormat(layout_.bits, layout_.IsCmyk() ? 3 : layout_.channels);
    if (layout_.IsCmyk()) ConvertInks();
    const bool tiled = TIFFIsTiled(tiff()) != 0;
    if (!tiled && TIFFScanlineSize64(tiff()) != StoredRowBytes()) {
      file_.Refuse("TIFF: its row sizes do not agree");
    }
    if (tiled) PrepareTiles();
  }

  void ReadRow(uint8_t* row) override {
    if (!cmyk_) return ReadStoredRow(row);
    ReadStoredRow(inks_.data());
    cmyk_->ConvertRow(inks_.data(), row, header_.width);
  }

 private:
  void ReadStoredRow(uint8_t* row) {
    const uint32_t y = next_row_++;
    if (!layout_.Direct() && band_.bytes.empty()) ReadConverted();
    if (tile_.empty() && band_.bytes.empty()) {
      if (TIFFReadScanline(tiff(), row, y, 0) < 0) RefuseWithMessage();
    } else {
      if (y >= band_.end) ReadTiles();
      std::memcpy(row, band_.bytes.data() + StoredRowBytes() * (y - band_.first), StoredRowBytes());
    }
    if (!layout_.Direct() || !layout_.associated_alpha || header_.channels() != 4) return;
    if (header_.depth_bits() == 8) {
      DivideByAlpha(row, header_.width, UINT8_MAX);
    } else {
      DivideByAlpha(reinterpret_cast<uint16_t*>(row), header_.width, UINT16_MAX);
    }
  }

  TIFF* tiff() const { return session_.get(); }

  [[noreturn]] void RefuseWithMessage() const { file_.Refuse(session_.message()); }

  // Of the pages that are not small copies of another.
  void ChoosePage(int32_t page) {
    int32_t pages = 0;
    tdir_t chosen = 0;
    do {
      const auto kind = session_.Field<uint32_t>(TIFFTAG_SUBFILETYPE);
      if ((kind & (FILETYPE_REDUCEDIMAGE | FILETYPE_MASK)) != 0) continue;
      if (++pages == std::max(page, 1)) chosen = TIFFCurrentDirectory(tiff());
    } while (pages < kMaxPages && TIFFReadDirectory(tiff()) != 0);
    if (page > std::max(pages, 1)) {
      file_.Refuse("TIFF: --page " + std::to_string(page) + ", but it has " +
                   std::to_string(pages) + (pages == 1 ? " page" : " pages"));
    }
    if (page == 0 && pages > 1) {
      notes_.push_back("the first of " + std::to_string(pages) +
                       " pages is read; --page N takes another");
    }
    if (TIFFSetDirectory(tiff(), chosen) == 0) RefuseWithMessage();
  }

  Layout ReadLayout() const {
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
    layout.has_alpha =
        layout.associated_alpha || (extra_count > 0 && extra[0] == EXTRASAMPLE_UNASSALPHA);
    const auto sample_format = session_.Field<uint16_t>(TIFFTAG_SAMPLEFORMAT);
    if (sample_format != SAMPLEFORMAT_UINT && sample_format != SAMPLEFORMAT_VOID) {
      file_.Refuse("TIFF: only unsigned whole numbers are read as samples");
    }
    const uint64_t bytes_per_pixel = layout.Direct() ? layout.bits / 8 * layout.channels : 4;
    const bool plain = session_.Field<uint16_t>(TIFFTAG_COMPRESSION) == COMPRESSION_NONE;
    file_.CheckClaim(
        layout.width, layout.height, bytes_per_pixel,
        layout.Direct() && plain ? InputFile::Holds::kPlainSamples : InputFile::Holds::kCompressed);
    return layout;
  }

  void PrepareTiles() {
    const auto tile_width = session_.Field<uint32_t>(TIFFTAG_TILEWIDTH);
    const auto tile_height = session_.Field<uint32_t>(TIFFTAG_TILELENGTH);
    file_.CheckClaim(tile_width, tile_height, PixelBytes());
    const uint64_t tile_bytes = uint64_t{tile_width} * tile_height * PixelBytes();
    const uint64_t band_bytes = uint64_t{StoredRowBytes()} * tile_height;
    if (TIFFTileSize64(tiff()) != tile_bytes) file_.Refuse("TIFF: its tile sizes do not agree");
    if (std::max(tile_bytes, band_bytes) > static_cast<uint64_t>(kMaxImageBytes)) {
      file_.Refuse("TIFF: its tiles are too large");
    }
    tile_.resize(tile_bytes);
    band_.bytes.resize(band_bytes);
  }

  // Reads the next row of tiles.
  void ReadTiles() {
    const auto tile_width = session_.Field<uint32_t>(TIFFTAG_TILEWIDTH);
    const auto tile_height = session_.Field<uint32_t>(TIFFTAG_TILELENGTH);
    const size_t tile_row_bytes = tile_width * PixelBytes();
    band_.first = band_.end;
    band_.end += std::min(tile_height, layout_.height - band_.first);
    for (uint32_t left = 0; left < layout_.width; left += tile_width) {
      if (TIFFReadTile(tiff(), tile_.data(), left, band_.first, 0, 0) < 0) RefuseWithMessage();
      const size_t bytes = std::min(tile_width, layout_.width - left) * PixelBytes();
      for (uint32_t y = 0; y < band_.end - band_.first; ++y) {
        std::memcpy(band_.bytes.data() + y * StoredRowBytes() + left * PixelBytes(),
                    tile_.data() + y * tile_row_bytes, bytes);
      }
    }
  }

  // Rows as the file has them, or as libtiff makes them of what is converted whole.
  size_t StoredRowBytes() const { return cmyk_ ? inks_.size() : header_.row_bytes(); }

  void ConvertInks() {
    constexpr bool kNoInkIs255 = false;
    try {
      cmyk_.emplace(header_.metadata.profile, kNoInkIs255);
    } catch (const Error& error) {
      file_.Refuse(error.what());
    }
    notes_.push_back(cmyk_->note());
    header_.metadata.profile = cmyk_->profile();
    inks_.resize(size_t{4} * layout_.width);
  }

  size_t PixelBytes() const { return size_t{layout_.bits} / 8 * layout_.channels; }

  // Palettes, few bits, planes, luma with colour differences: libtiff makes 8-bit RGB of them, with
  // alpha, and colours multiplied by it. It needs the whole picture for that.
  void CheckConvertible() const {
    if (layout_.bits > 8) {
      file_.Refuse("TIFF: of this colour model or arrangement only 8 bits a sample are read");
    }
    char reason[1024] = "";
    if (TIFFRGBAImageOK(tiff(), reason) == 0) file_.Refuse(std::string("TIFF: ") + reason);
    const uint64_t bytes = uint64_t{4} * layout_.width * layout_.height;
    if (bytes > static_cast<uint64_t>(kMaxImageBytes)) file_.Refuse("TIFF: is too large");
  }

  void ReadConverted() {
    const uint64_t count = uint64_t{layout_.width} * layout_.height;
    std::vector<uint32_t> pixels(count);
    // Asked for in the orientation that the file states, pixels come in the order they are stored.
    const auto orientation = session_.Field<uint16_t>(TIFFTAG_ORIENTATION);
    if (TIFFReadRGBAImageOriented(tiff(), layout_.width, layout_.height, pixels.data(), orientation,
                                  1) == 0) {
      RefuseWithMessage();
    }
    band_.bytes.reserve(count * header_.channels());
    band_.end = layout_.height;
    for (const uint32_t pixel : pixels) {
      const uint8_t samples[] = {
          static_cast<uint8_t>(TIFFGetR(pixel)), static_cast<uint8_t>(TIFFGetG(pixel)),
          static_cast<uint8_t>(TIFFGetB(pixel)), static_cast<uint8_t>(TIFFGetA(pixel))};
      band_.bytes.insert(band_.bytes.end(), samples, samples + header_.channels());
    }
    if (layout_.has_alpha)
      DivideByAlpha(band_.bytes.data(), static_cast<int32_t>(count), UINT8_MAX);
  }

  InputFile file_;
  TiffSession session_;
  Layout layout_;
  std::optional<CmykConversion> cmyk_;
  std::vector<uint8_t> inks_;
  std::vector<uint8_t> tile_;
  Band band_;
  uint32_t next_row_ = 0;
};

}  // namespace

std::unique_ptr<RowReader> OpenTiff(InputFile file, const OpenOptions& options) {
  return std::make_unique<TiffReader>(std::move(file), options.page);
}

}  // namespace ovra_host
