// SPDX-License-Identifier: MIT
#include "color/cube/cube.h"

#include <utility>

namespace ovra {
namespace {

// The cube comes in four variants, by the input's depth and the output's channel count. They differ
// in what they accept, with which statuses, and in their channel order.
struct CubeVariant {
  FormatRules input_rules;
  FormatRules output_rules;
  bool ycc_is_reversed;  // as BGR always is

  bool IsReversed(uint32_t color_model) const {
    return color_model == OVRA_MODEL_BGR || (color_model == OVRA_MODEL_YCC && ycc_is_reversed);
  }
};

constexpr uint32_t kMaxOutputDepth = 12;

constexpr FormatRules InputRules(uint32_t max_depth_bits, Status depth_refused) {
  return {NumberSet::Of(3),
          OVRA_ERROR_CUBE_CHANNELS,
          NumberSet::Between(8, max_depth_bits),
          depth_refused,
          IsRgbBgrOrYcc,
          OVRA_ERROR_CUBE_COLOR_MODEL,
          OVRA_ERROR_CUBE_ARRANGEMENT};
}

// Four channels of output are CMYK alone. Three of that model pass the channel check and are
// refused for their model.
constexpr FormatRules OutputRules(uint32_t max_channels, Status channels_refused) {
  return {NumberSet::Between(3, max_channels),
          channels_refused,
          NumberSet::Between(8, kMaxOutputDepth),
          OVRA_ERROR_CUBE_DEPTH,
          max_channels == 3 ? IsRgbBgrOrYcc : IsFourChannelCmyk,
          OVRA_ERROR_CUBE_COLOR_MODEL,
          OVRA_ERROR_CUBE_ARRANGEMENT};
}

constexpr FormatRules kShallowInput = InputRules(12, OVRA_ERROR_CUBE_DEPTH);
constexpr FormatRules kDeepInput = InputRules(16, OVRA_ERROR_CUBE_INPUT_DEPTH);

constexpr CubeVariant kCube8x3 = {kShallowInput, OutputRules(3, OVRA_ERROR_CUBE_CHANNELS), false};
constexpr CubeVariant kCube8x4 = {kShallowInput, OutputRules(4, OVRA_ERROR_CUBE_CHANNELS), true};
constexpr CubeVariant kCube16x3 = {kDeepInput, OutputRules(3, OVRA_ERROR_CUBE_COLOR_MODEL), true};
constexpr CubeVariant kCube16x4 = {kDeepInput, OutputRules(4, OVRA_ERROR_CUBE_COLOR_MODEL), true};

// Chooses the variant by two fields of the formats that a call is made with; the others are not
// looked at yet.
Status SelectVariant(const FormatPair& formats, const CubeVariant** variant) {
  uint32_t depth_bits = 0;
  Status status = DecodeSampleDepth(formats.input, &depth_bits);
  if (status != OVRA_OK) return status;
  uint32_t channels = 0;
  status = DecodeChannelCount(formats.output, &channels);
  if (status != OVRA_OK) return status;
  if (depth_bits <= 8) {
    *variant = channels <= 3 ? &kCube8x3 : &kCube8x4;
  } else {
    *variant = channels <= 3 ? &kCube16x3 : &kCube16x4;
  }
  return OVRA_OK;
}

CubeLayout LayoutOf(const CubeVariant& variant, const DecodedFormatPair& formats) {
  const bool reversed = variant.IsReversed(formats.input.color_model);
  const bool three_channels = formats.output.channels == 3;
  CubeLayout layout;
  layout.input_depth_bits = formats.input.depth_bits;
  layout.node_components = static_cast<int>(formats.output.channels);
  layout.wide_if_needed = formats.input.depth_bits > 8;
  // Truncated products make it matter which of the coordinates is x: the order of three channels
  // is reversed in the tables, that of the samples of a pixel for four.
  layout.reversed_tables = reversed && three_channels;
  layout.reversed_samples = reversed && !three_channels;
  return layout;
}

ConvertCubeRun* ChooseKernel(const CubeContext& context, KernelTier tier) {
  const CubeKernels& kernels = ForTier(tier, kCubePlain, kCubeSse, kCubeAvx2);
  const bool deep_input = context.decoded.input.depth_bits > 8;
  const bool deep_output = context.decoded.output.depth_bits > 8;
  const bool four_channels = context.decoded.output.channels == 4;
  return context.memory.HasWideCoefficients()
             ? kernels.wide[deep_output][four_channels]
             : kernels.narrow[deep_input][deep_output][four_channels];
}

void Convert(const ImagePair& images, const CubeContext& context, KernelTier tier) {
  ConvertCubeRun* const convert = ChooseKernel(context, tier);
  const auto max_output = static_cast<int32_t>(context.decoded.output.MaxSample());
  const CubeTables tables = context.memory.Tables(max_output);
  ForEachRun(images, context.decoded,
             [&](const uint8_t* source, uint8_t* destination, std::ptrdiff_t pixels) {
               convert(source, destination, pixels, tables);
             });
}

Status MakeContextOf(const CubeVariant& variant, const FormatPair& formats,
                     const OvraColorCube& cube, ContextPtr<CubeContext>* context) {
  ContextPtr<CubeContext> made = MakeContext<CubeContext>();
  if (made == nullptr) return OVRA_ERROR_NO_MEMORY;
  Status status =
      DecodeAndCheckFormats(formats, variant.input_rules, variant.output_rules, &made->decoded);
  if (status == OVRA_OK) status = made->memory.Build(cube, LayoutOf(variant, made->decoded));
  if (status != OVRA_OK) return status;
  made->formats = formats;
  *context = std::move(made);
  return OVRA_OK;
}

}  // namespace

Status MakeCubeContext(const FormatPair& formats, const OvraColorCube* cube,
                       ContextPtr<CubeContext>* context) {
  const CubeVariant* variant = nullptr;
  const Status status = SelectVariant(formats, &variant);
  if (status != OVRA_OK) return status;
  if (cube == nullptr) return OVRA_ERROR_CUBE_NULL;
  return MakeContextOf(*variant, formats, *cube, context);
}

Status ConvColorCube(const ImagePair& images, const FormatPair& formats, const CubeContext* context,
                     KernelTier tier) {
  if (context == nullptr) return OVRA_ERROR_CUBE_NULL;
  const CubeVariant* variant = nullptr;
  Status status = SelectVariant(formats, &variant);
  if (status != OVRA_OK) return status;
  if (images.HasNull()) return OVRA_ERROR_CUBE_NULL;
  if (images.HasZeroSide()) return OVRA_ERROR_CUBE_ZERO_SIZE;
  if (formats != context->formats) {
    // The formats of the handle, by the rules of the variant that this call asks for.
    status = CheckFormats(context->decoded, variant->input_rules, variant->output_rules);
    return status == OVRA_OK ? OVRA_ERROR_CUBE_FORMAT_CHANGED : status;
  }
  Convert(images, *context, tier);
  return OVRA_OK;
}

Status ConvColorCubeSingleStep(const ImagePair& images, const FormatPair& formats,
                               const OvraColorCube* cube, KernelTier tier) {
  if (cube == nullptr) return OVRA_ERROR_CUBE_NULL;
  const CubeVariant* variant = nullptr;
  Status status = SelectVariant(formats, &variant);
  if (status != OVRA_OK) return status;
  if (images.HasNull()) return OVRA_ERROR_CUBE_NULL;
  if (images.HasZeroSide()) return OVRA_ERROR_CUBE_ZERO_SIZE;
  ContextPtr<CubeContext> context;
  status = MakeContextOf(*variant, formats, *cube, &context);
  if (status == OVRA_OK) Convert(images, *context, tier);
  return status;
}

}  // namespace ovra

OVRA_API OvraStatus OVRA_CALL OvraConvColorCube_Init(OvraPixelFormatCode in_format,
                                                     OvraPixelFormatCode out_format,
                                                     const OvraColorCube* cube,
                                                     uintptr_t* handle_out) {
  return ovra::CreateHandle<ovra::CubeContext>(
      handle_out, OVRA_ERROR_CUBE_NULL, [&](ovra::ContextPtr<ovra::CubeContext>* context) {
        return ovra::MakeCubeContext({in_format, out_format}, cube, context);
      });
}

OVRA_API OvraStatus OVRA_CALL OvraConvColorCube(const uint8_t* source, uint8_t* destination,
                                                int32_t width, int32_t height,
                                                OvraPixelFormatCode in_format,
                                                OvraPixelFormatCode out_format, uintptr_t handle) {
  return ovra::ConvColorCube({source, destination, width, height}, {in_format, out_format},
                             ovra::ContextOf<const ovra::CubeContext>(handle),
                             ovra::DetectedTier());
}

OVRA_API OvraStatus OVRA_CALL OvraConvColorCube_Free(uintptr_t* handle) {
  if (handle == nullptr) return OVRA_ERROR_CUBE_NULL;
  return ovra::ReleaseHandle<ovra::CubeContext>(handle, OVRA_ERROR_CUBE_NULL, OVRA_ERROR_CUBE_NULL);
}

OVRA_API OvraStatus OVRA_CALL OvraConvColorCubeSingleStep(
    const uint8_t* source, uint8_t* destination, int32_t width, int32_t height,
    OvraPixelFormatCode in_format, OvraPixelFormatCode out_format, const OvraColorCube* cube) {
  return ovra::ConvColorCubeSingleStep({source, destination, width, height},
                                       {in_format, out_format}, cube, ovra::DetectedTier());
}
