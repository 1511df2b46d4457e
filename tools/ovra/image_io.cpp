// SPDX-License-Identifier: MIT
#include "image_io.h"

#include <array>
#include <utility>
#include <vector>

#include "error.h"
#include "exif.h"
#include "ovra/geometry.h"
#include "srgb.h"

namespace ovra_host {
namespace {

Image MakeImage(const PictureHeader& header, const std::string& path) {
  try {
    return Image(header.width, header.height, header.format);
  } catch (const Error& error) {
    throw Error(path + ": " + error.what());
  }
}

// Files hold rows without padding, and nothing but top-down ones.
void WriteRows(const Image& image, const Metadata& metadata, const std::string& path,
               const WriteOptions& options) {
  const OvraPixelFormatCode row_alignment = image.format() & 0x00F00000;
  const auto writer = CreatePicture(
      path, {image.width(), image.height(), image.format() & ~row_alignment, metadata}, options);
  for (int32_t y = 0; y < image.height(); ++y) writer->WriteRow(image.Row(y));
  writer->Finish();
}

}  // namespace

void PrintNotes(const RowReader& reader, const std::string& path) {
  for (const std::string& note : reader.notes()) PrintNote(path + ": " + note);
}

Picture ReadPicture(const std::string& path, const ReadOptions& options) {
  return ReadPicture(*OpenPicture(path, options.open), path, options);
}

Picture ReadPicture(RowReader& reader, const std::string& path, const ReadOptions& options) {
  Image image = MakeImage(reader.header(), path);
  for (int32_t y = 0; y < image.height(); ++y) reader.ReadRow(image.Row(y));
  reader.Finish();
  PrintNotes(reader, path);
  Picture picture = {std::move(image), reader.header().metadata};
  const uint16_t orientation = ExifOrientation(picture.metadata.exif);
  if (options.auto_orient && orientation != kUpright) {
    picture.image = Rotated(picture.image, ModeForOrientation(orientation));
    SetExifUpright(&picture.metadata.exif);
  }
  if (options.to_srgb) ConvertToSrgb(&picture);
  if (options.strip) StripMetadata(&picture.metadata);
  return picture;
}

void WritePicture(const Picture& picture, const std::string& path, const WriteOptions& options) {
  WriteRows(picture.image, picture.metadata, path, options);
}

Image ReadImage(const std::string& path, const ReadOptions& options) {
  return ReadPicture(path, options).image;
}

void WriteImage(const Image& image, const std::string& path, const WriteOptions& options) {
  WriteRows(image, {}, path, options);
}

Image Rotated(const Image& image, int32_t mode) {
  if (mode == OVRA_ROTATE_NONE) return image;
  const bool exchanged = mode % 2 != 0;  // the odd modes exchange width and height
  Image result(exchanged ? image.height() : image.width(),
               exchanged ? image.width() : image.height(), image.format());
  CheckStatus(OvraRotateImage(image.data(), result.data(), image.width(), image.height(),
                              image.format(), mode),
              "OvraRotateImage");
  return result;
}

int32_t ModeForOrientation(uint16_t orientation) {
  constexpr std::array<int32_t, 9> kModes = {
      OVRA_ROTATE_NONE,          OVRA_ROTATE_NONE,           OVRA_ROTATE_MIRROR,
      OVRA_ROTATE_HALF,          OVRA_ROTATE_FLIP,           OVRA_ROTATE_TRANSPOSE,
      OVRA_ROTATE_QUARTER_RIGHT, OVRA_ROTATE_ANTI_TRANSPOSE, OVRA_ROTATE_QUARTER_LEFT};
  return orientation < kModes.size() ? kModes[orientation] : int32_t{OVRA_ROTATE_NONE};
}

}  // namespace ovra_host
