// SPDX-License-Identifier: MIT
#include "filter/yusm/yusm.h"

#include <algorithm>
#include <cstddef>
#include <limits>

#include "core/format_rules.h"
#include "core/row_ring.h"
#include "core/rows.h"
#include "filter/luminance/kernels.h"
#include "filter/plane_filter/plane_filter.h"
#include "filter/yusm/even_deltas.h"
#include "filter/yusm/kernels.h"

namespace ovra {
namespace {

// Leaves room for a row with its mirrored columns in 32 bits.
constexpr uint32_t kMaxSide = std::numeric_limits<int32_t>::max() - 1024;

bool AcceptsColorModel(const PixelFormat& format) {
  return format.color_model <= OVRA_MODEL_BGRA && ModelFitsChannels(format) &&
         (format.channels != 3 || format.color_model <= OVRA_MODEL_YCC);
}

// Taps and tables of a mask that may run.
Status CheckParameters(const YUsmParameters& parameters) {
  if (parameters.tap_count < 0 || parameters.tap_count > OVRA_YUSM_MAX_TAPS ||
      (parameters.tap_count > 0 && parameters.weights == nullptr)) {
    return OVRA_ERROR_YUSM_TAPS;
  }
  if (parameters.level_table == nullptr || parameters.difference_table == nullptr) {
    return OVRA_ERROR_YUSM_NULL_TABLE;
  }
  return OVRA_OK;
}

Status CheckSize(uint32_t width, uint32_t height, int32_t tap_count) {
  const auto taps = static_cast<uint32_t>(tap_count);
  if (width < taps || height < taps) return OVRA_ERROR_YUSM_SIZE;
  return tap_count == 0 ? OVRA_ERROR_YUSM_TAPS : OVRA_OK;
}

Status BuildContext(const PixelFormat& format, const YUsmParameters& parameters,
                    ContextPtr<YUsmContext>* context) {
  *context = MakeContext<YUsmContext>();
  if (*context == nullptr) return OVRA_ERROR_NO_MEMORY;
  (*context)->tap_count = parameters.tap_count;
  std::copy_n(parameters.weights, parameters.tap_count, (*context)->weights);
  BuildYUsmTables(parameters.level_table, parameters.difference_table, parameters.amount,
                  format.depth_bits, context->get());
  return OVRA_OK;
}

// What blurs along a row and across rows. A mean needs no limit, and
// (8, 32, 48, 32, 8) are the former twice along a row, but one sum across.
struct BlurKernels {
  BlurKernels(const PlaneKernel& blur, KernelTier tier) {
    constexpr int32_t kThreeTapWeights[] = {32, 64, 32};
    constexpr int32_t kFiveTapWeights[] = {8, 32, 48, 32, 8};
    const auto has = [&blur](const auto& weights) {
      return std::equal(blur.weights, blur.weights + blur.taps, std::begin(weights),
                        std::end(weights));
    };
    const PlaneFilterKernels& plane =
        ForTier(tier, kPlaneFilterPlain, kPlaneFilterSse, kPlaneFilterAvx2);
    const YUsmKernels& mask = ForTier(tier, kYUsmPlain, kYUsmSse, kYUsmAvx2);
    const bool three_taps = has(kThreeTapWeights);
    const bool five_taps = has(kFiveTapWeights);
    const bool mirrored = IsMirroredMean(blur);
    along = mirrored ? plane.luminance : plane.shift;
    across = mirrored ? plane.luminance : mask.limited;
    if (three_taps) along = across = plane.three_taps;
    if (five_taps) {
      along = mask.smooth_twice;
      across = mask.five_taps;
    }
  }

  CombineRowsKernel* along;
  CombineRowsKernel* across;
};

// Where an index beyond either end is found: mirrored about the edge, which is not repeated. The
// kernel is not longer than the side, so one reflection is enough.
std::ptrdiff_t Mirror(std::ptrdiff_t index, std::ptrdiff_t size) {
  if (index < 0) return -index;
  return index >= size ? size - 2 - (index - size) : index;
}

// One run. Two rings hold as many rows as there are taps: luminance, with mirrored columns on both
// sides, and luminance blurred along the row. At the bottom the mirrored rows lie above the window
// of the kernel by up to one row, and no new row has taken their slots by then.
class YUsmRun {
 public:
  YUsmRun(std::ptrdiff_t width, std::ptrdiff_t height, const PixelFormat& format,
          const YUsmContext& context, KernelTier tier)
      : width_(width),
        height_(height),
        taps_(context.tap_count),
        after_(taps_ >> 1),
        before_(taps_ - 1 - after_),
        depth_bits_(static_cast<int32_t>(format.depth_bits)),
        tables_{context.correction_table, context.level_table, depth_bits_ == 8 ? 16 : 14,
                &even_deltas_},
        weights_(context),
        blur_kernels_(weights_.kernel, tier),
        find_deltas_(ForTier(tier, kYUsmPlain, kYUsmSse, kYUsmAvx2).find_deltas),
        luminance_kernels_(ForTier(tier, kLuminancePlain, kLuminanceSse, kLuminanceAvx2)
                               .Of(format.color_model, depth_bits_)) {
    FindEvenDeltas(tables_, &even_deltas_);
  }
  YUsmRun(const YUsmRun&) = delete;
  YUsmRun& operator=(const YUsmRun&) = delete;

  [[nodiscard]] bool Allocate() {
    const auto columns = static_cast<uint64_t>(before_ + width_ + after_);
    const auto taps = static_cast<uint64_t>(taps_);
    return luminance_.Allocate(columns, taps) && filtered_.Allocate(columns, taps) &&
           blurred_.Allocate(columns);
  }

  void Run(const uint8_t* source, uint8_t* destination, std::ptrdiff_t stride) {
    for (std::ptrdiff_t row = 0; row < after_; ++row) {
      ReadRow(RowAt<uint8_t>(source, stride, row), row);
    }
    for (std::ptrdiff_t row = 0; row < height_; ++row) {
      const std::ptrdiff_t newest = row + after_;
      if (newest < height_) ReadRow(RowAt<uint8_t>(source, stride, newest), newest);
      BlurRows(row);
      CorrectRow(RowAt<uint8_t>(source, stride, row), RowAt<uint8_t>(destination, stride, row),
                 row);
    }
  }

 private:
  // The low 16 bits of the context's weights, signed.
  struct Weights {
    explicit Weights(const YUsmContext& context) {
      for (int32_t k = 0; k < context.tap_count; ++k) {
        weights[k] = static_cast<int16_t>(context.weights[k]);
      }
      FillWeightPairs(weights, static_cast<size_t>(context.tap_count), pairs);
      kernel = {weights, pairs, context.tap_count, kPlaneUnitSum, 1.0 / kPlaneUnitSum};
    }
    Weights(const Weights&) = delete;
    Weights& operator=(const Weights&) = delete;

    int32_t weights[OVRA_YUSM_MAX_TAPS];
    int32_t pairs[OVRA_YUSM_MAX_TAPS / 2];
    PlaneKernel kernel;
  };

  void ReadRow(const uint8_t* source_row, std::ptrdiff_t row) {
    int16_t* const first = luminance_.Row(row);
    int16_t* const luminance = first + before_;
    luminance_kernels_.extract(source_row, luminance, width_, depth_bits_);
    for (std::ptrdiff_t x = -before_; x < 0; ++x) luminance[x] = luminance[Mirror(x, width_)];
    for (std::ptrdiff_t x = width_; x < width_ + after_; ++x) {
      luminance[x] = luminance[Mirror(x, width_)];
    }
    const int16_t* columns[OVRA_YUSM_MAX_TAPS];
    for (int32_t k = 0; k < taps_; ++k) columns[k] = first + k;
    blur_kernels_.along(columns, weights_.kernel, filtered_.Row(row), width_);
  }

  void BlurRows(std::ptrdiff_t row) {
    const int16_t* rows[OVRA_YUSM_MAX_TAPS];
    for (int32_t k = 0; k < taps_; ++k) rows[k] = filtered_.Row(Mirror(row - before_ + k, height_));
    blur_kernels_.across(rows, weights_.kernel, blurred_.data(), width_);
  }

  void CorrectRow(const uint8_t* source_row, uint8_t* destination_row, std::ptrdiff_t row) {
    int16_t* const deltas = blurred_.data();
    find_deltas_(luminance_.Row(row) + before_, blurred_.data(), deltas, width_, tables_);
    luminance_kernels_.add_deltas(source_row, destination_row, deltas, width_, depth_bits_);
  }

  const std::ptrdiff_t width_;
  const std::ptrdiff_t height_;
  const int32_t taps_;
  const int32_t after_;   // taps right of and below the pixel
  const int32_t before_;  // left of and above it: one less for even counts
  const int32_t depth_bits_;
  YUsmEvenDeltas even_deltas_ = {};
  const YUsmTables tables_;
  const Weights weights_;
  const BlurKernels blur_kernels_;
  FindDeltasRow* const find_deltas_;
  const LuminanceKernels::OfLayout luminance_kernels_;
  RowRing<int16_t> luminance_;
  RowRing<int16_t> filtered_;
  WorkMemory<int16_t> blurred_;
};

// A context with taps; sizes and format are checked.
Status FilterYUsm(const uint8_t* source, uint8_t* destination, uint32_t width, uint32_t height,
                  const PixelFormat& format, const YUsmContext& context, KernelTier tier) {
  if (width > kMaxSide || height > kMaxSide) return OVRA_ERROR_NO_MEMORY;
  const auto columns = static_cast<int32_t>(width);
  YUsmRun run(columns, static_cast<int32_t>(height), format, context, tier);
  if (!run.Allocate()) return OVRA_ERROR_NO_MEMORY;
  run.Run(source, destination, RowStride(columns, format));
  return OVRA_OK;
}

}  // namespace

Status CheckYUsmFormat(PixelFormatCode code, PixelFormat* format) {
  static constexpr FormatRules kRules = {
      .channels = NumberSet::Of(1, 3, 4),
      .channels_refused = OVRA_ERROR_YUSM_CHANNELS,
      .depths_bits = NumberSet::Between(8, 14),
      .depth_refused = OVRA_ERROR_YUSM_DEPTH,
      .accepts_model = AcceptsColorModel,
      .model_refused = OVRA_ERROR_YUSM_COLOR_MODEL,
      .arrangement_refused = OVRA_ERROR_YUSM_ARRANGEMENT,
  };
  return DecodeAndCheckFormat(code, kRules, format);
}

Status MakeYUsmContext(PixelFormatCode code, const YUsmParameters& parameters,
                       ContextPtr<YUsmContext>* context) {
  PixelFormat format;
  Status status = CheckYUsmFormat(code, &format);
  if (status == OVRA_OK) status = CheckParameters(parameters);
  return status == OVRA_OK ? BuildContext(format, parameters, context) : status;
}

Status RunYUsm(const uint8_t* source, uint8_t* destination, uint32_t width, uint32_t height,
               PixelFormatCode code, const YUsmContext* context, KernelTier tier) {
  if (source == nullptr || destination == nullptr || context == nullptr) {
    return OVRA_ERROR_YUSM_NULL;
  }
  PixelFormat format;
  Status status = CheckSize(width, height, context->tap_count);
  if (status == OVRA_OK) status = CheckYUsmFormat(code, &format);
  if (status != OVRA_OK) return status;
  return FilterYUsm(source, destination, width, height, format, *context, tier);
}

Status RunYUsmSingleStep(const uint8_t* source, uint8_t* destination, uint32_t width,
                         uint32_t height, PixelFormatCode code, const YUsmParameters& parameters,
                         KernelTier tier) {
  if (source == nullptr || destination == nullptr) return OVRA_ERROR_YUSM_NULL;
  PixelFormat format;
  ContextPtr<YUsmContext> context;
  Status status = CheckSize(width, height, parameters.tap_count);
  if (status == OVRA_OK) status = CheckParameters(parameters);
  if (status == OVRA_OK) status = CheckYUsmFormat(code, &format);
  if (status == OVRA_OK) status = BuildContext(format, parameters, &context);
  if (status != OVRA_OK) return status;
  return FilterYUsm(source, destination, width, height, format, *context, tier);
}

}  // namespace ovra

OVRA_API OvraStatus OVRA_CALL OvraYUsm_Init(OvraPixelFormatCode format, int32_t tap_count,
                                            const int32_t* weights, float amount,
                                            const int16_t* level_table,
                                            const int16_t* difference_table,
                                            OvraYUsmContext** context) {
  if (context == nullptr) return OVRA_ERROR_YUSM_NULL;
  *context = nullptr;
  ovra::ContextPtr<OvraYUsmContext> made;
  const ovra::Status status = ovra::MakeYUsmContext(
      format, {tap_count, weights, amount, level_table, difference_table}, &made);
  *context = made.release();
  return status;
}

OVRA_API OvraStatus OVRA_CALL OvraYUsm(const uint8_t* source, uint8_t* destination, uint32_t width,
                                       uint32_t height, OvraPixelFormatCode format,
                                       const OvraYUsmContext* context) {
  return ovra::RunYUsm(source, destination, width, height, format, context, ovra::DetectedTier());
}

OVRA_API OvraStatus OVRA_CALL OvraYUsm_Free(OvraYUsmContext** context) {
  if (context == nullptr) return OVRA_ERROR_YUSM_NULL;
  ovra::ReleaseContext(context);
  return OVRA_OK;
}

OVRA_API OvraStatus OVRA_CALL OvraYUsmSingleStep(const uint8_t* source, uint8_t* destination,
                                                 uint32_t width, uint32_t height,
                                                 OvraPixelFormatCode format, int32_t tap_count,
                                                 const int32_t* weights, float amount,
                                                 const int16_t* level_table,
                                                 const int16_t* difference_table) {
  return ovra::RunYUsmSingleStep(source, destination, width, height, format,
                                 {tap_count, weights, amount, level_table, difference_table},
                                 ovra::DetectedTier());
}
