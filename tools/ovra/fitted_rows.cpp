// SPDX-License-Identifier: MIT
#include "fitted_rows.h"

#include <utility>
#include <vector>

#include "color_words.h"
#include "picture_forms.h"

namespace ovra_host {
namespace {

bool LiesOnBackground(const PictureHeader& header, const WriteOptions& options) {
  return header.channels() == 4 && !options.background.empty();
}

std::vector<uint16_t> Background(const PictureHeader& header, const WriteOptions& options) {
  return ParseColor("--background", options.background, header.depth_bits(), 3);
}

// Lays pixels with alpha on a colour.
template <class Sample>
void Flatten(const uint8_t* row, const std::vector<uint16_t>& background, uint64_t max,
             int32_t pixels, uint8_t* to) {
  const auto* from = reinterpret_cast<const Sample*>(row);
  auto* out = reinterpret_cast<Sample*>(to);
  for (int32_t x = 0; x < pixels; ++x, from += 4, out += 3) {
    const uint64_t alpha = from[3];
    for (size_t c = 0; c < 3; ++c) {
      out[c] =
          static_cast<Sample>((from[c] * alpha + background[c] * (max - alpha) + max / 2) / max);
    }
  }
}

class FittingWriter : public RowWriter {
 public:
  FittingWriter(std::unique_ptr<RowWriter> writer, const PictureHeader& header,
                const WriteOptions& options)
      : writer_(std::move(writer)), from_(header), to_(header), flat_(header.row_bytes()) {
    to_.format = FittedFormat(header, options);
    fitted_.resize(to_.row_bytes());
    if (LiesOnBackground(header, options)) background_ = Background(header, options);
  }

  void WriteRow(const uint8_t* row) override {
    if (!background_.empty()) {
      const uint64_t max = (1U << from_.depth_bits()) - 1;
      const auto flatten = max == UINT8_MAX ? Flatten<uint8_t> : Flatten<uint16_t>;
      flatten(row, background_, max, from_.width, flat_.data());
      row = flat_.data();
    }
    ConvertDepth(row, from_.depth_bits(), fitted_.data(), to_.depth_bits(),
                 to_.channels() * static_cast<size_t>(to_.width));
    writer_->WriteRow(fitted_.data());
  }

  void Finish() override { writer_->Finish(); }

 private:
  std::unique_ptr<RowWriter> writer_;
  PictureHeader from_;
  PictureHeader to_;
  std::vector<uint16_t> background_;  // red, green and blue; empty without
  std::vector<uint8_t> flat_;
  std::vector<uint8_t> fitted_;
};

}  // namespace

OvraPixelFormatCode FittedFormat(const PictureHeader& header, const WriteOptions& options) {
  const bool flat = LiesOnBackground(header, options);
  if (flat) Background(header, options);
  return FileFormat(options.depth_bits != 0 ? options.depth_bits : header.depth_bits(),
                    flat ? 3 : header.channels());
}

std::unique_ptr<RowWriter> FitRows(std::unique_ptr<RowWriter> writer, const PictureHeader& header,
                                   const WriteOptions& options) {
  if (FittedFormat(header, options) == header.format) return writer;
  return std::make_unique<FittingWriter>(std::move(writer), header, options);
}

}  // namespace ovra_host
