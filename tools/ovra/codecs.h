// SPDX-License-Identifier: MIT
// One reader and one writer a file format. Readers are given the file at its start and treat its
// bytes as hostile; writers are given a picture that CheckStorable has accepted.
#pragma once

#include <cstdio>

#include "files.h"
#include "image.h"
#include "image_io.h"

namespace ovra_host {

// A message of a C library, kept where a long jump cannot lose it.
struct ErrorText {
  char text[200] = "";

  // Keeps the first message: later ones are its consequences.
  void Set(const char* message) {
    if (text[0] == 0) std::snprintf(text, sizeof(text), "%s", message);
  }
};

Image ReadPng(const InputFile& file);
Image ReadJpeg(const InputFile& file);
Image ReadTiff(const InputFile& file);
Image ReadBmp(const InputFile& file);

void WritePng(const Image& image, const OutputFile& file, const WriteOptions& options);
void WriteJpeg(const Image& image, const OutputFile& file, const WriteOptions& options);
void WriteTiff(const Image& image, const OutputFile& file, const WriteOptions& options);
void WriteBmp(const Image& image, const OutputFile& file, const WriteOptions& options);

}  // namespace ovra_host
