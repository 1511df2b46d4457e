// SPDX-License-Identifier: MIT
#include <algorithm>
#include <utility>
#include <vector>

#include "error.h"
#include "tiff_session.h"

namespace ovra_host {
namespace {

// From here on, offsets of 32 bits may not reach when the compression gains nothing.
constexpr uint64_t kMaxClassicBytes = 3'900'000'000;

const char* ModeFor(const PictureHeader& header) {
  const uint64_t bytes = uint64_t{header.row_bytes()} * static_cast<uint64_t>(header.height);
  return bytes > kMaxClassicBytes ? "w8" : "w";
}

class TiffWriter : public RowWriter {
 public:
  TiffWriter(OutputPtr file, const PictureHeader& header)
      : file_(std::move(file)),
        session_(file_->stream(), file_->path(), ModeFor(header)),
        row_(header.row_bytes()) {
    if (session_.failed()) file_->Refuse(session_.message());
    TIFF* const tiff = session_.get();
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, static_cast<uint32_t>(header.width));
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, static_cast<uint32_t>(header.height));
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, header.depth_bits());
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, header.channels());
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC,
                 header.channels() == 1 ? PHOTOMETRIC_MINISBLACK : PHOTOMETRIC_RGB);
    TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_LZW);
    TIFFSetField(tiff, TIFFTAG_PREDICTOR, PREDICTOR_HORIZONTAL);
    TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, TIFFDefaultStripSize(tiff, 0));
    if (header.channels() == 4) {
      const uint16_t alpha = EXTRASAMPLE_UNASSALPHA;
      TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, 1, &alpha);
    }
    SetTiffMetadata(session_, *file_, header.metadata);
  }

  void WriteRow(const uint8_t* row) override {
    std::copy_n(row, row_.size(), row_.begin());  // libtiff's predictor works in place
    TIFFWriteScanline(session_.get(), row_.data(), next_row_++, 0);
    if (session_.failed()) file_->Refuse(session_.message());
  }

  void Finish() override {
    if (TIFFFlush(session_.get()) == 0 || session_.failed()) file_->Refuse(session_.message());
    file_->Commit();
  }

 private:
  OutputPtr file_;
  TiffSession session_;
  std::vector<uint8_t> row_;
  uint32_t next_row_ = 0;
};

}  // namespace

std::unique_ptr<RowWriter> CreateTiff(OutputPtr file, const PictureHeader& header,
                                      const WriteOptions&) {
  return std::make_unique<TiffWriter>(std::move(file), header);
}

}  // namespace ovra_host
