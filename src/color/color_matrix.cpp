// SPDX-License-Identifier: MIT
#include "color/color_matrix.h"

#include <cmath>
#include <limits>
#include <utility>

#include "color/color_matrix_kernels.h"
#include "color/handle.h"
#include "core/saturate.h"
#include "core/work_memory.h"

namespace ovra {
namespace {

static_assert(sizeof(ColorMatrix) == 244);

constexpr int kChannels = 3;
constexpr int kTerms = 10;
constexpr int kConstantTerm = 3;  // the linear terms stand before it, those of second order after

// What a handle stands for.
struct ColorMatrixContext {
  FormatPair formats;
  ColorMatrix matrix;
};

Status Accept(const FormatPair& formats, DecodedFormatPair* decoded) {
  constexpr FormatRules kRules = {
      .channels = NumberSet::Of(kChannels),
      .channels_refused = OVRA_ERROR_MATRIX_CHANNELS,
      .depths_bits = NumberSet::Between(8, 16),
      .depth_refused = OVRA_ERROR_MATRIX_DEPTH,
      .accepts_model = IsRgbBgrOrYcc,
      .model_refused = OVRA_ERROR_MATRIX_COLOR_MODEL,
      .arrangement_refused = OVRA_ERROR_MATRIX_ARRANGEMENT,
  };
  return AcceptFormats(formats, kRules, kRules, decoded);
}

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

FixedMatrix MakeFixedMatrix(const ColorMatrix& matrix, const DecodedFormatPair& formats) {
  FixedMatrix fixed = {};
  fixed.shift = FixedShift(formats.input.depth_bits);
  fixed.max = static_cast<int32_t>(formats.output.MaxSample());
  const double scale = 1 << fixed.shift;
  for (int k = 0; k < kChannels; ++k) {
    for (int j = 0; j < kChannels; ++j) {
      fixed.weight[k][j] = TruncateToInt32(matrix.rows[k][j] * scale);
    }
    fixed.offset[k] = TruncateToInt32(matrix.rows[k][kConstantTerm]);
  }
  return fixed;
}

DoubleMatrix MakeDoubleMatrix(const ColorMatrix& matrix, const DecodedFormatPair& formats) {
  DoubleMatrix exact = {};
  exact.max = formats.output.MaxSample();
  for (int k = 0; k < kChannels; ++k) {
    for (int t = 0; t < kTerms; ++t) exact.weight[k][t] = matrix.rows[k][t];
  }
  return exact;
}

template <class Matrix>
void ConvertRows(const ImagePair& images, const DecodedFormatPair& formats, const Matrix& matrix,
                 KernelTier tier) {
  WithSampleTypes(formats, [&]<class In, class Out>() {
    ConvertMatrixRow<Matrix, In, Out>* const convert_row =
        SelectConvertMatrix<Matrix, In, Out>(tier);
    ForEachRow(images, formats, [&](const uint8_t* source, uint8_t* destination) {
      convert_row(reinterpret_cast<const In*>(source), reinterpret_cast<Out*>(destination),
                  images.width, matrix);
    });
  });
}

Status MakeMatrixContext(const FormatPair& formats, const ColorMatrix& matrix,
                         ContextPtr<ColorMatrixContext>* made) {
  DecodedFormatPair decoded;
  const Status status = Accept(formats, &decoded);
  if (status != OVRA_OK) return status;
  ContextPtr<ColorMatrixContext> context = MakeContext<ColorMatrixContext>();
  if (context == nullptr) return OVRA_ERROR_NO_MEMORY;
  context->formats = formats;
  context->matrix = matrix;
  *made = std::move(context);
  return OVRA_OK;
}

Status Convert(const ImagePair& images, const FormatPair& formats,
               const ColorMatrixContext& context, KernelTier tier) {
  DecodedFormatPair decoded;
  const Status status = Accept(formats, &decoded);
  if (status != OVRA_OK) return status;
  if (formats != context.formats) return OVRA_ERROR_FORMAT_CHANGED;
  // One arithmetic for the whole matrix, also for rows without second-order terms.
  if (HasSecondOrderTerm(context.matrix)) {
    ConvertRows(images, decoded, MakeDoubleMatrix(context.matrix, decoded), tier);
  } else {
    ConvertRows(images, decoded, MakeFixedMatrix(context.matrix, decoded), tier);
  }
  return OVRA_OK;
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
  if (images.HasNull() || handle == 0) return OVRA_ERROR_MATRIX_NULL;
  if (images.HasZeroSide()) return OVRA_ERROR_MATRIX_ZERO_SIZE;
  return Convert(images, formats, *ContextOf<ColorMatrixContext>(handle), tier);
}

Status ConvertByColorMatrixOnce(const ImagePair& images, const FormatPair& formats,
                                const ColorMatrix* matrix, KernelTier tier) {
  if (images.HasNull() || matrix == nullptr) return OVRA_ERROR_MATRIX_NULL;
  if (images.HasZeroSide()) return OVRA_ERROR_MATRIX_ZERO_SIZE;
  ContextPtr<ColorMatrixContext> context;
  const Status status = MakeMatrixContext(formats, *matrix, &context);
  if (status != OVRA_OK) return status;
  return Convert(images, formats, *context, tier);
}

Status FreeColorMatrix(uintptr_t* handle) {
  if (handle == nullptr) return OVRA_ERROR_MATRIX_NULL;
  ReleaseHandle<ColorMatrixContext>(handle);
  return OVRA_OK;
}

}  // namespace ovra

OVRA_API OvraStatus OVRA_CALL OvraConvColorMtx_Init(OvraPixelFormatCode in_format,
                                                    OvraPixelFormatCode out_format,
                                                    const OvraColorMatrix* matrix,
                                                    uintptr_t* handle_out) {
  return ovra::InitColorMatrix({in_format, out_format}, matrix, handle_out);
}

OVRA_API OvraStatus OVRA_CALL OvraConvColorMtx(const uint8_t* src, uint8_t* dst, int32_t width,
                                               int32_t height, OvraPixelFormatCode in_format,
                                               OvraPixelFormatCode out_format, uintptr_t handle) {
  return ovra::ConvertByColorMatrix({src, dst, width, height}, {in_format, out_format}, handle,
                                    ovra::DetectedTier());
}

OVRA_API OvraStatus OVRA_CALL OvraConvColorMtxSingleStep(const uint8_t* src, uint8_t* dst,
                                                         int32_t width, int32_t height,
                                                         OvraPixelFormatCode in_format,
                                                         OvraPixelFormatCode out_format,
                                                         const OvraColorMatrix* matrix) {
  return ovra::ConvertByColorMatrixOnce({src, dst, width, height}, {in_format, out_format}, matrix,
                                        ovra::DetectedTier());
}

OVRA_API OvraStatus OVRA_CALL OvraConvColorMtx_Free(uintptr_t* handle) {
  return ovra::FreeColorMatrix(handle);
}
