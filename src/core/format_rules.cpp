// SPDX-License-Identifier: MIT
#include "core/format_rules.h"

namespace ovra {

Status CheckFormat(const PixelFormat& format, const FormatRules& rules) {
  if (!rules.channels.Contains(format.channels)) return rules.channels_refused;
  if (!rules.depths_bits.Contains(format.depth_bits)) return rules.depth_refused;
  if (!rules.accepts_model(format)) return rules.model_refused;
  if (format.arrangement != 0) return rules.arrangement_refused;
  return OVRA_OK;
}

Status DecodeAndCheckFormat(PixelFormatCode code, const FormatRules& rules, PixelFormat* format) {
  const Status status = DecodePixelFormat(code, format);
  return status == OVRA_OK ? CheckFormat(*format, rules) : status;
}

bool ModelFitsChannels(const PixelFormat& format) {
  return ColorModelFitsChannels(format.color_model, format.channels);
}

bool IsRgbBgrOrYcc(const PixelFormat& format) {
  return format.color_model == OVRA_MODEL_RGB || format.color_model == OVRA_MODEL_BGR ||
         format.color_model == OVRA_MODEL_YCC;
}

}  // namespace ovra
