// SPDX-License-Identifier: MIT
// BMP of up to 8 bits with a palette, of 24, and of 32 with alpha: a device-independent bitmap behind
// a file header.
#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "codecs.h"
#include "error.h"
#include "ovra/basic.h"

namespace ovra_host {
namespace {

constexpr size_t kFileHeaderBytes = 14;
constexpr size_t kInfoHeaderBytes = 40;
constexpr size_t kAlphaHeaderBytes = 108;  // with masks and colour space
constexpr size_t kHeaderBytes = kFileHeaderBytes + kInfoHeaderBytes;
constexpr size_t kMaxHeaderBytes = kFileHeaderBytes + kAlphaHeaderBytes;
constexpr uint32_t kPixelsPerMeter = 2835;  // 72 to the inch, where a picture does not tell
constexpr double kInchesPerMeter = 1 / 0.0254;

using Header = std::array<uint8_t, kMaxHeaderBytes>;

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
  kResolutionY = 42,
  kColorCount = 46,
  kMasks = 54,  // of red, green, blue and, in longer headers, alpha
  kAlphaMask = 66,
  kColorSpace = 70
};

enum Compression : uint32_t { kPlain = 0, kMasked = 3 };

constexpr uint32_t kSrgb = 0x73524742;  // "sRGB"

uint32_t Get(const Header& header, size_t field, size_t bytes = 4) {
  uint32_t value = 0;
  for (size_t i = bytes; i-- > 0;) value = value << 8 | header[field + i];
  return value;
}

void Put(Header& header, size_t field, uint32_t value, size_t bytes = 4) {
  for (size_t i = 0; i < bytes; ++i) header[field + i] = static_cast<uint8_t>(value >> 8 * i);
}

size_t DibStride(uint64_t width, uint32_t bits_per_pixel) {
  return static_cast<size_t>((width * bits_per_pixel + 31) / 32 * 4);
}

// The header of a picture that can be read; zeros where the file has a shorter one.
Header ReadHeader(const InputFile& file) {
  Header header = {};
  const auto there = std::min<uint64_t>(file.size(), header.size());
  if (!file.ReadAt(0, header.data(), static_cast<size_t>(there)) || there < kHeaderBytes) {
    file.Refuse("BMP: is cut off in its header");
  }
  const uint32_t bits = Get(header, kBitCount, 2);
  const uint32_t compression = Get(header, kCompression);
  const bool known = bits == 1 || bits == 4 || bits == 8 || bits == 24 || bits == 32;
  if (Get(header, kInfoSize) < kInfoHeaderBytes || !known || Get(header, kPlanes, 2) != 1) {
    file.Refuse("BMP: only 1, 4, 8, 24 or 32 bits a pixel are read, not " + std::to_string(bits));
  }
  if (compression != kPlain && !(compression == kMasked && bits == 32)) {
    file.Refuse("BMP: only pixels without compression are read");
  }
  if (Get(header, kPixelOffset) < kHeaderBytes) {
    file.Refuse("BMP: its pixels begin inside its header");
  }
  return header;
}

// A file whose rows are read one by one from its end, as the format stores them.
class BmpReader : public RowReader {
 public:
  explicit BmpReader(InputFile file) : file_(std::move(file)) {
    const Header header = ReadHeader(file_);
    const auto signed_height = int64_t{static_cast<int32_t>(Get(header, kHeight))};
    top_down_ = signed_height < 0;
    bits_ = Get(header, kBitCount, 2);
    const auto width = uint64_t{Get(header, kWidth)};
    const auto height = static_cast<uint64_t>(top_down_ ? -signed_height : signed_height);
    pixel_offset_ = Get(header, kPixelOffset);
    file_.CheckClaim(width, height, bits_ / 8, InputFile::Holds::kPlainSamples);
    header_.width = static_cast<int32_t>(width);
    header_.height = static_cast<int32_t>(height);
    header_.format = FileFormat(8, 3);
    header_.metadata.resolution = {
        CleanResolution(static_cast<int32_t>(Get(header, kResolutionX)) / kInchesPerMeter),
        CleanResolution(static_cast<int32_t>(Get(header, kResolutionY)) / kInchesPerMeter)};
    dib_.resize(DibStride(width, bits_));
    pixel_bytes_ = static_cast<size_t>((width * bits_ + 7) / 8);
    if (bits_ <= 8) ReadPalette(header);
    if (bits_ == 32) ReadMasks(header);
  }

  void ReadRow(uint8_t* row) override {
    const int32_t stored = top_down_ ? next_row_ : header_.height - 1 - next_row_;
    ++next_row_;
    const uint64_t offset = pixel_offset_ + static_cast<uint64_t>(stored) * dib_.size();
    // The padding of the last row may be missing.
    if (!file_.ReadAt(offset, dib_.data(), pixel_bytes_)) file_.Refuse("BMP: is cut off");
    if (bits_ == 24) {
      OvraDib2Raw(dib_.data(), row, static_cast<uint32_t>(header_.width), 1);
    } else if (bits_ == 32) {
      TakeBytes(row);
    } else {
      LookUp(row);
    }
  }

 private:
  // Blue, green, red and a byte that does not count, an entry; without any color they are grey.
  void ReadPalette(const Header& header) {
    const uint32_t most = 1U << bits_;
    const uint32_t told = Get(header, kColorCount);
    const uint32_t count = told == 0 ? most : told;
    const uint64_t offset = kFileHeaderBytes + uint64_t{Get(header, kInfoSize)};
    if (count > most || !file_.ReadAt(offset, palette_.data(), size_t{4} * count)) {
      file_.Refuse("BMP: its palette of " + std::to_string(count) + " colors is damaged");
    }
    bool is_grey = true;
    for (size_t i = 0; i < palette_.size(); i += 4) {
      is_grey = is_grey && palette_[i] == palette_[i + 1] && palette_[i] == palette_[i + 2];
    }
    if (is_grey) header_.format = FileFormat(8, 1);
  }

  // Which byte of a pixel is red, green, blue and alpha.
  void ReadMasks(const Header& header) {
    if (Get(header, kCompression) == kPlain) return;
    const bool has_alpha =
        Get(header, kInfoSize) > kAlphaMask - kInfoSize && Get(header, kAlphaMask) != 0;
    if (has_alpha) header_.format = FileFormat(8, 4);
    for (size_t c = 0; c < header_.channels(); ++c) {
      const uint32_t mask = Get(header, kMasks + 4 * c);
      size_t byte = 0;
      while (byte < 4 && mask != uint32_t{UINT8_MAX} << 8 * byte) ++byte;
      if (byte == 4) file_.Refuse("BMP: only channels of 8 bits are read");
      byte_of_[c] = byte;
    }
  }

  void TakeBytes(uint8_t* row) const {
    const uint32_t channels = header_.channels();
    for (size_t x = 0; x < static_cast<size_t>(header_.width); ++x) {
      for (size_t c = 0; c < channels; ++c) row[channels * x + c] = dib_[4 * x + byte_of_[c]];
    }
  }

  void LookUp(uint8_t* row) const {
    const uint32_t channels = header_.channels();
    for (size_t x = 0; x < static_cast<size_t>(header_.width); ++x) {
      const size_t first_bit = x * bits_;
      const size_t index =
          dib_[first_bit / 8] >> (8 - bits_ - first_bit % 8) & ((size_t{1} << bits_) - 1);
      for (size_t c = 0; c < channels; ++c) row[channels * x + c] = palette_[4 * index + 2 - c];
    }
  }

  InputFile file_;
  bool top_down_ = false;
  uint32_t bits_ = 0;
  uint64_t pixel_offset_ = 0;
  size_t pixel_bytes_ = 0;  // of a row, without padding
  std::array<uint8_t, 4 * 256> palette_ = {};
  std::array<size_t, 4> byte_of_ = {2, 1, 0, 3};
  std::vector<uint8_t> dib_;
  int32_t next_row_ = 0;
};

class BmpWriter : public RowWriter {
 public:
  BmpWriter(OutputPtr file, const PictureHeader& header)
      : file_(std::move(file)),
        channels_(header.channels()),
        width_(static_cast<uint32_t>(header.width)),
        rows_left_(header.height),
        raw_(size_t{3} * width_),
        header_bytes_(channels_ == 4 ? kMaxHeaderBytes : kHeaderBytes),
        dib_(DibStride(width_, BitsPerPixel())) {
    if (header.depth_bits() != 8) RefuseDeep(*file_, "BMP");
    if (uint64_t{dib_.size()} * static_cast<uint64_t>(header.height) >
        UINT32_MAX - kMaxHeaderBytes) {
      file_->Refuse("is too large for BMP");
    }
    const Metadata& metadata = header.metadata;
    if (!metadata.profile.empty() || !metadata.exif.empty() || !metadata.xmp.empty() ||
        !metadata.iptc.empty() || !metadata.comment.empty()) {
      NoteLeftOut(*file_, "BMP has no place for profile, EXIF, XMP, IPTC and comment");
    }
    WriteHeader(header);
  }

  void WriteRow(const uint8_t* row) override {
    if (channels_ == 1) {  // grey stands in all three
      for (size_t i = 0; i < raw_.size(); ++i) raw_[i] = row[i / 3];
      row = raw_.data();
    }
    if (channels_ == 4) {
      for (size_t i = 0; i < dib_.size(); ++i)
        dib_[i] = row[i % 4 == 3 ? i : i - i % 4 + 2 - i % 4];
    } else {
      OvraRaw2Dib(row, dib_.data(), width_, 1);
    }
    const uint64_t offset =
        header_bytes_ + uint64_t{dib_.size()} * static_cast<uint64_t>(--rows_left_);
    if (!file_->WriteAt(offset, dib_.data(), dib_.size())) file_->RefuseWithSystemMessage();
  }

  void Finish() override { file_->Commit(); }

 private:
  void WriteHeader(const PictureHeader& picture) {
    const auto height = static_cast<uint32_t>(picture.height);
    const auto bytes = static_cast<uint32_t>(dib_.size() * height);
    const Resolution& resolution = picture.metadata.resolution;
    const auto per_meter = [](double per_inch) {
      return per_inch > 0 ? static_cast<uint32_t>(per_inch * kInchesPerMeter + 0.5)
                          : kPixelsPerMeter;
    };
    Header header = {'B', 'M'};
    Put(header, kFileSize, static_cast<uint32_t>(header_bytes_) + bytes);
    Put(header, kPixelOffset, static_cast<uint32_t>(header_bytes_));
    Put(header, kInfoSize, static_cast<uint32_t>(header_bytes_ - kFileHeaderBytes));
    Put(header, kWidth, width_);
    Put(header, kHeight, height);
    Put(header, kPlanes, 1, 2);
    Put(header, kBitCount, BitsPerPixel(), 2);
    Put(header, kImageSize, bytes);
    Put(header, kResolutionX, per_meter(resolution.x));
    Put(header, kResolutionY, per_meter(resolution.y));
    if (channels_ == 4) {
      Put(header, kCompression, kMasked);
      for (uint32_t c = 0; c < 3; ++c) Put(header, kMasks + 4 * c, 0xFF0000U >> 8 * c);
      Put(header, kAlphaMask, 0xFF000000);
      Put(header, kColorSpace, kSrgb);
    }
    if (!file_->WriteAt(0, header.data(), header_bytes_)) file_->RefuseWithSystemMessage();
  }

  uint32_t BitsPerPixel() const { return channels_ == 4 ? 32 : 24; }

  OutputPtr file_;
  uint32_t channels_;
  uint32_t width_;
  int32_t rows_left_;
  std::vector<uint8_t> raw_;
  size_t header_bytes_;
  std::vector<uint8_t> dib_;
};

}  // namespace

std::unique_ptr<RowReader> OpenBmp(InputFile file, const OpenOptions&) {
  return std::make_unique<BmpReader>(std::move(file));
}

std::unique_ptr<RowWriter> CreateBmp(OutputPtr file, const PictureHeader& header,
                                     const WriteOptions&) {
  return std::make_unique<BmpWriter>(std::move(file), header);
}

}  // namespace ovra_host
