// SPDX-License-Identifier: MIT
// EXIF data: a small TIFF file without pixels, carried as one blob. Whatever its bytes are, these
// functions stay inside them; what they do not understand they leave alone.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "metadata.h"

namespace ovra_host {

// How the stored picture has to be turned to be seen upright: 1 (as it is) to 8.
constexpr uint16_t kUpright = 1;
uint16_t ExifOrientation(const Blob& exif);

// For pixels that have been turned, or changed in size: the tag says upright, the size is this one,
// and the small preview, which shows the picture as it was, is unlinked.
void SetExifUpright(Blob* exif);
void SetExifSize(Blob* exif, int32_t width, int32_t height);

// Reads `bytes` bytes from an offset of a file; false where it has no such bytes.
using ReadBytesAt = std::function<bool(uint64_t offset, uint8_t* to, size_t bytes)>;

// What a TIFF file holds of it, as a blob: the tags that describe the photograph, none of those that
// describe its pixels, and this orientation. Empty without any.
Blob ExifOfTiff(const ReadBytesAt& read, uint16_t orientation);

// A blob in which the orientation is this one, where that says more than none.
Blob WithOrientation(Blob exif, uint16_t orientation);

// Some write the mark with which JPEG introduces EXIF data before it in other formats, too.
Blob WithoutExifMark(Blob exif);

// The parts of a blob for a TIFF file: texts of its first directory (tag, text), and the directories
// of the photograph and the place, made for a certain offset in a little-endian file.
struct ExifForTiff {
  std::vector<std::pair<uint16_t, std::string>> texts;
  Blob directories;
  uint32_t exif_offset = 0;  // in the file; 0 without
  uint32_t gps_offset = 0;
};
ExifForTiff SplitExif(const Blob& exif, uint32_t offset);

}  // namespace ovra_host
