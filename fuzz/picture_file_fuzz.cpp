// SPDX-License-Identifier: MIT
// Any bytes as a file that the host program reads, a picture or a .cube: it gives a result or an Error,
// and asks for no more memory at a time than a picture within the limit is worth. What is changed are
// whole files of every kind.
#include <sanitizer/allocator_interface.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "cube_file.h"
#include "error.h"
#include "image_io.h"
#include "srgb.h"

using namespace ovra_host;

extern "C" size_t LLVMFuzzerMutate(uint8_t* data, size_t size, size_t max_size);

namespace {

constexpr uint64_t kMaxPixels = 1 << 18;
constexpr size_t kMostBytesAtOnce = size_t{64} << 20;

void LimitAllocation(const volatile void*, size_t bytes) {
  if (bytes > kMostBytesAtOnce) std::abort();
}

const char* const kFormats[] = {".png", ".jpg", ".tif", ".bmp", ".webp", ".avif"};

Blob SmallFile(const std::string& extension) {
  const std::string path = std::filesystem::temp_directory_path() / ("ovra-seed" + extension);
  const bool deep = extension == ".png" || extension == ".avif";
  Picture picture = {Image(19, 13, FileFormat(deep ? 16 : 8, extension == ".jpg" ? 3 : 4)), {}};
  for (size_t i = 0; i < picture.image.size_bytes(); ++i) {
    picture.image.data()[i] = static_cast<uint8_t>(i * i / 7);
  }
  picture.metadata.exif = {'I', 'I', 42, 0, 8, 0, 0, 0, 1, 0, 0x12, 1, 3, 0, 1, 0, 0, 0, 6};
  picture.metadata.exif.resize(26);
  picture.metadata.xmp.assign(9, 'x');
  try {
    WritePicture(picture, path);
  } catch (const Error&) {  // built without it
    return {};
  }
  const InputFile file(path);
  Blob bytes(static_cast<size_t>(file.size()));
  file.ReadAt(0, bytes.data(), bytes.size());
  std::filesystem::remove(path);
  return bytes;
}

const std::vector<Blob>& Seeds() {
  static const std::vector<Blob> seeds = [] {
    std::vector<Blob> made;
    for (const char* format : kFormats) made.push_back(SmallFile(format));
    const std::string cube =
        "TITLE x # y\nLUT_1D_SIZE 2 # z\nLUT_3D_SIZE 2\nLUT_1D_INPUT_RANGE 0 1\n"
        "0 0 0\n1 1 1\n0 0 0\n1 0 0\n0 1 0\n1 1 0\n0 0 1\n1 0 1\n0 1 1\n1 1 1\n";
    made.emplace_back(cube.begin(), cube.end());
    return made;
  }();
  return seeds;
}

void Read(const std::string& path, const OpenOptions& options) {
  try {
    const auto reader = OpenPicture(path, options);
    const PictureHeader& header = reader->header();
    Picture picture = {Image(header.width, header.height, header.format), {}};
    for (int32_t y = 0; y < header.height; ++y) reader->ReadRow(picture.image.Row(y));
    reader->Finish();
    picture.metadata = header.metadata;
    ConvertToSrgb(&picture);
  } catch (const Error&) {  // refused
  }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  Seeds();
  __sanitizer_install_malloc_and_free_hooks(LimitAllocation, nullptr);
  return 0;
}

// Goes back to a whole file now and then, and changes a few bytes of it.
extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t max_size,
                                          unsigned seed) {
  const Blob& whole = Seeds()[seed / 8 % Seeds().size()];
  if ((size < 16 || seed % 8 == 0) && whole.size() <= max_size) {
    size = whole.size();
    std::copy(whole.begin(), whole.end(), data);
  }
  return LLVMFuzzerMutate(data, size, max_size);
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const int file = ::memfd_create("fuzzed", 0);
  const std::string path = "/proc/self/fd/" + std::to_string(file);
  if (::ftruncate(file, 0) != 0 || ::pwrite(file, data, size, 0) < 0) return 0;
  Read(path, {.max_pixels = kMaxPixels});
  Read(path, {.max_pixels = kMaxPixels, .page = 2, .eighths = 4});
  try {
    const CubeFile cube = ParseCubeFile(std::string(data, data + size), "fuzzed");
    for (const double value : {-1.0, 0.0, 0.3, 1.0, 2.0}) cube.Evaluate({value, 0.5, 1 - value});
  } catch (const Error&) {  // refused
  }
  return 0;
}
