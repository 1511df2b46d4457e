// SPDX-License-Identifier: MIT
// The rows of the double unsharp mask.
#include <algorithm>
#include <cstddef>
#include <iterator>
#include <limits>

#include "core/row_ring.h"
#include "core/rows.h"
#include "core/saturate.h"
#include "core/wrapping.h"
#include "filter/luminance/kernels.h"
#include "filter/plane_filter/plane_filter.h"
#include "filter/yusm_double/kernels.h"
#include "filter/yusm_double/yusm_double.h"

namespace ovra {
namespace {

constexpr uint32_t kMaxSide = std::numeric_limits<int32_t>::max();
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

bool IsEven(const YUsmBandTables& tables) {
  const auto is_even = [](const auto& table) {
    return std::all_of(std::begin(table), std::end(table),
                       [&table](int32_t entry) { return entry == table[0]; });
  };
  return is_even(tables.level) && is_even(tables.difference);
}

// Whether every blurred sample is a mean of samples, for certain.
bool IsMean(const YUsmBand& band) {
  constexpr int64_t kMostOfAll = 1 << 20;  // times a luminance they are 31 bits
  int64_t sum = 0;
  for (uint32_t k = 0; k < band.tap_count; ++k) {
    if (band.weights[k] < 0 || band.weights[k] > kMostOfAll) return false;
    sum += band.weights[k];
  }
  return sum <= kMostOfAll;
}

// False where the strength is more than a few times the band.
bool FindEvenBand(const YUsmBandTables& tables, YUsmEvenBand* even) {
  constexpr int32_t kMostTimes = 8;
  constexpr int32_t kOne = 1 << 16;
  const int64_t strength = int64_t{tables.difference[0]} * tables.level[0] >> 8;
  if (strength > kMostTimes * kOne || strength < -kMostTimes * kOne) return false;
  even->fraction = static_cast<int16_t>(strength);
  even->whole = static_cast<int16_t>((strength - even->fraction) / kOne);
  return true;
}

// What a band adds at one level, by its value. False where that is more than a few times the band.
bool FillChanges(const YUsmBandTables& tables, int32_t level, int16_t* changes) {
  constexpr int32_t kMost = 1 << 13;  // two of these and two luminances stay below 2^15
  constexpr int32_t kNoDifference = OVRA_DIFFERENCE_TABLE_SIZE / 2;
  bool are_small = true;
  for (int32_t i = 0; i < OVRA_DIFFERENCE_TABLE_SIZE; ++i) {
    const int64_t strength =
        static_cast<int32_t>(WrappingProduct(tables.difference[i], tables.level[level])) >> 8;
    const int64_t change = strength * (i - kNoDifference) >> 16;
    are_small &= change >= -kMost && change <= kMost;
    changes[i] = static_cast<int16_t>(change);
  }
  return are_small;
}

bool FindEvenLevels(YUsmDoubleTables* tables) {
  const int32_t* const coarse = tables->coarse.level;
  const int32_t* const fine = tables->fine.level;
  tables->even_levels = LongestStretch(
      [=](int32_t a, int32_t b) { return coarse[a] == coarse[b] && fine[a] == fine[b]; });
  const int32_t level = tables->even_levels.first;
  return FillChanges(tables->coarse, level, tables->coarse_changes) &&
         FillChanges(tables->fine, level, tables->fine_changes);
}

void FillTables(const YUsmDoubleParameters& parameters, YUsmDoubleTables* tables) {
  FillBandTables(parameters.coarse, &tables->coarse);
  FillBandTables(parameters.fine, &tables->fine);
  const bool are_means = IsMean(parameters.coarse) && IsMean(parameters.fine);
  tables->even_levels = {};
  tables->has_even_levels = are_means && FindEvenLevels(tables);
  tables->is_even = are_means && IsEven(tables->coarse) && IsEven(tables->fine) &&
                    FindEvenBand(tables->coarse, &tables->even_coarse) &&
                    FindEvenBand(tables->fine, &tables->even_fine);
}

// The steps between pixels and luminance.
class MaskRows {
 public:
  MaskRows(const uint8_t* source, uint8_t* destination, std::ptrdiff_t width, uint32_t color_model,
           const YUsmDoubleTables& tables, KernelTier tier)
      : source_(source),
        destination_(destination),
        width_(width),
        tables_(tables),
        luminance_(ForTier(tier, kLuminancePlain, kLuminanceSse, kLuminanceAvx2)
                       .Of(color_model, kDepthBits)),
        find_deltas_(ForTier(tier, kYUsmDoublePlain, kYUsmDoubleSse, kYUsmDoubleAvx2).find_deltas) {
  }

  void Extract(std::ptrdiff_t row, int16_t* luminance) const {
    luminance_.extract(RowAt<uint8_t>(source_, kBytesPerPixel * width_, row), luminance, width_,
                       kDepthBits);
  }

  // The deltas take the place of the coarse blur, of one row, which stays in the cache meanwhile.
  void Correct(std::ptrdiff_t row, const int16_t* luminance, int16_t* coarse_blur,
               const int16_t* fine_blur) const {
    find_deltas_(luminance, coarse_blur, fine_blur, coarse_blur, width_, tables_);
    luminance_.add_deltas(RowAt<uint8_t>(source_, kBytesPerPixel * width_, row),
                          RowAt<uint8_t>(destination_, kBytesPerPixel * width_, row), coarse_blur,
                          width_, kDepthBits);
  }

 private:
  const uint8_t* const source_;
  uint8_t* const destination_;
  const std::ptrdiff_t width_;
  const YUsmDoubleTables& tables_;
  const LuminanceKernels::OfLayout luminance_;
  FindDoubleDeltasRow* const find_deltas_;
};

// One blur of the luminance, row by row from the top.
class StreamedBlur {
 public:
  [[nodiscard]] bool Prepare(uint32_t width, std::ptrdiff_t height, const YUsmBand& band,
                             KernelTier tier) {
    height_ = height;
    if (!filter_.Prepare(width, band.tap_count, band.weights, PlaneSamples::kLuminance, tier)) {
      return false;
    }
    const std::ptrdiff_t reached = filter_.Before() + 1 + filter_.After();
    return filtered_.Allocate(width, static_cast<uint64_t>(reached)) && blurred_.Allocate(width);
  }

  std::ptrdiff_t RowsAhead() const { return filter_.After(); }

  // The blurred row; called for every row in turn. The luminance rows up to `row` + RowsAhead() are
  // in the ring.
  int16_t* Blur(std::ptrdiff_t row, const RowRing<int16_t>& luminance) {
    for (; next_ < std::min(height_, row + filter_.After() + 1); ++next_) {
      filter_.FilterRow(luminance.Row(next_), filtered_.Row(next_));
    }
    filter_.CombineRows(filtered_, height_, row, blurred_.data());
    return blurred_.data();
  }

 private:
  SeparablePlaneFilter filter_;
  RowRing<int16_t> filtered_;  // horizontally
  WorkMemory<int16_t> blurred_;
  std::ptrdiff_t height_ = 0;
  std::ptrdiff_t next_ = 0;  // the first row not yet filtered horizontally
};

Status FilterRows(const MaskRows& rows, uint32_t width, uint32_t height,
                  const YUsmDoubleParameters& parameters, KernelTier tier) {
  const auto row_count = static_cast<std::ptrdiff_t>(height);
  StreamedBlur coarse;
  StreamedBlur fine;
  RowRing<int16_t> luminance;
  if (!coarse.Prepare(width, row_count, parameters.coarse, tier) ||
      !fine.Prepare(width, row_count, parameters.fine, tier)) {
    return OVRA_ERROR_NO_MEMORY;
  }
  const std::ptrdiff_t rows_ahead = std::max(coarse.RowsAhead(), fine.RowsAhead());
  if (!luminance.Allocate(width, static_cast<uint64_t>(rows_ahead + 1))) {
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

Status FilterYUsmDouble(const uint8_t* source, uint8_t* destination, uint32_t width,
                        uint32_t height, uint32_t color_model,
                        const YUsmDoubleParameters& parameters, KernelTier tier) {
  if (width > kMaxSide || height > kMaxSide) return OVRA_ERROR_NO_MEMORY;
  WorkMemory<YUsmDoubleTables> tables;
  if (!tables.Allocate(1)) return OVRA_ERROR_NO_MEMORY;
  FillTables(parameters, &tables[0]);
  const MaskRows rows(source, destination, static_cast<std::ptrdiff_t>(width), color_model,
                      tables[0], tier);
  return FilterRows(rows, width, height, parameters, tier);
}

}  // namespace ovra
