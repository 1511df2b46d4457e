// SPDX-License-Identifier: MIT
// The two forms of the double unsharp mask.
#include <algorithm>
#include <cstddef>

#include "core/rows.h"
#include "core/saturate.h"
#include "filter/luminance_kernels.h"
#include "filter/plane_filter.h"
#include "filter/yusm_double.h"
#include "filter/yusm_double_kernels.h"

namespace ovra {
namespace {

constexpr int32_t kDepthBits = 8;
constexpr std::ptrdiff_t kBytesPerPixel = 3;
constexpr double kAmountUnit = 1024.0;  // an amount of 1.0 in a scaled level table

void FillBandTables(const YUsmBand& band, YUsmBandTables* tables) {
  const double amount = double{band.amount} * kAmountUnit;
  for (size_t i = 0; i < OVRA_LEVEL_TABLE_SIZE; ++i) {
    tables->level[i] = TruncateToInt32(band.level_table[i] * amount);
  }
  std::copy_n(band.difference_table, OVRA_DIFFERENCE_TABLE_SIZE, tables->difference);
}

// The steps between pixels and luminance, which both forms share.
class MaskRows {
 public:
  MaskRows(const uint8_t* source, uint8_t* destination, std::ptrdiff_t width, PixelFormatCode code,
           const YUsmDoubleTables& tables, KernelTier tier)
      : source_(source),
        destination_(destination),
        width_(width),
        tables_(tables),
        luminance_(SelectLuminanceKernels(ColorModel(code), kDepthBits, tier)),
        find_deltas_(SelectFindDoubleDeltas(tier)) {}

  void Extract(std::ptrdiff_t row, int16_t* luminance) const {
    luminance_.extract(RowAt<uint8_t>(source_, kBytesPerPixel * width_, row), luminance, width_,
                       kDepthBits);
  }

  // The deltas take the place of the coarse blur.
  void Correct(std::ptrdiff_t row, const int16_t* luminance, int16_t* coarse_blur,
               const int16_t* fine_blur) const {
    find_deltas_(luminance, coarse_blur, fine_blur, coarse_blur, width_, tables_);
    luminance_.add_deltas(RowAt<uint8_t>(source_, kBytesPerPixel * width_, row),
                          RowAt<uint8_t>(destination_, kBytesPerPixel * width_, row), coarse_blur,
                          width_, kDepthBits);
  }

 private:
  static uint32_t ColorModel(PixelFormatCode code) {
    uint32_t color_model = OVRA_MODEL_RGB;
    (void)DecodeColourModel(code, &color_model);  // a checked format
    return color_model;
  }

  const uint8_t* const source_;
  uint8_t* const destination_;
  const std::ptrdiff_t width_;
  const YUsmDoubleTables& tables_;
  const LuminanceKernels luminance_;
  FindDoubleDeltasRow* const find_deltas_;
};

Status FilterWholePlanes(const MaskRows& rows, uint32_t width, uint32_t height,
                         const YUsmDoubleParameters& parameters, KernelTier tier) {
  const uint64_t pixels = uint64_t{width} * height;
  WorkMemory<int16_t> luminance;
  WorkMemory<int16_t> coarse_blur;
  WorkMemory<int16_t> fine_blur;
  WorkMemory<int16_t> scratch;
  if (!luminance.Allocate(pixels) || !coarse_blur.Allocate(pixels) || !fine_blur.Allocate(pixels) ||
      !scratch.Allocate(pixels)) {
    return OVRA_ERROR_NO_MEMORY;
  }
  const auto row_samples = static_cast<std::ptrdiff_t>(width);
  const auto row_count = static_cast<std::ptrdiff_t>(height);
  for (std::ptrdiff_t row = 0; row < row_count; ++row) {
    rows.Extract(row, luminance.data() + row * row_samples);
  }
  const auto blur = [&](const YUsmBand& band, int16_t* output) {
    return SeparablePlaneFilter(luminance.data(), output, width, height, band.tap_count,
                                band.weights, scratch.data(), tier);
  };
  Status status = blur(parameters.fine, fine_blur.data());
  if (status == OVRA_OK) status = blur(parameters.coarse, coarse_blur.data());
  if (status != OVRA_OK) return status;
  for (std::ptrdiff_t row = 0; row < row_count; ++row) {
    const std::ptrdiff_t at = row * row_samples;
    rows.Correct(row, luminance.data() + at, coarse_blur.data() + at, fine_blur.data() + at);
  }
  return OVRA_OK;
}

// Rows of a picture of which as many are held as the ring has slots; row i is in slot i mod slots.
class RowRing {
 public:
  [[nodiscard]] bool Allocate(std::ptrdiff_t width, std::ptrdiff_t slots) {
    width_ = width;
    slots_ = slots;
    return samples_.Allocate(static_cast<uint64_t>(width) * static_cast<uint64_t>(slots));
  }
  int16_t* Row(std::ptrdiff_t row) { return samples_.data() + row % slots_ * width_; }
  const int16_t* Samples() const { return samples_.data(); }
  std::ptrdiff_t Slots() const { return slots_; }

 private:
  WorkMemory<int16_t> samples_;
  std::ptrdiff_t width_ = 0;
  std::ptrdiff_t slots_ = 1;
};

// One blur of the luminance, row by row from the top.
class StreamedBlur {
 public:
  [[nodiscard]] bool Prepare(uint32_t width, std::ptrdiff_t height, const YUsmBand& band,
                             KernelTier tier) {
    height_ = height;
    if (!filter_.Prepare(width, band.tap_count, band.weights, tier)) return false;
    const auto row_samples = static_cast<std::ptrdiff_t>(width);
    return filtered_.Allocate(row_samples, filter_.Before() + 1 + filter_.After()) &&
           blurred_.Allocate(width);
  }

  std::ptrdiff_t RowsAhead() const { return filter_.After(); }

  // The blurred row; called for every row in turn. The luminance rows up to `row` + RowsAhead() are
  // in the ring.
  int16_t* Blur(std::ptrdiff_t row, RowRing& luminance) {
    for (; next_ < std::min(height_, row + filter_.After() + 1); ++next_) {
      filter_.FilterRow(luminance.Row(next_), filtered_.Row(next_));
    }
    filter_.CombineRing(filtered_.Samples(), filtered_.Slots(), height_, row, blurred_.data());
    return blurred_.data();
  }

 private:
  PlaneFilter filter_;
  RowRing filtered_;  // horizontally
  WorkMemory<int16_t> blurred_;
  std::ptrdiff_t height_ = 0;
  std::ptrdiff_t next_ = 0;  // the first row not yet filtered horizontally
};

Status FilterStreaming(const MaskRows& rows, uint32_t width, uint32_t height,
                       const YUsmDoubleParameters& parameters, KernelTier tier) {
  const auto row_count = static_cast<std::ptrdiff_t>(height);
  StreamedBlur coarse;
  StreamedBlur fine;
  RowRing luminance;
  if (!coarse.Prepare(width, row_count, parameters.coarse, tier) ||
      !fine.Prepare(width, row_count, parameters.fine, tier)) {
    return OVRA_ERROR_NO_MEMORY;
  }
  const std::ptrdiff_t rows_ahead = std::max(coarse.RowsAhead(), fine.RowsAhead());
  if (!luminance.Allocate(static_cast<std::ptrdiff_t>(width), rows_ahead + 1)) {
    return OVRA_ERROR_NO_MEMORY;
  }
  std::ptrdiff_t next = 0;  // the first row not yet read
  for (std::ptrdiff_t row = 0; row < row_count; ++row) {
    for (; next < std::min(row_count, row + rows_ahead + 1); ++next) {
      rows.Extract(next, luminance.Row(next));
    }
    const int16_t* const fine_blur = fine.Blur(row, luminance);
    int16_t* const coarse_blur = coarse.Blur(row, luminance);
    rows.Correct(row, luminance.Row(row), coarse_blur, fine_blur);
  }
  return OVRA_OK;
}

}  // namespace

YUsmDoubleForm ChooseYUsmDoubleForm(uint32_t width, uint32_t height) {
  constexpr uint32_t kLongSide = 2139;
  constexpr uint32_t kShortSide = 1536;
  const bool is_small =
      std::max(width, height) <= kLongSide && std::min(width, height) <= kShortSide;
  return is_small ? YUsmDoubleForm::kWholePlanes : YUsmDoubleForm::kStreaming;
}

Status FilterYUsmDouble(const uint8_t* source, uint8_t* destination, uint32_t width,
                        uint32_t height, PixelFormatCode code,
                        const YUsmDoubleParameters& parameters, YUsmDoubleForm form,
                        KernelTier tier) {
  WorkMemory<YUsmDoubleTables> tables;
  if (!tables.Allocate(1)) return OVRA_ERROR_NO_MEMORY;
  FillBandTables(parameters.coarse, &tables[0].coarse);
  FillBandTables(parameters.fine, &tables[0].fine);
  const MaskRows rows(source, destination, static_cast<std::ptrdiff_t>(width), code, tables[0],
                      tier);
  if (form == YUsmDoubleForm::kWholePlanes) {
    return FilterWholePlanes(rows, width, height, parameters, tier);
  }
  return FilterStreaming(rows, width, height, parameters, tier);
}

}  // namespace ovra
