// SPDX-License-Identifier: MIT
#include <algorithm>
#include <vector>

#include "error.h"
#include "tiff_session.h"

namespace ovra_host {

void WriteTiff(const Image& image, const OutputFile& file, const WriteOptions&) {
  const TiffSession session(file.stream(), file.path(), "w");
  if (session.failed()) file.Refuse(session.message());
  TIFF* const tiff = session.get();
  TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, static_cast<uint32_t>(image.width()));
  TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, static_cast<uint32_t>(image.height()));
  TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, image.depth_bits());
  TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, image.channels());
  TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC,
               image.channels() == 1 ? PHOTOMETRIC_MINISBLACK : PHOTOMETRIC_RGB);
  TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
  TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_LZW);
  TIFFSetField(tiff, TIFFTAG_PREDICTOR, PREDICTOR_HORIZONTAL);
  TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, TIFFDefaultStripSize(tiff, 0));
  if (image.channels() == 4) {
    const uint16_t alpha = EXTRASAMPLE_UNASSALPHA;
    TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, 1, &alpha);
  }
  std::vector<uint8_t> row(image.row_bytes());  // a copy: libtiff's predictor works in place
  for (int32_t y = 0; y < image.height() && !session.failed(); ++y) {
    std::copy_n(image.Row(y), row.size(), row.begin());
    TIFFWriteScanline(tiff, row.data(), static_cast<uint32_t>(y), 0);
  }
  if (TIFFFlush(tiff) == 0 || session.failed()) file.Refuse(session.message());
}

}  // namespace ovra_host
