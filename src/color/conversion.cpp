// SPDX-License-Identifier: MIT
#include "color/conversion.h"

namespace ovra {

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
