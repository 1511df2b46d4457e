// SPDX-License-Identifier: MIT
// BMP with 24 bits a pixel: a device-independent bitmap behind a file header.
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
constexpr size_t kHeaderBytes = kFileHeaderBytes + kInfoHeaderBytes;
constexpr uint32_t kBitsPerPixel = 24;
constexpr uint32_t kPixelsPerMeter = 2835;  // 72 to the inch, where a picture does not tell
constexpr double kInchesPerMeter = 1 / 0.0254;

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

// A file whose rows are read one by one from its end, as the format stores them.
class BmpReader : public RowReader {
 public:
  explicit BmpReader(InputFile file) : file_(std::move(file)) {
    const Header header = ReadHeader(file_);
    const auto signed_height = int64_t{static_cast<int32_t>(Get(header, kHeight))};
    top_down_ = signed_height < 0;
    const auto width = uint64_t{Get(header, kWidth)};
    const auto height = static_cast<uint64_t>(top_down_ ? -signed_height : signed_height);
    pixel_offset_ = Get(header, kPixelOffset);
    file_.CheckClaim(width, height, 3, InputFile::Holds::kPlainSamples);
    header_.width = static_cast<int32_t>(width);
    header_.height = static_cast<int32_t>(height);
    header_.format = FileFormat(8, 3);
    header_.metadata.resolution = {
        CleanResolution(static_cast<int32_t>(Get(header, kResolutionX)) / kInchesPerMeter),
        CleanResolution(static_cast<int32_t>(Get(header, kResolutionY)) / kInchesPerMeter)};
    dib_.resize(DibStride(width));
  }

  void ReadRow(uint8_t* row) override {
    const int32_t stored = top_down_ ? next_row_ : header_.height - 1 - next_row_;
    ++next_row_;
    const uint64_t offset = pixel_offset_ + static_cast<uint64_t>(stored) * dib_.size();
    // The padding of the last row may be missing.
    if (!file_.ReadAt(offset, dib_.data(), header_.row_bytes())) file_.Refuse("BMP: is cut off");
    OvraDib2Raw(dib_.data(), row, static_cast<uint32_t>(header_.width), 1);
  }

 private:
  InputFile file_;
  bool top_down_ = false;
  uint64_t pixel_offset_ = 0;
  std::vector<uint8_t> dib_;
  int32_t next_row_ = 0;
};

class BmpWriter : public RowWriter {
 public:
  BmpWriter(OutputPtr file, const PictureHeader& header)
      : file_(std::move(file)),
        grey_(header.channels() == 1),
        width_(static_cast<uint32_t>(header.width)),
        rows_left_(header.height),
        raw_(size_t{3} * width_),
        dib_(DibStride(width_)) {
    if (header.depth_bits() != 8)
      file_->Refuse("BMP holds 8 bits a sample; use PNG or TIFF for 16");
    if (header.channels() == 4) file_->Refuse("BMP is written without alpha; use PNG or TIFF");
    if (uint64_t{dib_.size()} * static_cast<uint64_t>(header.height) > UINT32_MAX - kHeaderBytes) {
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
    if (grey_) {  // grey stands in all three
      for (size_t i = 0; i < raw_.size(); ++i) raw_[i] = row[i / 3];
      row = raw_.data();
    }
    OvraRaw2Dib(row, dib_.data(), width_, 1);
    const uint64_t offset =
        kHeaderBytes + uint64_t{dib_.size()} * static_cast<uint64_t>(--rows_left_);
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
    Put(header, kFileSize, static_cast<uint32_t>(kHeaderBytes) + bytes);
    Put(header, kPixelOffset, kHeaderBytes);
    Put(header, kInfoSize, kInfoHeaderBytes);
    Put(header, kWidth, width_);
    Put(header, kHeight, height);
    Put(header, kPlanes, 1, 2);
    Put(header, kBitCount, kBitsPerPixel, 2);
    Put(header, kImageSize, bytes);
    Put(header, kResolutionX, per_meter(resolution.x));
    Put(header, kResolutionY, per_meter(resolution.y));
    if (!file_->WriteAt(0, header.data(), header.size())) file_->RefuseWithSystemMessage();
  }

  OutputPtr file_;
  bool grey_;
  uint32_t width_;
  int32_t rows_left_;
  std::vector<uint8_t> raw_;
  std::vector<uint8_t> dib_;
};

}  // namespace

std::unique_ptr<RowReader> OpenBmp(InputFile file) {
  return std::make_unique<BmpReader>(std::move(file));
}

std::unique_ptr<RowWriter> CreateBmp(OutputPtr file, const PictureHeader& header,
                                     const WriteOptions&) {
  return std::make_unique<BmpWriter>(std::move(file), header);
}

}  // namespace ovra_host
