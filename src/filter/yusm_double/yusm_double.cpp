// SPDX-License-Identifier: MIT
#include "filter/yusm_double/yusm_double.h"

#include <algorithm>
#include <type_traits>

namespace ovra {
namespace {

// 8-bit samples in packed rows, top row first, of these two colour models alone.
Status CheckFormat(PixelFormatCode code, uint32_t* color_model) {
  for (const OvraColorModel model : {OVRA_MODEL_RGB, OVRA_MODEL_YCC}) {
    *color_model = model;
    if (code == OvraMakePixelFormat(8, 3, model, 1, OVRA_ROWS_TOP_DOWN)) return OVRA_OK;
  }
  return OVRA_ERROR_YUSM_DOUBLE_FORMAT;
}

Status CheckSize(uint32_t width, uint32_t height, const YUsmDoubleParameters& parameters) {
  const uint32_t longest = std::max(parameters.coarse.tap_count, parameters.fine.tap_count);
  return width < longest || height < longest ? OVRA_ERROR_YUSM_DOUBLE_ARGUMENT : OVRA_OK;
}

bool IsComplete(const YUsmBand& band) {
  return (band.weights != nullptr || band.tap_count == 0) && band.level_table != nullptr &&
         band.difference_table != nullptr;
}

bool IsComplete(const YUsmDoubleParameters& parameters) {
  return IsComplete(parameters.coarse) && IsComplete(parameters.fine);
}

void CopyBand(const YUsmBand& band, uint32_t* tap_count, int32_t* weights, float* amount,
              int16_t* level_table, int16_t* difference_table) {
  *tap_count = band.tap_count;
  std::copy_n(band.weights, band.tap_count, weights);
  *amount = band.amount;
  std::copy_n(band.level_table, OVRA_LEVEL_TABLE_SIZE, level_table);
  std::copy_n(band.difference_table, OVRA_DIFFERENCE_TABLE_SIZE, difference_table);
}

}  // namespace

Status MakeYUsmDoubleContext(PixelFormatCode code, const YUsmDoubleParameters& parameters,
                             ContextPtr<YUsmDoubleContext>* context) {
  uint32_t color_model = 0;
  const Status status = CheckFormat(code, &color_model);
  if (status != OVRA_OK) return status;
  if (!IsComplete(parameters)) return OVRA_ERROR_YUSM_DOUBLE_ARGUMENT;
  *context = MakeContext<YUsmDoubleContext>();
  YUsmDoubleContext* const made = context->get();
  if (made == nullptr) return OVRA_ERROR_NO_MEMORY;
  CopyBand(parameters.coarse, &made->tap_count1, made->weights1, &made->amount1, made->level_table1,
           made->difference_table1);
  CopyBand(parameters.fine, &made->tap_count2, made->weights2, &made->amount2, made->level_table2,
           made->difference_table2);
  return OVRA_OK;
}

Status RunYUsmDouble(const uint8_t* source, uint8_t* destination, uint32_t width, uint32_t height,
                     PixelFormatCode code, const YUsmDoubleContext* context, KernelTier tier) {
  uint32_t color_model = 0;
  Status status = CheckFormat(code, &color_model);
  if (status != OVRA_OK) return status;
  if (source == nullptr || destination == nullptr || context == nullptr || width == 0 ||
      height == 0) {
    return OVRA_ERROR_YUSM_DOUBLE_ARGUMENT;
  }
  const YUsmDoubleParameters parameters = {
      {context->tap_count1, context->weights1, context->amount1, context->level_table1,
       context->difference_table1},
      {context->tap_count2, context->weights2, context->amount2, context->level_table2,
       context->difference_table2}};
  status = CheckSize(width, height, parameters);
  if (status != OVRA_OK) return status;
  return FilterYUsmDouble(source, destination, width, height, color_model, parameters, tier);
}

Status RunYUsmDoubleSingleStep(const uint8_t* source, uint8_t* destination, uint32_t width,
                               uint32_t height, PixelFormatCode code,
                               const YUsmDoubleParameters& parameters, KernelTier tier) {
  uint32_t color_model = 0;
  Status status = CheckSize(width, height, parameters);
  if (status == OVRA_OK) status = CheckFormat(code, &color_model);
  if (status != OVRA_OK) return status;
  if (source == nullptr || destination == nullptr || !IsComplete(parameters)) {
    return OVRA_ERROR_YUSM_DOUBLE_ARGUMENT;
  }
  if (width == 0 || height == 0) return OVRA_OK;
  return FilterYUsmDouble(source, destination, width, height, color_model, parameters, tier);
}

}  // namespace ovra

OVRA_API OvraStatus OVRA_CALL OvraYUsmDouble_Init(
    OvraPixelFormatCode format, uint32_t tap_count1, const int32_t* weights1, uint32_t tap_count2,
    const int32_t* weights2, float amount1, const int16_t* level_table1,
    const int16_t* difference_table1, float amount2, const int16_t* level_table2,
    const int16_t* difference_table2, OvraYUsmDoubleContext** context) {
  if (std::max(tap_count1, tap_count2) > OVRA_YUSM_DOUBLE_MAX_TAPS) {
    return OVRA_ERROR_YUSM_DOUBLE_TAPS;
  }
  ovra::ContextPtr<OvraYUsmDoubleContext> made;
  const ovra::Status status = ovra::MakeYUsmDoubleContext(
      format,
      {{tap_count1, weights1, amount1, level_table1, difference_table1},
       {tap_count2, weights2, amount2, level_table2, difference_table2}},
      &made);
  if (context == nullptr) return status == OVRA_OK ? OVRA_ERROR_YUSM_DOUBLE_ARGUMENT : status;
  *context = made.release();
  return status;
}

OVRA_API OvraStatus OVRA_CALL OvraYUsmDouble(const uint8_t* source, uint8_t* destination,
                                             uint32_t width, uint32_t height,
                                             OvraPixelFormatCode format,
                                             const OvraYUsmDoubleContext* context) {
  return ovra::RunYUsmDouble(source, destination, width, height, format, context,
                             ovra::DetectedTier());
}

OVRA_API OvraStatus OVRA_CALL OvraYUsmDoubleSingleStep(
    const uint8_t* source, uint8_t* destination, uint32_t width, uint32_t height,
    OvraPixelFormatCode format, uint32_t tap_count1, const int32_t* weights1, uint32_t tap_count2,
    const int32_t* weights2, float amount1, const int16_t* level_table1,
    const int16_t* difference_table1, float amount2, const int16_t* level_table2,
    const int16_t* difference_table2) {
  return ovra::RunYUsmDoubleSingleStep(
      source, destination, width, height, format,
      {{tap_count1, weights1, amount1, level_table1, difference_table1},
       {tap_count2, weights2, amount2, level_table2, difference_table2}},
      ovra::DetectedTier());
}

OVRA_API OvraStatus OVRA_CALL OvraYUsmDouble_Free(OvraYUsmDoubleContext** context) {
  static_assert(std::is_trivially_destructible_v<OvraYUsmDoubleContext>);
  return ovra::FreeAnyContext(context);
}
