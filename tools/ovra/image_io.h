// SPDX-License-Identifier: MIT
// Pictures from and to files: PNG, JPEG, TIFF and BMP.
#pragma once

#include <string>

#include "image.h"

namespace ovra_host {

struct WriteOptions {
  int jpeg_quality = 92;  // 1..100
};

// Reads a picture as grey, RGB or RGBA with 8 or 16 bits a sample. What a file is, is told by its
// first bytes, not by its name. Palettes, fewer bits and grey with alpha are expanded; pixels stay
// in the order in which they are stored; colour profiles and other remarks are dropped. Whatever
// the bytes of the file are, the answer is a picture or an Error of one line.
Image ReadImage(const std::string& path);

// Writes a picture in the format that the extension of the name asks for. It is written beside
// under another name and then renamed, so that a failure leaves an existing file as it was. Throws
// Error when the format cannot hold the picture: 16 bits or alpha in JPEG and BMP.
void WriteImage(const Image& image, const std::string& path, const WriteOptions& options = {});

// Throws Error unless WriteImage knows the extension.
void CheckOutputName(const std::string& path);

}  // namespace ovra_host
