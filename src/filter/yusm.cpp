// SPDX-License-Identifier: MIT
#include "filter/yusm.h"

#include <algorithm>
#include <cstddef>
#include <limits>

#include "core/rows.h"
#include "filter/luminance_kernels.h"
#include "filter/yusm_kernels.h"

namespace ovra {
namespace {

constexpr uint32_t kMaxDepthBits = 14;
// Leaves room for a row with its mirrored columns in 32 bits.
constexpr uint32_t kMaxSide = std::numeric_limits<int32_t>::max() - 1024;

bool IsAcceptedModel(uint32_t color_model, uint32_t channels) {
  return color_model <= OVRA_MODEL_BGRA && ColorModelFitsChannels(color_model, channels) &&
         (channels != 3 || color_model <= OVRA_MODEL_YCC);
}

bool AreTapsAccepted(int32_t tap_count, const int32_t* weights) {
  return tap_count >= 1 && tap_count <= OVRA_YUSM_MAX_TAPS && weights != nullptr;
}

YUsmBlur RecognizeBlur(const int32_t* weights, int32_t taps) {
  constexpr int32_t kThreeTapWeights[] = {32, 64, 32};
  constexpr int32_t kFiveTapWeights[] = {8, 32, 48, 32, 8};
  const auto are = [=](const auto& set) {
    return std::equal(weights, weights + taps, std::begin(set), std::end(set));
  };
  if (are(kThreeTapWeights)) return YUsmBlur::kThreeTaps;
  if (are(kFiveTapWeights)) return YUsmBlur::kFiveTaps;
  return YUsmBlur::kGeneral;
}

// Where an index beyond either end is found: mirrored about the edge, which is not repeated. The
// kernel is not longer than the side, so one reflection is enough.
std::ptrdiff_t Mirror(std::ptrdiff_t index, std::ptrdiff_t size) {
  if (index < 0) return -index;
  return index >= size ? size - 2 - (index - size) : index;
}

// One run. Image row j lives in slot j mod taps of two rings: luminance, with mirrored columns on
// both sides, and luminance blurred along the row. At the bottom the mirrored rows lie above the
// window of the kernel by up to one row, and no new row has taken their slots by then.
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
        tables_{context.correction_table, context.level_table, depth_bits_ == 8 ? 16 : 14} {
    for (int32_t k = 0; k < taps_; ++k) weights_[k] = static_cast<int16_t>(context.weights[k]);
    for (int32_t k = 0; k < taps_; k += 2) {
      weight_pairs_[k / 2] = WeightPair(weights_[k], k + 1 < taps_ ? weights_[k + 1] : 0);
    }
    luminance_kernels_ = SelectLuminanceKernels(format.color_model, depth_bits_, tier);
    kernels_ = SelectYUsmKernels(RecognizeBlur(weights_, taps_), tier);
  }

  bool Allocate() {
    // Whole vectors, so that every row starts as aligned as the first.
    slot_size_ = (before_ + width_ + after_ + kRowUnit - 1) / kRowUnit * kRowUnit;
    const uint64_t ring_size = static_cast<uint64_t>(slot_size_) * static_cast<uint64_t>(taps_);
    return luminance_ring_.Allocate(ring_size) && filtered_ring_.Allocate(ring_size) &&
           blurred_.Allocate(static_cast<uint64_t>(slot_size_));
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
  static constexpr std::ptrdiff_t kRowUnit = 32;

  // The slot's first mirrored column.
  int16_t* LuminanceSlot(std::ptrdiff_t row) {
    return luminance_ring_.data() + slot_size_ * (row % taps_);
  }
  int16_t* FilteredSlot(std::ptrdiff_t row) {
    return filtered_ring_.data() + slot_size_ * (row % taps_);
  }

  void ReadRow(const uint8_t* source_row, std::ptrdiff_t row) {
    int16_t* const slot = LuminanceSlot(row);
    int16_t* const luminance = slot + before_;
    luminance_kernels_.extract(source_row, luminance, width_, depth_bits_);
    for (std::ptrdiff_t x = -before_; x < 0; ++x) luminance[x] = luminance[Mirror(x, width_)];
    for (std::ptrdiff_t x = width_; x < width_ + after_; ++x) {
      luminance[x] = luminance[Mirror(x, width_)];
    }
    const int16_t* columns[OVRA_YUSM_MAX_TAPS];
    for (int32_t k = 0; k < taps_; ++k) columns[k] = slot + k;
    kernels_.blur_along(columns, blur_, FilteredSlot(row), width_);
  }

  void BlurRows(std::ptrdiff_t row) {
    const int16_t* rows[OVRA_YUSM_MAX_TAPS];
    for (int32_t k = 0; k < taps_; ++k) rows[k] = FilteredSlot(Mirror(row - before_ + k, height_));
    kernels_.blur_across(rows, blur_, blurred_.data(), width_);
  }

  void CorrectRow(const uint8_t* source_row, uint8_t* destination_row, std::ptrdiff_t row) {
    int16_t* const deltas = blurred_.data();
    kernels_.find_deltas(LuminanceSlot(row) + before_, blurred_.data(), deltas, width_, tables_);
    luminance_kernels_.add_deltas(source_row, destination_row, deltas, width_, depth_bits_);
  }

  const std::ptrdiff_t width_;
  const std::ptrdiff_t height_;
  const int32_t taps_;
  const int32_t after_;   // taps right of and below the pixel
  const int32_t before_;  // left of and above it: one less for even counts
  const int32_t depth_bits_;
  const YUsmTables tables_;
  int32_t weights_[OVRA_YUSM_MAX_TAPS];  // the low 16 bits, signed
  int32_t weight_pairs_[OVRA_YUSM_MAX_TAPS / 2];
  const PlaneKernel blur_ = {weights_, weight_pairs_, taps_, kPlaneUnitSum};
  LuminanceKernels luminance_kernels_;
  YUsmKernels kernels_;
  std::ptrdiff_t slot_size_ = 0;
  WorkMemory<int16_t> luminance_ring_;
  WorkMemory<int16_t> filtered_ring_;
  WorkMemory<int16_t> blurred_;
};

}  // namespace

Status CheckYUsmFormat(PixelFormatCode code, PixelFormat* format) {
  const Status status = DecodePixelFormat(code, format);
  if (status != OVRA_OK) return status;
  if (format->channels == 2) return OVRA_ERROR_YUSM_CHANNELS;
  if (format->depth_bits > kMaxDepthBits) return OVRA_ERROR_YUSM_DEPTH;
  if (!IsAcceptedModel(format->color_model, format->channels)) return OVRA_ERROR_YUSM_COLOR_MODEL;
  if (format->arrangement != 0) return OVRA_ERROR_YUSM_ARRANGEMENT;
  return OVRA_OK;
}

Status MakeYUsmContext(PixelFormatCode code, const YUsmParameters& parameters,
                       ContextPtr<YUsmContext>* context) {
  PixelFormat format;
  const Status status = CheckYUsmFormat(code, &format);
  if (status != OVRA_OK) return status;
  if (!AreTapsAccepted(parameters.tap_count, parameters.weights)) return OVRA_ERROR_YUSM_TAPS;
  if (parameters.level_table == nullptr || parameters.difference_table == nullptr) {
    return OVRA_ERROR_YUSM_NULL_TABLE;
  }
  *context = MakeContext<YUsmContext>();
  if (*context == nullptr) return OVRA_ERROR_NO_MEMORY;
  (*context)->tap_count = parameters.tap_count;
  std::copy_n(parameters.weights, parameters.tap_count, (*context)->weights);
  BuildYUsmTables(parameters.level_table, parameters.difference_table, parameters.amount,
                  format.depth_bits, context->get());
  return OVRA_OK;
}

Status RunYUsm(const uint8_t* source, uint8_t* destination, uint32_t width, uint32_t height,
               PixelFormatCode code, const YUsmContext* context, KernelTier tier) {
  if (source == nullptr || destination == nullptr || context == nullptr) {
    return OVRA_ERROR_YUSM_NULL;
  }
  const auto taps = static_cast<uint32_t>(context->tap_count);
  if (width < taps || height < taps) return OVRA_ERROR_YUSM_SIZE;
  if (taps == 0) return OVRA_ERROR_YUSM_TAPS;
  PixelFormat format;
  const Status status = CheckYUsmFormat(code, &format);
  if (status != OVRA_OK) return status;
  if (width > kMaxSide || height > kMaxSide) return OVRA_ERROR_NO_MEMORY;

  const auto columns = static_cast<int32_t>(width);
  YUsmRun run(columns, static_cast<int32_t>(height), format, *context, tier);
  if (!run.Allocate()) return OVRA_ERROR_NO_MEMORY;
  run.Run(source, destination, RowStride(columns, format));
  return OVRA_OK;
}

Status RunYUsmSingleStep(const uint8_t* source, uint8_t* destination, uint32_t width,
                         uint32_t height, PixelFormatCode code, const YUsmParameters& parameters,
                         KernelTier tier) {
  if (source == nullptr || destination == nullptr) return OVRA_ERROR_YUSM_NULL;
  const auto taps = static_cast<uint32_t>(parameters.tap_count);
  if (width < taps || height < taps) return OVRA_ERROR_YUSM_SIZE;
  if (!AreTapsAccepted(parameters.tap_count, parameters.weights)) return OVRA_ERROR_YUSM_TAPS;
  if (parameters.level_table == nullptr || parameters.difference_table == nullptr) {
    return OVRA_ERROR_YUSM_NULL_TABLE;
  }
  ContextPtr<YUsmContext> context;
  const Status status = MakeYUsmContext(code, parameters, &context);
  if (status != OVRA_OK) return status;
  return RunYUsm(source, destination, width, height, code, context.get(), tier);
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
