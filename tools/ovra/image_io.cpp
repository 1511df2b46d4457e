// SPDX-License-Identifier: MIT
#include "image_io.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <filesystem>
#include <string_view>

#include "codecs.h"
#include "error.h"
#include "files.h"

namespace ovra_host {
namespace {

using namespace std::string_view_literals;

struct Signature {
  std::string_view bytes;
  Image (*read)(const InputFile&);
};

constexpr std::array<Signature, 5> kSignatures = {{
    {"\x89PNG\r\n\x1a\n"sv, ReadPng},
    {"\xFF\xD8\xFF"sv, ReadJpeg},
    {"II*\0"sv, ReadTiff},
    {"MM\0*"sv, ReadTiff},
    {"BM"sv, ReadBmp},
}};

struct Extension {
  std::string_view name;
  void (*write)(const Image&, const OutputFile&, const WriteOptions&);
};

constexpr std::array<Extension, 6> kExtensions = {{
    {".png", WritePng},
    {".jpg", WriteJpeg},
    {".jpeg", WriteJpeg},
    {".tif", WriteTiff},
    {".tiff", WriteTiff},
    {".bmp", WriteBmp},
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
void CheckStorable(const Image& image, const std::string& path) {
  const bool depth_fits = image.depth_bits() == 8 || image.depth_bits() == 16;
  const OvraPixelFormatCode row_alignment = image.format() & 0x00F00000;
  const OvraPixelFormatCode wanted = FileFormat(image.depth_bits(), image.channels());
  if (!depth_fits || image.channels() == 2 || image.format() != (wanted | row_alignment)) {
    throw Error(path + ": only grey, RGB and RGBA of 8 or 16 bits a sample can be stored");
  }
}

}  // namespace

Image ReadImage(const std::string& path) {
  const InputFile file(path);
  std::array<char, 8> start = {};
  const size_t count = std::fread(start.data(), 1, start.size(), file.stream());
  std::rewind(file.stream());
  const std::string_view bytes(start.data(), count);
  for (const Signature& signature : kSignatures) {
    if (bytes.substr(0, signature.bytes.size()) == signature.bytes) {
      return signature.read(file);
    }
  }
  file.Refuse("is not a PNG, JPEG, TIFF or BMP file");
}

void WriteImage(const Image& image, const std::string& path, const WriteOptions& options) {
  const Extension& extension = FindExtension(path);
  CheckStorable(image, path);
  OutputFile file(path);
  extension.write(image, file, options);
  file.Commit();
}

void CheckOutputName(const std::string& path) {
  FindExtension(path);
}

}  // namespace ovra_host
