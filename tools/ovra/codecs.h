// SPDX-License-Identifier: MIT
// One reader and one writer a file format. Readers are given the file at its start and treat its
// bytes as hostile; writers are given a header that CreatePicture has accepted.
#pragma once

#include <cstdio>
#include <memory>
#include <string>

#include "files.h"
#include "picture_rows.h"

namespace ovra_host {

// A message of a C library, kept where a long jump cannot lose it.
struct ErrorText {
  char text[200] = "";

  // Keeps the first message: later ones are its consequences.
  void Set(const char* message) {
    if (text[0] == 0) std::snprintf(text, sizeof(text), "%s", message);
  }
};

// Tells the user that a remark stays behind.
inline void NoteLeftOut(const OutputFile& file, const std::string& what) {
  file.Note(what + "; left out");
}

// Where a format takes more bits than it has.
[[noreturn]] inline void RefuseDeep(const OutputFile& file, const std::string& format) {
  file.Refuse(format + " holds 8 bits a sample; use --depth 8, PNG or TIFF");
}

// Formats whose libraries may be missing where the program is built.
constexpr bool kHasWebp = OVRA_HAS_WEBP;
constexpr bool kHasAvif = OVRA_HAS_AVIF;

std::unique_ptr<RowReader> OpenPng(InputFile file, const OpenOptions& options);
std::unique_ptr<RowReader> OpenJpeg(InputFile file, const OpenOptions& options);
std::unique_ptr<RowReader> OpenTiff(InputFile file, const OpenOptions& options);
std::unique_ptr<RowReader> OpenBmp(InputFile file, const OpenOptions& options);
std::unique_ptr<RowReader> OpenWebp(InputFile file, const OpenOptions& options);
std::unique_ptr<RowReader> OpenAvif(InputFile file, const OpenOptions& options);

using OutputPtr = std::unique_ptr<OutputFile>;
std::unique_ptr<RowWriter> CreatePng(OutputPtr file, const PictureHeader& header,
                                     const WriteOptions& options);
std::unique_ptr<RowWriter> CreateJpeg(OutputPtr file, const PictureHeader& header,
                                      const WriteOptions& options);
std::unique_ptr<RowWriter> CreateTiff(OutputPtr file, const PictureHeader& header,
                                      const WriteOptions& options);
std::unique_ptr<RowWriter> CreateBmp(OutputPtr file, const PictureHeader& header,
                                     const WriteOptions& options);
std::unique_ptr<RowWriter> CreateWebp(OutputPtr file, const PictureHeader& header,
                                      const WriteOptions& options);
std::unique_ptr<RowWriter> CreateAvif(OutputPtr file, const PictureHeader& header,
                                      const WriteOptions& options);

}  // namespace ovra_host
