// SPDX-License-Identifier: MIT
#include "color/conversion.h"

namespace ovra {

bool IsFourChannelCmyk(const PixelFormat& format) {
  return format.color_model == OVRA_MODEL_CMYK && format.channels == 4;
}

Status CheckFormats(const DecodedFormatPair& formats, const FormatRules& input_rules,
                    const FormatRules& output_rules) {
  const Status status = CheckFormat(formats.input, input_rules);
  return status == OVRA_OK ? CheckFormat(formats.output, output_rules) : status;
}

Status DecodeAndCheckFormats(const FormatPair& codes, const FormatRules& input_rules,
                             const FormatRules& output_rules, DecodedFormatPair* formats) {
  Status status = DecodePixelFormat(codes.input, &formats->input);
  if (status == OVRA_OK) status = DecodePixelFormat(codes.output, &formats->output);
  return status == OVRA_OK ? CheckFormats(*formats, input_rules, output_rules) : status;
}

}  // namespace ovra
