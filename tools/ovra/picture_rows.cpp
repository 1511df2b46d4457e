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
#include "fitted_rows.h"

namespace ovra_host {
namespace {

using namespace std::string_view_literals;

// Null where this build lacks the library for a format.
constexpr auto kOpenWebp = kHasWebp ? OpenWebp : nullptr;
constexpr auto kOpenAvif = kHasAvif ? OpenAvif : nullptr;
constexpr auto kCreateWebp = kHasWebp ? CreateWebp : nullptr;
constexpr auto kCreateAvif = kHasAvif ? CreateAvif : nullptr;

struct Signature {
  const char* format;
  size_t offset;
  std::string_view bytes;
  std::unique_ptr<RowReader> (*open)(InputFile, const OpenOptions&);
};

constexpr std::array<Signature, 11> kSignatures = {{
    {"PNG", 0, "\x89PNG\r\n\x1a\n"sv, OpenPng},
    {"JPEG", 0, "\xFF\xD8\xFF"sv, OpenJpeg},
    {"TIFF", 0, "II*\0"sv, OpenTiff},
    {"TIFF", 0, "MM\0*"sv, OpenTiff},
    {"TIFF", 0, "II+\0"sv, OpenTiff},  // with offsets of 64 bits
    {"TIFF", 0, "MM\0+"sv, OpenTiff},
    {"BMP", 0, "BM"sv, OpenBmp},
    {"WebP", 8, "WEBP"sv, kOpenWebp},
    {"AVIF", 4, "ftypavif"sv, kOpenAvif},
    {"AVIF", 4, "ftypavis"sv, kOpenAvif},  // a sequence
    {"AVIF", 4, "ftypmif1"sv, kOpenAvif},  // any still picture of this kind of file
}};
constexpr size_t kSignatureBytes = 12;

struct Extension {
  const char* format;
  std::string_view name;
  std::unique_ptr<RowWriter> (*create)(OutputPtr, const PictureHeader&, const WriteOptions&);
};

constexpr std::array<Extension, 8> kExtensions = {{
    {"PNG", ".png", CreatePng},
    {"JPEG", ".jpg", CreateJpeg},
    {"JPEG", ".jpeg", CreateJpeg},
    {"TIFF", ".tif", CreateTiff},
    {"TIFF", ".tiff", CreateTiff},
    {"BMP", ".bmp", CreateBmp},
    {"WebP", ".webp", kCreateWebp},
    {"AVIF", ".avif", kCreateAvif},
}};

const Extension& FindExtension(const std::string& path, const WriteOptions& options) {
  std::string name = path == kStandardStream ? options.stream_format.value_or(".png")
                                             : std::filesystem::path(path).extension().string();
  std::transform(name.begin(), name.end(), name.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  const auto* const found = std::find_if(kExtensions.begin(), kExtensions.end(),
                                         [&](const Extension& e) { return e.name == name; });
  if (found == kExtensions.end()) {
    throw Error(path +
                ": an output's name ends in .png, .jpg, .jpeg, .tif, .tiff, .bmp, .webp or .avif");
  }
  if (found->create == nullptr) {
    throw Error(path + ": this program was built without " + found->format);
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

std::unique_ptr<RowReader> OpenPicture(const std::string& path, const OpenOptions& options) {
  InputFile file(path, options.max_pixels);
  std::array<char, kSignatureBytes> start = {};
  const size_t count = std::fread(start.data(), 1, start.size(), file.stream());
  std::rewind(file.stream());
  const std::string_view bytes(start.data(), count);
  for (const Signature& signature : kSignatures) {
    const auto& [format, offset, expected, open] = signature;
    if (count < offset || bytes.substr(offset, expected.size()) != expected) continue;
    if (open == nullptr) file.Refuse(std::string("this program was built without ") + format);
    if (options.page > 1 && open != OpenTiff) {
      file.Refuse("--page " + std::to_string(options.page) + ": of a " + format +
                  " file there is one page");
    }
    return open(std::move(file), options);
  }
  file.Refuse("is not a PNG, JPEG, TIFF, BMP, WebP or AVIF file");
}

std::unique_ptr<RowWriter> CreatePicture(const std::string& path, const PictureHeader& header,
                                         const WriteOptions& options) {
  CheckOutput(path, options);
  const Extension& extension = FindExtension(path, options);
  CheckStorable(header, path);
  PictureHeader fitting = header;
  fitting.format = FittedFormat(header, options);
  SetExifSize(&fitting.metadata.exif, header.width, header.height);
  auto file = std::make_unique<OutputFile>(path, options.overwrite);
  if (!fitting.metadata.profile.empty() &&
      !ProfileFits(fitting.metadata.profile, fitting.channels())) {
    NoteLeftOut(*file, "its colour profile is not one for these channels");
    fitting.metadata.profile.clear();
  }
  return FitRows(extension.create(std::move(file), fitting, options), header, options);
}

void CheckOutput(const std::string& path, const WriteOptions& options) {
  const std::string_view format = FindExtension(path, options).format;
  const bool has_quality = format == "JPEG" || format == "WebP" || format == "AVIF";
  if (options.quality && !has_quality) {
    throw Error("--quality is for JPEG, WebP and AVIF, and " + path + " is none");
  }
  if (options.compression && format != "PNG") {
    throw Error("--compression is for PNG, and " + path + " is none");
  }
  if (options.stream_format && path != kStandardStream) {
    throw Error("--format is for standard output; the name " + path + " says its own");
  }
}

}  // namespace ovra_host
