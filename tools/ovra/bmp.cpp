// SPDX-License-Identifier: MIT
// BMP with 24 bits a pixel: a device-independent bitmap behind a file header.
#include <array>
#include <cstring>
#include <vector>

#include "codecs.h"
#include "error.h"
#include "ovra/basic.h"

namespace ovra_host {
namespace {

constexpr size_t kFileHeaderBytes = 14;
constexpr size_t kInfoHeaderBytes = 40;
constexpr size_t kHeaderBytes = kFileHeaderBytes + kInfoHeaderBytes;
constexpr uint32_t kBitsPerPixel = 24;
constexpr uint32_t kPixelsPerMeter = 2835;  // 72 to the inch

using Header = std::array<uint8_t, kHeaderBytes>;

// Where the fields of the two headers stand; all are little-endian.
enum Field : size_t {
  kFileSize = 2,
  kPixelOffset = 10,
  kInfoSize = 14,
  kWidth = 18,
  kHeight = 22,
  kPlanes = 26,
  kBitCount = 28,
  kCompression = 30,
  kImageSize = 34,
  kResolutionX = 38,
  kResolutionY = 42
};

uint32_t Get(const Header& header, Field field, size_t bytes = 4) {
  uint32_t value = 0;
  for (size_t i = bytes; i-- > 0;) value = value << 8 | header[field + i];
  return value;
}

void Put(Header& header, Field field, uint32_t value, size_t bytes = 4) {
  for (size_t i = 0; i < bytes; ++i) header[field + i] = static_cast<uint8_t>(value >> 8 * i);
}

size_t DibStride(size_t width) {
  return (3 * width + 3) / 4 * 4;
}

// The header of a picture that can be read.
Header ReadHeader(const InputFile& file) {
  Header header;
  if (std::fread(header.data(), 1, header.size(), file.stream()) != header.size()) {
    file.Refuse("BMP: is cut off in its header");
  }
  if (Get(header, kInfoSize) < kInfoHeaderBytes || Get(header, kBitCount, 2) != kBitsPerPixel ||
      Get(header, kPlanes, 2) != 1 || Get(header, kCompression) != 0) {
    file.Refuse("BMP: only 24 bits a pixel without compression are read");
  }
  if (Get(header, kPixelOffset) < kFileHeaderBytes + kInfoHeaderBytes) {
    file.Refuse("BMP: its pixels begin inside its header");
  }
  return header;
}

}  // namespace

Image ReadBmp(const InputFile& file) {
  const Header header = ReadHeader(file);
  const auto signed_height = int64_t{static_cast<int32_t>(Get(header, kHeight))};
  const bool top_down = signed_height < 0;
  const auto width = uint64_t{Get(header, kWidth)};
  const auto height = static_cast<uint64_t>(top_down ? -signed_height : signed_height);
  file.CheckClaim(width, height, 3);
  Image image(static_cast<int64_t>(width), static_cast<int64_t>(height), FileFormat(8, 3));

  const size_t stride = DibStride(width);
  std::vector<uint8_t> dib(stride * height);
  std::fseek(file.stream(), static_cast<long>(Get(header, kPixelOffset)), SEEK_SET);
  for (size_t y = 0; y < height; ++y) {
    uint8_t* const row = dib.data() + stride * (top_down ? height - 1 - y : y);
    // The padding of the last row may be missing.
    const size_t wanted = y + 1 < height ? stride : 3 * width;
    if (std::fread(row, 1, wanted, file.stream()) != wanted) file.Refuse("BMP: is cut off");
  }
  OvraDib2Raw(dib.data(), image.data(), static_cast<uint32_t>(width),
              static_cast<uint32_t>(height));
  return image;
}

void WriteBmp(const Image& image, const OutputFile& file, const WriteOptions&) {
  if (image.depth_bits() != 8) file.Refuse("BMP holds 8 bits a sample; use PNG or TIFF for 16");
  if (image.channels() == 4) file.Refuse("BMP is written without alpha; use PNG or TIFF");
  const auto width = static_cast<uint32_t>(image.width());
  const auto height = static_cast<uint32_t>(image.height());
  std::vector<uint8_t> raw;
  raw.reserve(size_t{3} * width * height);
  for (int32_t y = 0; y < image.height(); ++y) {
    const uint8_t* const row = image.Row(y);
    const size_t copies = image.channels() == 1 ? 3 : 1;  // grey stands in all three
    for (size_t i = 0; i < image.row_bytes(); ++i) raw.insert(raw.end(), copies, row[i]);
  }
  if (uint64_t{DibStride(width)} * height > UINT32_MAX - kHeaderBytes) {
    file.Refuse("is too large for BMP");
  }
  std::vector<uint8_t> dib(DibStride(width) * height);
  OvraRaw2Dib(raw.data(), dib.data(), width, height);

  Header header = {'B', 'M'};
  Put(header, kFileSize, static_cast<uint32_t>(kHeaderBytes + dib.size()));
  Put(header, kPixelOffset, kHeaderBytes);
  Put(header, kInfoSize, kInfoHeaderBytes);
  Put(header, kWidth, width);
  Put(header, kHeight, height);
  Put(header, kPlanes, 1, 2);
  Put(header, kBitCount, kBitsPerPixel, 2);
  Put(header, kImageSize, static_cast<uint32_t>(dib.size()));
  Put(header, kResolutionX, kPixelsPerMeter);
  Put(header, kResolutionY, kPixelsPerMeter);
  if (std::fwrite(header.data(), 1, header.size(), file.stream()) != header.size() ||
      std::fwrite(dib.data(), 1, dib.size(), file.stream()) != dib.size()) {
    file.Refuse("cannot be written");
  }
}

}  // namespace ovra_host
