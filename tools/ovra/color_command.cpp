// SPDX-License-Identifier: MIT
#include "color_command.h"

#include "ovra/color.h"

namespace ovra_host {

Image ApplyTables(const Image& source, const ChannelTables& tables, OvraPixelFormatCode format,
                  const CommonOptions& common) {
  Image result(source.width(), source.height(), format);
  const OvraChannelTableSet record = tables.Record();
  CallLibrary(common, "OvraConvColor1DTblSingleStep", [&] {
    return OvraConvColor1DTblSingleStep(source.data(), result.data(), source.width(),
                                        source.height(), source.format(), format, &record);
  });
  return result;
}

}  // namespace ovra_host
