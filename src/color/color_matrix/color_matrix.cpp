// SPDX-License-Identifier: MIT
#include "color/color_matrix/color_matrix.h"

#include <cmath>
#include <limits>
#include <utility>

#include "color/color_matrix/kernels.h"
#include "color/handle.h"
#include "core/saturate.h"
#include "core/work_memory.h"
#include "core/wrapping.h"

namespace ovra {
namespace {

static_assert(sizeof(ColorMatrix) == 244);

constexpr int kChannels = 3;
constexpr int kTerms = 10;
constexpr int kConstantTerm = 3;  // the linear terms stand before it, those of second order after

constexpr FormatRules kRules = {
    .channels = NumberSet::Of(kChannels),
    .channels_refused = OVRA_ERROR_MATRIX_CHANNELS,
    .depths_bits = NumberSet::Between(8, 16),
    .depth_refused = OVRA_ERROR_MATRIX_DEPTH,
    .accepts_model = IsRgbBgrOrYcc,
    .model_refused = OVRA_ERROR_MATRIX_COLOR_MODEL,
    .arrangement_refused = OVRA_ERROR_MATRIX_ARRANGEMENT,
};

// What a handle stands for.
struct ColorMatrixContext : TaggedContext<0x3A7B1C00> {
  FormatPair formats;
  DecodedFormatPair decoded;
  ColorMatrix matrix;
};

// Whether a weight asks for its term. Denormal numbers do; infinities and what is no number do not.
bool CountsAsZero(double weight) {
  const double magnitude = std::fabs(weight);
  return !(magnitude * std::numeric_limits<double>::epsilon() < magnitude);
}

bool HasSecondOrderTerm(const ColorMatrix& matrix) {
  for (int k = 0; k < kChannels; ++k) {
    for (int t = kConstantTerm + 1; t < kTerms; ++t) {
      if (!CountsAsZero(matrix.rows[k][t])) return true;
    }
  }
  return false;
}

// Fractional bits of the fixed-point weights: one more than the depth up to 12 bits; beyond, depth and
// fractional bits make 25.
int32_t FixedShift(uint32_t input_depth_bits) {
  const auto depth = static_cast<int32_t>(input_depth_bits);
  return depth <= 12 ? depth + 1 : 25 - depth;
}

void PreparePairs(bool deep_input, FixedMatrix* fixed) {
  fixed->fits_pairs = true;
  for (const FixedMatrix::Samples& weights : fixed->weight) {
    for (const int32_t weight : weights) {
      if (weight != static_cast<int16_t>(weight)) fixed->fits_pairs = false;
    }
  }
  if (!fixed->fits_pairs) return;
  const int32_t signed_zero = deep_input ? 1 << 15 : 0;
  for (int i = 0; i < FixedMatrix::kSamples; ++i) {
    const int32_t w0 = fixed->weight[0][i];
    const int32_t w1 = fixed->weight[1][i];
    const int32_t w2 = fixed->weight[2][i];
    fixed->weights01[i] = PackedPair(w0, w1);
    fixed->weight2[i] = PackedPair(w2, 0);
    fixed->pair_sum[i] = static_cast<int32_t>(
        WrappingSum(WrappingProduct(signed_zero, w0 + w1 + w2), 1U << (fixed->shift - 1)));
  }
}

// Parts of a weight that are multiplied by bytes: 32 times the high one and the low one.
struct WeightParts {
  static constexpr int32_t kUnit = 32;
  int32_t high;
  int32_t low;

  explicit WeightParts(int32_t weight)
      : high((weight + kUnit / 2) >> 5), low(weight - kUnit * high) {}
};

// For input and output of bytes, with the weights of one output channel. Multiply-adds of two bytes
// saturate, so that neither may leave 16 bits, and the whole sum is rounded and offset in them.
bool FitsBytes(const FixedMatrix& fixed, int k) {
  constexpr int32_t kMaxWeight = 2048;  // whose low part fits a byte by far
  constexpr int32_t kLowSum = 3 * 255 * WeightParts::kUnit / 2 / WeightParts::kUnit + 1;
  constexpr int32_t kMaxPair = 32767 / 255;
  constexpr int32_t kMaxOffset = 1024;
  if (fixed.offset[k] > kMaxOffset || fixed.offset[k] < -kMaxOffset) return false;
  int32_t least = 16 * fixed.offset[k] + 8 - kLowSum;
  int32_t greatest = 16 * fixed.offset[k] + 8 + kLowSum;
  int32_t pair = 0;
  for (int j = 0; j < kChannels; ++j) {
    const int32_t weight = fixed.weight[j][k];
    if (weight > kMaxWeight || weight < -kMaxWeight) return false;
    const int32_t high = WeightParts(weight).high;
    (high < 0 ? least : greatest) += 255 * high;
    if (j < 2) pair += high < 0 ? -high : high;
  }
  return pair <= kMaxPair && least >= -32768 && greatest <= 32767;
}

void PrepareBytes(FixedMatrix* fixed) {
  fixed->fits_bytes = FitsBytes(*fixed, 0) && FitsBytes(*fixed, 1) && FitsBytes(*fixed, 2);
  if (!fixed->fits_bytes) return;
  for (int i = 0; i < FixedMatrix::kByteSamples; ++i) {
    const int k = i % kChannels;
    for (int j = 0; j < kChannels; ++j) {
      const WeightParts parts(fixed->weight[j][k]);
      const int at = 2 * i + j % 2;  // x[2] stands first, as x[0]
      (j < 2 ? fixed->high01 : fixed->high2)[at] = static_cast<int8_t>(parts.high);
      (j < 2 ? fixed->low01 : fixed->low2)[at] = static_cast<int8_t>(parts.low);
    }
    fixed->byte_sum[i] = static_cast<int16_t>(16 * fixed->offset[k] + 8);
  }
}

FixedMatrix MakeFixedMatrix(const ColorMatrix& matrix, const DecodedFormatPair& formats) {
  FixedMatrix fixed = {};
  fixed.shift = FixedShift(formats.input.depth_bits);
  fixed.max = static_cast<int32_t>(formats.output.MaxSample());
  const double scale = 1 << fixed.shift;
  for (int i = 0; i < FixedMatrix::kSamples; ++i) {
    const int k = i % kChannels;
    for (int j = 0; j < kChannels; ++j) {
      fixed.weight[j][i] = TruncateToInt32(matrix.rows[k][j] * scale);
    }
    fixed.offset[i] = TruncateToInt32(matrix.rows[k][kConstantTerm]);
  }
  PreparePairs(formats.input.depth_bits > 8, &fixed);
  if (formats.input.depth_bits == 8 && formats.output.depth_bits == 8) PrepareBytes(&fixed);
  return fixed;
}

DoubleMatrix MakeDoubleMatrix(const ColorMatrix& matrix, const DecodedFormatPair& formats) {
  DoubleMatrix exact = {};
  exact.max = formats.output.MaxSample();
  for (int k = 0; k < kChannels; ++k) {
    for (int t = 0; t < kTerms; ++t) {
      // All sums that are no number shall be negative; the kernels take them for less than 0.
      const double given = matrix.rows[k][t];
      for (double& weight : exact.weight[k][t]) {
        weight = std::isnan(given) ? -std::numeric_limits<double>::quiet_NaN() : given;
      }
    }
  }
  return exact;
}

// The one of the kernels that is for the depths of the formats.
template <class Matrix>
ConvertMatrixRun<Matrix>* DepthsOf(const DecodedFormatPair& formats,
                                   ConvertMatrixRun<Matrix>* const (&kernels)[2][2]) {
  return kernels[formats.input.depth_bits > 8][formats.output.depth_bits > 8];
}

ConvertMatrixRun<FixedMatrix>* SelectFixed(const FixedMatrix& matrix,
                                           const DecodedFormatPair& formats,
                                           const ColorMatrixKernels& kernels) {
  if (matrix.fits_bytes) return kernels.fixed_bytes;
  return DepthsOf(formats, matrix.fits_pairs ? kernels.fixed_pairs : kernels.fixed);
}

Status MakeMatrixContext(const FormatPair& formats, const ColorMatrix& matrix,
                         ContextPtr<ColorMatrixContext>* made) {
  DecodedFormatPair decoded;
  const Status status = DecodeAndCheckFormats(formats, kRules, kRules, &decoded);
  if (status != OVRA_OK) return status;
  ContextPtr<ColorMatrixContext> context = MakeContext<ColorMatrixContext>();
  if (context == nullptr) return OVRA_ERROR_NO_MEMORY;
  context->formats = formats;
  context->decoded = decoded;
  context->matrix = matrix;
  *made = std::move(context);
  return OVRA_OK;
}

void Convert(const ImagePair& images, const ColorMatrixContext& context, KernelTier tier) {
  const ColorMatrixKernels& kernels =
      ForTier(tier, kColorMatrixPlain, kColorMatrixSse, kColorMatrixAvx2);
  // One arithmetic for the whole matrix, also for rows without second-order terms.
  if (HasSecondOrderTerm(context.matrix)) {
    const DoubleMatrix matrix = MakeDoubleMatrix(context.matrix, context.decoded);
    ConvertMatrixRun<DoubleMatrix>* const convert = DepthsOf(context.decoded, kernels.exact);
    ForEachRun(images, context.decoded,
               [&](const uint8_t* source, uint8_t* destination, std::ptrdiff_t pixels) {
                 convert(source, destination, pixels, matrix);
               });
  } else {
    const FixedMatrix matrix = MakeFixedMatrix(context.matrix, context.decoded);
    ConvertMatrixRun<FixedMatrix>* const convert = SelectFixed(matrix, context.decoded, kernels);
    ForEachRun(images, context.decoded,
               [&](const uint8_t* source, uint8_t* destination, std::ptrdiff_t pixels) {
                 convert(source, destination, pixels, matrix);
               });
  }
}

}  // namespace

Status InitColorMatrix(const FormatPair& formats, const ColorMatrix* matrix,
                       uintptr_t* handle_out) {
  if (matrix == nullptr) return OVRA_ERROR_MATRIX_NULL;
  return CreateHandle<ColorMatrixContext>(handle_out, OVRA_ERROR_MATRIX_NULL,
                                          [&](ContextPtr<ColorMatrixContext>* made) {
                                            return MakeMatrixContext(formats, *matrix, made);
                                          });
}

Status ConvertByColorMatrix(const ImagePair& images, const FormatPair& formats, uintptr_t handle,
                            KernelTier tier) {
  const auto* const context = ContextOf<const ColorMatrixContext>(handle);
  if (images.HasNull() || context == nullptr) return OVRA_ERROR_MATRIX_NULL;
  if (images.HasZeroSide()) return OVRA_ERROR_MATRIX_ZERO_SIZE;
  if (formats != context->formats) {  // those have been accepted
    DecodedFormatPair decoded;
    const Status status = DecodeAndCheckFormats(formats, kRules, kRules, &decoded);
    return status == OVRA_OK ? OVRA_ERROR_FORMAT_CHANGED : status;
  }
  Convert(images, *context, tier);
  return OVRA_OK;
}

Status ConvertByColorMatrixOnce(const ImagePair& images, const FormatPair& formats,
                                const ColorMatrix* matrix, KernelTier tier) {
  if (images.HasNull() || matrix == nullptr) return OVRA_ERROR_MATRIX_NULL;
  if (images.HasZeroSide()) return OVRA_ERROR_MATRIX_ZERO_SIZE;
  ContextPtr<ColorMatrixContext> context;
  const Status status = MakeMatrixContext(formats, *matrix, &context);
  if (status == OVRA_OK) Convert(images, *context, tier);
  return status;
}

Status FreeColorMatrix(uintptr_t* handle) {
  if (handle == nullptr) return OVRA_ERROR_MATRIX_NULL;
  return ReleaseHandle<ColorMatrixContext>(handle, OVRA_OK, OVRA_ERROR_MATRIX_NULL);
}

}  // namespace ovra

OVRA_API OvraStatus OVRA_CALL OvraConvColorMtx_Init(OvraPixelFormatCode in_format,
                                                    OvraPixelFormatCode out_format,
                                                    const OvraColorMatrix* matrix,
                                                    uintptr_t* handle_out) {
  return ovra::InitColorMatrix({in_format, out_format}, matrix, handle_out);
}

OVRA_API OvraStatus OVRA_CALL OvraConvColorMtx(const uint8_t* source, uint8_t* destination,
                                               int32_t width, int32_t height,
                                               OvraPixelFormatCode in_format,
                                               OvraPixelFormatCode out_format, uintptr_t handle) {
  return ovra::ConvertByColorMatrix({source, destination, width, height}, {in_format, out_format},
                                    handle, ovra::DetectedTier());
}

OVRA_API OvraStatus OVRA_CALL OvraConvColorMtxSingleStep(
    const uint8_t* source, uint8_t* destination, int32_t width, int32_t height,
    OvraPixelFormatCode in_format, OvraPixelFormatCode out_format, const OvraColorMatrix* matrix) {
  return ovra::ConvertByColorMatrixOnce({source, destination, width, height},
                                        {in_format, out_format}, matrix, ovra::DetectedTier());
}

OVRA_API OvraStatus OVRA_CALL OvraConvColorMtx_Free(uintptr_t* handle) {
  return ovra::FreeColorMatrix(handle);
}
