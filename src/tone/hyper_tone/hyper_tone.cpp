// SPDX-License-Identifier: MIT
#include "tone/hyper_tone/hyper_tone.h"

#include <algorithm>

#include "core/rows.h"
#include "tone/hyper_tone/details.h"
#include "tone/hyper_tone/kernels.h"

namespace ovra {
namespace {

// From the detail of each pixel to its gain and to the result. `detail` has been prepared.
template <class Detail>
void MakeResult(Detail* detail, const TonePicture& picture, uint8_t* destination,
                const HyperToneContext& context) {
  const ToneGains gains = {
      context.gains, context.keep,
      picture.source != destination && WritesRoundCache(picture.stride, picture.size.height),
      std::min(Detail::kRowsAhead, picture.size.height) * picture.stride};
  for (std::ptrdiff_t y = 0; y < picture.size.height; ++y) {
    detail->MakeRow(y, gains, RowAt<uint16_t>(destination, picture.stride, y));
  }
}

template <class Detail>
Status Run(const TonePicture& picture, uint8_t* destination, const HyperToneContext& context,
           KernelTier tier) {
  Detail detail(picture, context, tier);
  if (!detail.Prepare()) return OVRA_ERROR_NO_MEMORY;
  MakeResult(&detail, picture, destination, context);
  return OVRA_OK;
}

Status RunForm(const TonePicture& picture, uint8_t* destination, const HyperToneContext& context,
               KernelTier tier) {
  switch (context.form) {
    case ToneForm::kHyperTone:
      return Run<HyperToneDetail>(picture, destination, context, tier);
    case ToneForm::kHyperToneLight:
      return Run<HyperToneLightDetail>(picture, destination, context, tier);
    case ToneForm::kHybridHyperTone:
      return Run<HybridHyperToneDetail>(picture, destination, context, tier);
    default:
      return Run<HybridHyperToneLightDetail>(picture, destination, context, tier);
  }
}

}  // namespace

Status InitHyperTone(ToneForm form, uint32_t depth_bits, PixelFormatCode code,
                     const OvraHyperToneParams* params, const uint16_t* curve, void** context) {
  if (context == nullptr) return OVRA_ERROR_TONE_NULL;
  *context = nullptr;
  if (params == nullptr) return OVRA_ERROR_TONE_NULL;
  PixelFormat format;
  Status status = CheckToneFormat(code, depth_bits, &format);
  if (status != OVRA_OK) return status;
  ContextPtr<HyperToneContext> made;
  status =
      MakeHyperToneContext(form, code, static_cast<int32_t>(depth_bits), *params, curve, &made);
  *context = made.release();
  return status;
}

Status RunHyperTone(ToneForm form, const uint8_t* source, uint8_t* destination, uint32_t width,
                    uint32_t height, PixelFormatCode code, const void* context, KernelTier tier) {
  if (source == nullptr || destination == nullptr || context == nullptr) {
    return OVRA_ERROR_TONE_NULL;
  }
  if (width == 0 || height == 0) return OVRA_ERROR_TONE_ZERO_SIZE;
  PixelFormat format;
  const Status status = CheckToneFormat(code, 0, &format);
  if (status != OVRA_OK) return status;
  const auto& made = *static_cast<const HyperToneContext*>(context);
  if (code != made.code || form != made.form) return OVRA_ERROR_TONE_CONTEXT;
  if (!IsCountable(width, height, format)) return OVRA_ERROR_NO_MEMORY;
  const bool is_rgb = format.color_model == OVRA_MODEL_RGB;
  const auto first = static_cast<int16_t>(is_rgb ? 19 : 7);
  const auto third = static_cast<int16_t>(is_rgb ? 7 : 19);
  const TonePicture picture = {
      source,
      RowStride(width, format),
      {static_cast<std::ptrdiff_t>(width), static_cast<std::ptrdiff_t>(height)},
      {made.depth_bits, {first, 38, third}},
      &ForTier(tier, kHyperTonePlain, kHyperToneSse, kHyperToneAvx2)};
  return RunForm(picture, destination, made, tier);
}

}  // namespace ovra

OVRA_API OvraStatus OVRA_CALL OvraHyperTone_Init(OvraPixelFormatCode format,
                                                 const OvraHyperToneParams* params,
                                                 const uint16_t* curve, void** context) {
  return ovra::InitHyperTone(ovra::ToneForm::kHyperTone, 10, format, params, curve, context);
}

OVRA_API OvraStatus OVRA_CALL OvraHyperTone_Init_12(OvraPixelFormatCode format,
                                                    const OvraHyperToneParams* params,
                                                    const uint16_t* curve, void** context) {
  return ovra::InitHyperTone(ovra::ToneForm::kHyperTone, 12, format, params, curve, context);
}

OVRA_API OvraStatus OVRA_CALL OvraHyperTone(const uint8_t* source, uint8_t* destination,
                                            uint32_t width, uint32_t height,
                                            OvraPixelFormatCode format, const void* context) {
  return ovra::RunHyperTone(ovra::ToneForm::kHyperTone, source, destination, width, height, format,
                            context, ovra::DetectedTier());
}

OVRA_API OvraStatus OVRA_CALL OvraHyperTone_Free(void** context) {
  return ovra::FreeAnyContext(context);
}

OVRA_API OvraStatus OVRA_CALL OvraHyperToneLight_Init(OvraPixelFormatCode format,
                                                      const OvraHyperToneParams* params,
                                                      const uint16_t* curve, void** context) {
  return ovra::InitHyperTone(ovra::ToneForm::kHyperToneLight, 10, format, params, curve, context);
}

OVRA_API OvraStatus OVRA_CALL OvraHyperToneLight_Init_12(OvraPixelFormatCode format,
                                                         const OvraHyperToneParams* params,
                                                         const uint16_t* curve, void** context) {
  return ovra::InitHyperTone(ovra::ToneForm::kHyperToneLight, 12, format, params, curve, context);
}

OVRA_API OvraStatus OVRA_CALL OvraHyperToneLight(const uint8_t* source, uint8_t* destination,
                                                 uint32_t width, uint32_t height,
                                                 OvraPixelFormatCode format, const void* context) {
  return ovra::RunHyperTone(ovra::ToneForm::kHyperToneLight, source, destination, width, height,
                            format, context, ovra::DetectedTier());
}

OVRA_API OvraStatus OVRA_CALL OvraHyperToneLight_Free(void** context) {
  return ovra::FreeAnyContext(context);
}

OVRA_API OvraStatus OVRA_CALL OvraHybridHyperTone_Init(OvraPixelFormatCode format,
                                                       const OvraHyperToneParams* params,
                                                       const uint16_t* curve, void** context) {
  return ovra::InitHyperTone(ovra::ToneForm::kHybridHyperTone, 10, format, params, curve, context);
}

OVRA_API OvraStatus OVRA_CALL OvraHybridHyperTone_Init_12(OvraPixelFormatCode format,
                                                          const OvraHyperToneParams* params,
                                                          const uint16_t* curve, void** context) {
  return ovra::InitHyperTone(ovra::ToneForm::kHybridHyperTone, 12, format, params, curve, context);
}

OVRA_API OvraStatus OVRA_CALL OvraHybridHyperTone(const uint8_t* source, uint8_t* destination,
                                                  uint32_t width, uint32_t height,
                                                  OvraPixelFormatCode format, const void* context) {
  return ovra::RunHyperTone(ovra::ToneForm::kHybridHyperTone, source, destination, width, height,
                            format, context, ovra::DetectedTier());
}

OVRA_API OvraStatus OVRA_CALL OvraHybridHyperTone_Free(void** context) {
  return ovra::FreeAnyContext(context);
}

OVRA_API OvraStatus OVRA_CALL OvraHybridHyperToneLight_Init(OvraPixelFormatCode format,
                                                            const OvraHyperToneParams* params,
                                                            const uint16_t* curve, void** context) {
  return ovra::InitHyperTone(ovra::ToneForm::kHybridHyperToneLight, 10, format, params, curve,
                             context);
}

OVRA_API OvraStatus OVRA_CALL OvraHybridHyperToneLight_Init_12(OvraPixelFormatCode format,
                                                               const OvraHyperToneParams* params,
                                                               const uint16_t* curve,
                                                               void** context) {
  return ovra::InitHyperTone(ovra::ToneForm::kHybridHyperToneLight, 12, format, params, curve,
                             context);
}

OVRA_API OvraStatus OVRA_CALL OvraHybridHyperToneLight(const uint8_t* source, uint8_t* destination,
                                                       uint32_t width, uint32_t height,
                                                       OvraPixelFormatCode format,
                                                       const void* context) {
  return ovra::RunHyperTone(ovra::ToneForm::kHybridHyperToneLight, source, destination, width,
                            height, format, context, ovra::DetectedTier());
}

OVRA_API OvraStatus OVRA_CALL OvraHybridHyperToneLight_Free(void** context) {
  return ovra::FreeAnyContext(context);
}
