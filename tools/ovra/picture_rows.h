// SPDX-License-Identifier: MIT
// Pictures from and to files row by row, so that no file is too large for the memory: PNG, JPEG,
// TIFF, BMP, and in builds that have the libraries for them WebP and AVIF.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "files.h"
#include "image.h"
#include "metadata.h"

namespace ovra_host {

struct OpenOptions {
  uint64_t max_pixels = kUsualMaxPixels;
  int32_t page = 0;     // of a file of several, from 1; 0 takes the first and tells of the others
  int32_t eighths = 8;  // of its sides at which a JPEG is read: 1, 2, 4 or 8
};

struct WriteOptions {
  std::optional<int> quality = {};      // 1..100 in JPEG, WebP and AVIF; each has a usual one
  std::optional<int> compression = {};  // 0..9 in PNG
  uint32_t depth_bits = 0;              // 8 or 16; 0 keeps the picture's
  std::string background = {};  // the colour under a picture with alpha; empty keeps the alpha
  std::optional<std::string> stream_format = {};  // of standard output, as ".jpg"; usually ".png"
  Overwrite overwrite = Overwrite::kWritable;
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
// in order: interlaced PNG, progressive JPEG, TIFF in planes or of unusual samples, WebP, AVIF, which
// are taken into memory whole when the first row is read, or refused when they are too large for that.
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

  // What the user should know about the way the file is read, a line each.
  const std::vector<std::string>& notes() const { return notes_; }

 protected:
  RowReader() = default;
  PictureHeader header_;
  std::vector<std::string> notes_;
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
std::unique_ptr<RowReader> OpenPicture(const std::string& path, const OpenOptions& options = {});

// Begins a picture in the format that the extension of the name asks for; "-" is standard output. It is written beside under
// another name, so that a failure leaves an existing file as it was. Rows are taken in the format of
// the header, and brought to the depth and onto the background that the options ask for. Throws Error
// when the file format cannot hold the picture: 16 bits in JPEG, WebP and BMP, alpha in JPEG. Remarks
// that it cannot hold are left out, with a line for the user.
std::unique_ptr<RowWriter> CreatePicture(const std::string& path, const PictureHeader& header,
                                         const WriteOptions& options = {});

// Throws Error unless CreatePicture knows the extension, and the options are for its format.
void CheckOutput(const std::string& path, const WriteOptions& options = {});

}  // namespace ovra_host
