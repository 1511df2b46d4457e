// SPDX-License-Identifier: MIT
// Whole pictures from and to files.
#pragma once

#include <string>

#include "image.h"
#include "metadata.h"
#include "picture_rows.h"

namespace ovra_host {

struct ReadOptions {
  OpenOptions open = {};
  bool auto_orient = true;  // turn the picture as its orientation tag says, and reset the tag
  bool strip = false;       // drop all remarks but the profile
  bool to_srgb = false;     // convert colors by the profile
};

struct Picture {
  Image image;
  Metadata metadata;
};

// Reads a picture with all its remarks. What the user should know about it goes to standard error.
Picture ReadPicture(const std::string& path, const ReadOptions& options = {});
Picture ReadPicture(RowReader& reader, const std::string& path, const ReadOptions& options);
void PrintNotes(const RowReader& reader, const std::string& path);
void WritePicture(const Picture& picture, const std::string& path,
                  const WriteOptions& options = {});

// The pixels alone.
Image ReadImage(const std::string& path, const ReadOptions& options = {});
void WriteImage(const Image& image, const std::string& path, const WriteOptions& options = {});

// The picture turned by a mode of OvraRotateImage.
Image Rotated(const Image& image, int32_t mode);

// The mode that brings a picture of this EXIF orientation upright.
int32_t ModeForOrientation(uint16_t orientation);

}  // namespace ovra_host
