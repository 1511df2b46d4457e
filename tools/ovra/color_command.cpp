// SPDX-License-Identifier: MIT
#include "color_command.h"

#include "ovra/color.h"

namespace ovra_host {
namespace {

template <class Sample>
void RepeatSamples(const Image& grey, Image* color) {
  for (int32_t y = 0; y < grey.height(); ++y) {
    const auto* in = reinterpret_cast<const Sample*>(grey.Row(y));
    auto* out = reinterpret_cast<Sample*>(color->Row(y));
    for (int32_t x = 0; x < grey.width(); ++x) {
      for (int k = 0; k < 3; ++k) *out++ = in[x];
    }
  }
}

}  // namespace

Image ReadColor(const std::string& path) {
  Image image = ReadImage(path);
  if (image.channels() == 3) return image;
  if (image.channels() != 1) throw Error(path + ": has an alpha channel");
  Image color(image.width(), image.height(), FileFormat(image.depth_bits(), 3));
  if (image.bytes_per_sample() == 2) {
    RepeatSamples<uint16_t>(image, &color);
  } else {
    RepeatSamples<uint8_t>(image, &color);
  }
  return color;
}

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
