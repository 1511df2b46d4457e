// SPDX-License-Identifier: MIT
#include "filter/multi_frequency/multi_frequency.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "core/format_rules.h"
#include "core/range.h"
#include "core/rows.h"
#include "filter/multi_frequency/kernels.h"
#include "tone/pyramid/pyramid.h"

namespace ovra {
namespace {

static_assert(sizeof(OvraMultiFrequencyParams) == 144);
static_assert(offsetof(OvraMultiFrequencyParams, band) == 16);

constexpr int kMaxBands = OVRA_MULTI_FREQUENCY_MAX_BANDS;

bool AreParamsAccepted(const OvraMultiFrequencyParams& params) {
  if (params.band_count < 1 || params.band_count > kMaxBands) return false;
  if (!IsWithin(params.base_gain, 0, 2) || !IsWithin(params.pivot, 0, 1)) return false;
  for (uint32_t k = 0; k < params.band_count; ++k) {
    const OvraMultiFrequencyBand& band = params.band[k];
    if (!IsWithin(band.gain, 0, 4) || !IsWithin(band.noise, 0, 0.25F) ||
        !IsWithin(band.damping, 0, 1) || !IsWithin(band.limit, 0, 1) || band.noise > band.limit) {
      return false;
    }
  }
  return true;
}

bool AcceptsModel(const PixelFormat& format) {
  const uint32_t model = format.color_model;
  return (model <= OVRA_MODEL_YCC || model == OVRA_MODEL_RGBA || model == OVRA_MODEL_BGRA) &&
         ModelFitsChannels(format);
}

constexpr FormatRules kFormatRules = {
    .channels = NumberSet::Of(1, 3, 4),
    .channels_refused = OVRA_ERROR_YUSM_CHANNELS,
    .depths_bits = NumberSet::Between(8, 16),
    .depth_refused = OVRA_ERROR_YUSM_DEPTH,
    .accepts_model = AcceptsModel,
    .model_refused = OVRA_ERROR_YUSM_COLOR_MODEL,
    .arrangement_refused = OVRA_ERROR_YUSM_ARRANGEMENT,
};

// A factor in units of 1/8192.
int32_t Factor(double value) {
  return static_cast<int32_t>(std::floor(8192 * value + 0.5));
}

// A share of the range in working units.
int16_t Amplitude(double value) {
  return static_cast<int16_t>(std::min(32767.0, std::floor(32768 * value + 0.5)));
}

// What a call's parameters come to. The base is a band of its own: its coefficients are what the
// brightness differs from the pivot, all of them under the gain.
struct Responses {
  explicit Responses(const OvraMultiFrequencyParams& params)
      : bands(static_cast<int>(params.band_count)),
        pivot(Amplitude(params.pivot)),
        base{static_cast<int16_t>(Factor(params.base_gain) - 8192), 0, 0, 32767} {
    for (int k = 0; k < bands; ++k) {
      const OvraMultiFrequencyBand& from = params.band[k];
      band[k] = {static_cast<int16_t>(Factor(from.gain) - 8192),
                 static_cast<int16_t>(Factor(from.damping)), Amplitude(from.noise),
                 Amplitude(from.limit)};
    }
  }

  int bands;
  int16_t pivot;
  BandResponse base;
  BandResponse band[kMaxBands] = {};
};

// How far below a row of the result that row of the source lies which will be the next to be read for
// the first time: the base is made two of its rows ahead, and they take two more of it on every level
// below, as many at once as one of its rows stands for.
std::ptrdiff_t RowsAhead(uint32_t bands, uint32_t height) {
  return std::min(std::ptrdiff_t{5} << bands, static_cast<std::ptrdiff_t>(height));
}

struct Picture {
  const uint8_t* source;
  uint8_t* destination;
  std::ptrdiff_t stride;
  PlaneSize size;
  PixelRows rows;
};

// The brightness of a picture.
class BrightnessSource final : public RowSource {
 public:
  BrightnessSource(const Picture& picture, BrightnessRow* brightness)
      : picture_(picture), brightness_(brightness) {}

  // Keeps the last `rows`, and as many as a reduction needs.
  bool Allocate(std::ptrdiff_t rows) {
    constexpr std::ptrdiff_t kReductionRows = 6;
    kept_ = std::max(rows, kReductionRows);
    return rows_.Allocate(static_cast<uint64_t>(kept_), picture_.size.width) &&
           again_.Allocate(1, picture_.size.width);
  }

  int16_t* Next() override { return Make(taken_++, &rows_); }

  // A row that was taken: as it was kept, or made again.
  const int16_t* Row(std::ptrdiff_t row) {
    return taken_ - row <= kept_ ? rows_[row] : Make(row, &again_);
  }

 private:
  int16_t* Make(std::ptrdiff_t row, WorkRows* rows) {
    int16_t* const made = (*rows)[row];
    brightness_(RowAt<uint8_t>(picture_.source, picture_.stride, row), made, picture_.size.width,
                picture_.rows.depth_bits);
    return made;
  }

  const Picture& picture_;
  BrightnessRow* const brightness_;
  std::ptrdiff_t kept_ = 0;
  std::ptrdiff_t taken_ = 0;
  WorkRows rows_;
  WorkRows again_;
};

// One call. Levels are counted from 0, the brightness itself, and are made as far ahead of the result as
// its rows need: with few bands the source is then in the cache when it is read again, and so is its
// brightness. Changes are made row by row at all levels, each from the next one's.
class Run {
 public:
  Run(const Picture& picture, const PixelFormat& format, const Responses& responses,
      KernelTier tier)
      : picture_(picture),
        responses_(responses),
        pyramid_(ForTier(tier, kPyramidPlain, kPyramidSse, kPyramidAvx2)),
        kernels_(ForTier(tier, kMultiFrequencyPlain, kMultiFrequencySse, kMultiFrequencyAvx2)),
        samples_(kernels_.Of(format.color_model, picture.rows.depth_bits)),
        brightness_(picture, samples_.brightness) {}

  Status Do() {
    if (!Allocate()) return OVRA_ERROR_NO_MEMORY;
    MakeResult();
    return OVRA_OK;
  }

 private:
  static constexpr int kFirstWhole = 2;
  static constexpr int16_t kNoChange = INT16_MIN;  // 2^15 as a word without sign
  static constexpr uint64_t kCoarseRows = 4;       // three that are expanded, and one
  static constexpr std::ptrdiff_t kMaxBrightnessRows =
      256;  // more leave the cache, and are made again

  struct Changes {
    WorkRows rows;
    std::ptrdiff_t made = 0;
  };

  bool Allocate() {
    const std::ptrdiff_t width = picture_.size.width;
    PlaneSize size = picture_.size;
    for (int k = 1; k <= responses_.bands; ++k) {
      size = size.Half();
      if (!changes_[k].rows.Allocate(kCoarseRows, size.width)) return false;
    }
    // The base is made two of its rows ahead, and they take two more of it on every level below.
    const std::ptrdiff_t rows_ahead = std::ptrdiff_t{4} << responses_.bands;
    const std::ptrdiff_t level1_rows = std::min(rows_ahead / 2 + 2, picture_.size.Half().height);
    const int whole = responses_.bands - kFirstWhole + 1;
    const std::ptrdiff_t rows_kept =
        std::min({rows_ahead, picture_.size.height / 8, kMaxBrightnessRows});
    return brightness_.Allocate(rows_kept) &&
           level1_.Allocate(picture_.size, static_cast<uint64_t>(level1_rows)) &&
           (whole == 0 ||
            (level2_.Allocate(level1_.size(), 1) && levels_.Allocate(level2_.size(), whole))) &&
           coarse_.Allocate(1, width / 2 + 1) && coarse_changes_.Allocate(1, width / 2 + 1);
  }

  void Start() {
    level1_.Start(&brightness_, pyramid_);
    level2_.Start(&level1_, pyramid_);
    if (responses_.bands >= kFirstWhole) levels_.Start(&level2_, pyramid_);
  }

  PlaneSize SizeOf(int level) const {
    return level == 1 ? level1_.size() : levels_[level - kFirstWhole].size;
  }

  void MakeResult() {
    Start();
    const PlaneSize size = picture_.size;
    for (std::ptrdiff_t y = 0; y < size.height; ++y) {
      MakeChangesUpTo(1, y / 2 + 1);
      ExpandToRow(level1_, 1, y);
      samples_.change(RowAt<uint8_t>(picture_.source, picture_.stride, y), Band(brightness_.Row(y)),
                      responses_.band[0], RowAt<uint8_t>(picture_.destination, picture_.stride, y),
                      {0, size.width}, picture_.rows);
    }
  }

  // Rows of the changes at a level up to this one or the last.
  void MakeChangesUpTo(int level, std::ptrdiff_t row) {
    Changes& changes = changes_[level];
    for (; changes.made <= std::min(row, SizeOf(level).height - 1); ++changes.made) {
      MakeChangesRow(level, changes.made);
    }
  }

  void MakeChangesRow(int level, std::ptrdiff_t y) {
    const bool is_base = level == responses_.bands;
    if (!is_base) {
      MakeChangesUpTo(level + 1, y / 2 + 1);
    } else if (level >= kFirstWhole) {
      levels_.MakeRows(y + 1);
    } else {
      level1_.Next();
    }
    const int16_t* const row = level == 1 ? level1_[y] : levels_[level - kFirstWhole][y];
    int16_t* const changes = changes_[level].rows[y];
    const std::ptrdiff_t width = SizeOf(level).width;
    if (is_base) {
      Fill(coarse_[0], width / 2 + 1, responses_.pivot);
      Fill(coarse_changes_[0], width / 2 + 1, kNoChange);
      kernels_.respond(Band(row), responses_.base, changes, width);
      return;
    }
    ExpandToRow(levels_[level + 1 - kFirstWhole], level + 1, y);
    kernels_.respond(Band(row), responses_.band[level], changes, width);
  }

  static void Fill(int16_t* row, std::ptrdiff_t width, int16_t value) {
    std::fill_n(row, width, value);
    HoldEnds(row, width);
  }

  // What row `y` of the finer level expands from.
  template <class Rows>
  void ExpandToRow(const Rows& coarse, int level, std::ptrdiff_t y) {
    const PlaneSize size = SizeOf(level);
    ExpandAcross(coarse, size, y, pyramid_.expand_across, coarse_[0]);
    ExpandAcross(changes_[level].rows, size, y, pyramid_.expand_changes_across, coarse_changes_[0]);
  }

  // A row of a level, whose coarser rows have been made.
  BandRow Band(const int16_t* level) const { return {level, coarse_[0], coarse_changes_[0]}; }

  const Picture& picture_;
  const Responses& responses_;
  const PyramidKernels& pyramid_;
  const MultiFrequencyKernels& kernels_;
  const MultiFrequencyKernels::OfLayout samples_;
  BrightnessSource brightness_;
  Reduction level1_;
  Reduction level2_;
  Pyramid levels_;  // from level 2 on
  Changes changes_[kMaxBands + 1];
  WorkRows coarse_;  // as narrow as the coarser level of those at work
  WorkRows coarse_changes_;
};

}  // namespace

Status MultiFrequency(const uint8_t* source, uint8_t* destination, uint32_t width, uint32_t height,
                      PixelFormatCode code, const OvraMultiFrequencyParams* params,
                      KernelTier tier) {
  if (source == nullptr || destination == nullptr || params == nullptr) {
    return OVRA_ERROR_YUSM_NULL;
  }
  if (width == 0 || height == 0) return OVRA_ERROR_YUSM_SIZE;
  if (!AreParamsAccepted(*params)) return OVRA_ERROR_MULTI_FREQUENCY_PARAMETER;
  PixelFormat format;
  const Status status = DecodeAndCheckFormat(code, kFormatRules, &format);
  if (status != OVRA_OK) return status;
  if (!IsCountable(width, height, format)) return OVRA_ERROR_NO_MEMORY;
  const std::ptrdiff_t stride = RowStride(width, format);
  const Picture picture = {
      source,
      destination,
      stride,
      {static_cast<std::ptrdiff_t>(width), static_cast<std::ptrdiff_t>(height)},
      {static_cast<int32_t>(format.depth_bits),
       source != destination && WritesRoundCache(stride, height),
       stride * RowsAhead(params->band_count, height)}};
  return Run(picture, format, Responses(*params), tier).Do();
}

}  // namespace ovra

OVRA_API OvraStatus OVRA_CALL OvraMultiFrequency(const uint8_t* source, uint8_t* destination,
                                                 uint32_t width, uint32_t height,
                                                 OvraPixelFormatCode format,
                                                 const OvraMultiFrequencyParams* params) {
  return ovra::MultiFrequency(source, destination, width, height, format, params,
                              ovra::DetectedTier());
}
