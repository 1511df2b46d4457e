// SPDX-License-Identifier: MIT
#include "color/conversion.h"

namespace ovra {
namespace {

Status CheckFormat(const PixelFormat& format, const FormatRules& rules) {
  if (format.channels < rules.min_channels || format.channels > rules.max_channels) {
    return rules.channels_refused;
  }
  if (format.depth_bits > rules.max_depth_bits) return rules.depth_refused;
  if (!rules.accepts_model(format)) return rules.model_refused;
  if (format.arrangement != 0) return rules.arrangement_refused;
  return OVRA_OK;
}

}  // namespace

bool IsRgbBgrOrYcc(const PixelFormat& format) {
  return format.color_model == OVRA_MODEL_RGB || format.color_model == OVRA_MODEL_BGR ||
         format.color_model == OVRA_MODEL_YCC;
}

bool IsFourChannelCmyk(const PixelFormat& format) {
  return format.color_model == OVRA_MODEL_CMYK && format.channels == 4;
}

Status AcceptFormats(const FormatPair& codes, const FormatRules& input_rules,
                     const FormatRules& output_rules, DecodedFormatPair* formats) {
  Status status = DecodePixelFormat(codes.input, &formats->input);
  if (status == OVRA_OK) status = DecodePixelFormat(codes.output, &formats->output);
  if (status == OVRA_OK) status = CheckFormat(formats->input, input_rules);
  if (status == OVRA_OK) status = CheckFormat(formats->output, output_rules);
  return status;
}

}  // namespace ovra
