// SPDX-License-Identifier: MIT
// An open TIFF file of libtiff that keeps its messages to itself.
#pragma once

#include <tiffio.h>

#include <cstdint>
#include <memory>

#include "codecs.h"

namespace ovra_host {

class TiffSession {
 public:
  // The stream stays its owner's; libtiff works on a copy of its descriptor. The mode is one of
  // TIFFOpen's.
  TiffSession(std::FILE* stream, const std::string& path, const char* mode);

  TIFF* get() const { return tiff_.get(); }
  bool failed() const { return tiff_ == nullptr || error_.text[0] != 0; }
  std::string message() const { return std::string("TIFF: ") + error_.text; }

  // The value of a field, or its default where the file has none.
  template <class Value>
  Value Field(ttag_t tag) const {
    Value value = 0;
    TIFFGetFieldDefaulted(get(), tag, &value);
    return value;
  }

 private:
  struct Closer {
    void operator()(TIFF* tiff) const { TIFFClose(tiff); }
  };

  ErrorText error_;  // outlives the handle, which writes to it
  std::unique_ptr<TIFF, Closer> tiff_;
};

// Remarks of a photograph in the fields of a TIFF file. Its EXIF data is put together from the file's
// directories, and taken apart into them.
Metadata TiffMetadata(const TiffSession& session, const InputFile& file);

// Before the first row of a new file. What it cannot hold is left out, with a line for the user.
void SetTiffMetadata(const TiffSession& session, const OutputFile& file, const Metadata& metadata);

}  // namespace ovra_host
