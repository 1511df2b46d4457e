// SPDX-License-Identifier: MIT
#include "resize_bands.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "alpha.h"
#include "ovra/geometry.h"
#include "ovra/resample.h"
#include "progress.h"
#include "srgb.h"
#include "turning.h"

namespace ovra_host {
namespace {

constexpr int32_t kStripRows = 64;

// The library's context for one picture.
class BandResize {
 public:
  BandResize(Size source, OvraPixelFormatCode format, const ResizePlan& plan)
      : source_(source), size_(plan.UprightSize()), format_(format) {
    const auto& [position, region] = plan.region;
    CheckStatus(OvraBandResize_Init(source.width, source.height, size_.width, size_.height, format,
                                    position.x, position.y, region.width, region.height, &context_),
                "OvraBandResize_Init");
  }
  ~BandResize() { OvraBandResize_Free(&context_); }
  BandResize(const BandResize&) = delete;
  BandResize& operator=(const BandResize&) = delete;

  // Hands over the rest of a band; answers rows written to the strip.
  int32_t Run(const Image& band, int32_t rows, int32_t* done, Image* strip) {
    int32_t taken = 0;
    int32_t written = 0;
    const uint8_t* const rest = rows > *done ? band.Row(*done) : nullptr;
    CheckStatus(OvraBandResize(rest, source_.width, rows - *done, strip->data(), size_.width,
                               strip->height(), format_, first_, &taken, &written, context_),
                "OvraBandResize");
    *done += taken;
    first_ += taken;
    return written;
  }

 private:
  Size source_;
  Size size_;
  OvraPixelFormatCode format_;
  int32_t first_ = 0;
  OvraBandResizeContext* context_ = nullptr;
};

// Rows from the file in the form in which they are resized.
class BandSource {
 public:
  BandSource(RowReader& reader, bool multiply, bool to_srgb)
      : reader_(reader), multiply_(multiply), row_(reader.header().row_bytes()) {
    if (to_srgb) conversion_.emplace(reader.header().metadata.profile, reader.header().format);
  }

  OvraPixelFormatCode format() const {
    return multiply_ ? FileFormat(16, 4) : reader_.header().format;
  }

  // The profile of the rows that come out.
  const Blob& profile() const {
    return conversion_ ? conversion_->profile() : reader_.header().metadata.profile;
  }

  void Read(uint8_t* to) {
    const PictureHeader& header = reader_.header();
    uint8_t* const row = multiply_ ? row_.data() : to;
    reader_.ReadRow(row);
    if (conversion_) conversion_->ConvertRow(row, header.width);
    if (!multiply_) return;
    MultiplyRow(row, header.depth_bits(), reinterpret_cast<uint16_t*>(to), header.width);
  }

 private:
  RowReader& reader_;
  bool multiply_;
  std::vector<uint8_t> row_;
  std::optional<SrgbConversion> conversion_;
};

// Where rows of the result go: into the file, or into a picture that is still
// to be turned.
class BandResult {
 public:
  BandResult(const std::string& path, const PictureHeader& upright, int32_t mode,
             const WriteOptions& options)
      : path_(path), upright_(upright), mode_(mode), options_(options) {
    if (mode == OVRA_ROTATE_NONE) {
      writer_ = CreatePicture(path, upright, options);
    } else {
      whole_.emplace(upright.width, upright.height, upright.format);
    }
  }

  void Write(const uint8_t* row) {
    if (writer_) return writer_->WriteRow(row);
    std::copy_n(row, upright_.row_bytes(), whole_->Row(next_row_++));
  }

  void Finish() {
    if (writer_) return writer_->Finish();
    WritePicture({Rotated(*whole_, mode_), upright_.metadata}, path_, options_);
  }

 private:
  std::string path_;
  PictureHeader upright_;
  int32_t mode_;
  WriteOptions options_;
  std::unique_ptr<RowWriter> writer_;
  std::optional<Image> whole_;
  int32_t next_row_ = 0;
};

}  // namespace

void ResizeInBands(RowReader& reader, const ResizePlan& plan, int32_t band_rows,
                   const Metadata& metadata, const std::string& output,
                   const CommonOptions& common) {
  const PictureHeader header = reader.header();
  const bool multiply = header.channels() == 4 && !plan.straight;
  BandSource source(reader, multiply, common.read.to_srgb);
  const Size size = plan.UprightSize();
  PictureHeader upright = {size.width, size.height, header.format, metadata};
  upright.metadata.profile = source.profile();

  BandResize resize({header.width, header.height}, source.format(), plan);
  BandResult result(output, upright, plan.mode, common.write);
  Image band(header.width, std::min(band_rows, header.height), source.format());
  Image strip(size.width, std::min(kStripRows, size.height), source.format());
  std::vector<uint8_t> row(upright.row_bytes());
  Progress progress(header.height, "rows");
  int32_t read = 0;
  while (read < header.height) {
    const int32_t rows = std::min(band.height(), header.height - read);
    for (int32_t y = 0; y < rows; ++y) source.Read(band.Row(y));
    read += rows;
    int32_t done = 0;
    int32_t written = 0;
    do {
      written = resize.Run(band, rows, &done, &strip);
      for (int32_t y = 0; y < written; ++y) {
        if (multiply) DivideRow(strip.Row16(y), header.depth_bits(), row.data(), size.width);
        result.Write(multiply ? row.data() : strip.Row(y));
      }
    } while (done < rows || written == strip.height());
    progress.Show(read);
  }
  reader.Finish();
  result.Finish();
}

}  // namespace ovra_host
