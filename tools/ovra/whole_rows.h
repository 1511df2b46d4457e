// SPDX-License-Identifier: MIT
// Rows of formats whose libraries know whole pictures only.
#pragma once

#include <algorithm>
#include <optional>
#include <utility>

#include "codecs.h"

namespace ovra_host {

// Decoded when the first row is asked for, so that the header alone costs little.
class WholeReader : public RowReader {
 public:
  void ReadRow(uint8_t* row) override {
    if (!whole_) {
      whole_.emplace(header_.width, header_.height, header_.format);
      Decode(&*whole_);
    }
    std::copy_n(whole_->Row(next_row_++), header_.row_bytes(), row);
  }

 protected:
  // Fills the picture, or refuses the file.
  virtual void Decode(Image* image) = 0;

 private:
  std::optional<Image> whole_;
  int32_t next_row_ = 0;
};

// Encoded when all rows are there.
class WholeWriter : public RowWriter {
 public:
  WholeWriter(OutputPtr file, const PictureHeader& header)
      : file_(std::move(file)), whole_(header.width, header.height, header.format) {}

  void WriteRow(const uint8_t* row) override {
    std::copy_n(row, whole_.row_bytes(), whole_.Row(next_row_++));
  }

  void Finish() override {
    Encode(whole_);
    file_->Commit();
  }

 protected:
  // Writes the picture to the file, or refuses it.
  virtual void Encode(const Image& image) = 0;

  void Put(const uint8_t* bytes, size_t count) const {
    if (!file_->WriteAt(0, bytes, count)) file_->RefuseWithSystemMessage();
  }

  // What neither WebP nor AVIF has a place for.
  void NoteMetadata(const std::string& format, const Metadata& metadata) const {
    std::string names;
    const auto add = [&names](bool there, const char* name) {
      if (there) names += (names.empty() ? "" : ", ") + std::string(name);
    };
    add(!metadata.iptc.empty(), "IPTC data");
    add(!metadata.comment.empty(), "comment");
    add(metadata.resolution.x > 0, "resolution");
    if (!names.empty()) NoteLeftOut(*file_, format + " has no place for " + names);
  }

  OutputPtr file_;

 private:
  Image whole_;
  int32_t next_row_ = 0;
};

}  // namespace ovra_host
