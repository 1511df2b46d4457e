// SPDX-License-Identifier: MIT
#include "picture_rows.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <filesystem>
#include <string_view>
#include <utility>

#include "codecs.h"
#include "error.h"
#include "exif.h"
#include "files.h"

namespace ovra_host {
namespace {

using namespace std::string_view_literals;

struct Signature {
  std::string_view bytes;
  std::unique_ptr<RowReader> (*open)(InputFile);
};

constexpr std::array<Signature, 7> kSignatures = {{
    {"\x89PNG\r\n\x1a\n"sv, OpenPng},
    {"\xFF\xD8\xFF"sv, OpenJpeg},
    {"II*\0"sv, OpenTiff},
    {"MM\0*"sv, OpenTiff},
    {"II+\0"sv, OpenTiff},  // with offsets of 64 bits
    {"MM\0+"sv, OpenTiff},
    {"BM"sv, OpenBmp},
}};

struct Extension {
  std::string_view name;
  std::unique_ptr<RowWriter> (*create)(OutputPtr, const PictureHeader&, const WriteOptions&);
};

constexpr std::array<Extension, 6> kExtensions = {{
    {".png", CreatePng},
    {".jpg", CreateJpeg},
    {".jpeg", CreateJpeg},
    {".tif", CreateTiff},
    {".tiff", CreateTiff},
    {".bmp", CreateBmp},
}};

const Extension& FindExtension(const std::string& path) {
  std::string name = std::filesystem::path(path).extension().string();
  std::transform(name.begin(), name.end(), name.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  const auto* const found = std::find_if(kExtensions.begin(), kExtensions.end(),
                                         [&](const Extension& e) { return e.name == name; });
  if (found == kExtensions.end()) {
    throw Error(path + ": an output's name ends in .png, .jpg, .jpeg, .tif, .tiff or .bmp");
  }
  return *found;
}

// Files hold grey, RGB and RGBA of 8 or 16 bits, from the top.
void CheckStorable(const PictureHeader& header, const std::string& path) {
  const bool depth_fits = header.depth_bits() == 8 || header.depth_bits() == 16;
  if (!depth_fits || header.channels() == 2 ||
      header.format != FileFormat(header.depth_bits(), header.channels())) {
    throw Error(path + ": only grey, RGB and RGBA of 8 or 16 bits a sample can be stored");
  }
}

}  // namespace

std::unique_ptr<RowReader> OpenPicture(const std::string& path) {
  InputFile file(path);
  std::array<char, 8> start = {};
  const size_t count = std::fread(start.data(), 1, start.size(), file.stream());
  std::rewind(file.stream());
  const std::string_view bytes(start.data(), count);
  for (const Signature& signature : kSignatures) {
    if (bytes.substr(0, signature.bytes.size()) == signature.bytes) {
      return signature.open(std::move(file));
    }
  }
  file.Refuse("is not a PNG, JPEG, TIFF or BMP file");
}

std::unique_ptr<RowWriter> CreatePicture(const std::string& path, const PictureHeader& header,
                                         const WriteOptions& options) {
  const Extension& extension = FindExtension(path);
  CheckStorable(header, path);
  PictureHeader fitting = header;
  SetExifSize(&fitting.metadata.exif, header.width, header.height);
  auto file = std::make_unique<OutputFile>(path);
  if (!fitting.metadata.profile.empty() &&
      !ProfileFits(fitting.metadata.profile, header.channels())) {
    NoteLeftOut(*file, "its colour profile is not one for these channels");
    fitting.metadata.profile.clear();
  }
  return extension.create(std::move(file), fitting, options);
}

void CheckOutputName(const std::string& path) {
  FindExtension(path);
}

}  // namespace ovra_host
