// SPDX-License-Identifier: MIT
// Pictures from and to files row by row, so that no file is too large for the memory: PNG, JPEG,
// TIFF and BMP.
#pragma once

#include <memory>
#include <string>

#include "image.h"
#include "metadata.h"

namespace ovra_host {

struct WriteOptions {
  int jpeg_quality = 92;  // 1..100
};

// What is known of a picture beside its pixels. Formats are those of FileFormat.
struct PictureHeader {
  int32_t width = 0;
  int32_t height = 0;
  OvraPixelFormatCode format = 0;
  Metadata metadata;

  uint32_t channels() const { return (format >> 4 & 15) + 1; }
  uint32_t depth_bits() const { return (format & 15) + 8; }
  size_t row_bytes() const {
    return size_t{depth_bits() > 8 ? 2U : 1U} * channels() * static_cast<size_t>(width);
  }
};

// A file being read. Memory grows with the width alone, except for files that do not hold their rows
// in order: interlaced PNG, progressive JPEG, TIFF in planes or of unusual samples, which are taken
// into memory whole, or refused when they are too large for that.
class RowReader {
 public:
  virtual ~RowReader() = default;
  RowReader(const RowReader&) = delete;
  RowReader& operator=(const RowReader&) = delete;

  // Remarks that stand behind the pixels are known after Finish.
  const PictureHeader& header() const { return header_; }

  // The next row of the picture as it is stored, from the top; header().row_bytes() bytes.
  virtual void ReadRow(uint8_t* row) = 0;

  // Called after the last row: reads what stands behind the pixels.
  virtual void Finish() {}

 protected:
  RowReader() = default;
  PictureHeader header_;
};

// A file being written, which appears under its name when it is finished.
class RowWriter {
 public:
  virtual ~RowWriter() = default;
  RowWriter(const RowWriter&) = delete;
  RowWriter& operator=(const RowWriter&) = delete;

  virtual void WriteRow(const uint8_t* row) = 0;

  // Called after the last row.
  virtual void Finish() = 0;

 protected:
  RowWriter() = default;
};

// Opens a picture as grey, RGB or RGBA with 8 or 16 bits a sample. What a file is, is told by its
// first bytes, not by its name. Palettes, fewer bits and grey with alpha are expanded. Whatever the
// bytes of the file are, opening and reading give rows or an Error of one line.
std::unique_ptr<RowReader> OpenPicture(const std::string& path);

// Begins a picture in the format that the extension of the name asks for. It is written beside under
// another name, so that a failure leaves an existing file as it was. Throws Error when the format
// cannot hold the picture: 16 bits or alpha in JPEG and BMP. Remarks that the format cannot hold are
// left out, with a line for the user.
std::unique_ptr<RowWriter> CreatePicture(const std::string& path, const PictureHeader& header,
                                         const WriteOptions& options = {});

// Throws Error unless CreatePicture knows the extension.
void CheckOutputName(const std::string& path);

}  // namespace ovra_host
