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

std::unique_ptr<RowReader> OpenPng(InputFile file);
std::unique_ptr<RowReader> OpenJpeg(InputFile file);
std::unique_ptr<RowReader> OpenTiff(InputFile file);
std::unique_ptr<RowReader> OpenBmp(InputFile file);

using OutputPtr = std::unique_ptr<OutputFile>;
std::unique_ptr<RowWriter> CreatePng(OutputPtr file, const PictureHeader& header,
                                     const WriteOptions& options);
std::unique_ptr<RowWriter> CreateJpeg(OutputPtr file, const PictureHeader& header,
                                      const WriteOptions& options);
std::unique_ptr<RowWriter> CreateTiff(OutputPtr file, const PictureHeader& header,
                                      const WriteOptions& options);
std::unique_ptr<RowWriter> CreateBmp(OutputPtr file, const PictureHeader& header,
                                     const WriteOptions& options);

}  // namespace ovra_host
