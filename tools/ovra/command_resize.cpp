// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>

#include "commands.h"
#include "ovra/resample.h"
#include "picture_files.h"

namespace ovra_host {
namespace {

// What was asked for; 0 where it was not.
struct ResizeOptions {
  int32_t width = 0;
  int32_t height = 0;
  double scale = 0;
  Size fit;
  Rectangle crop;
};

int64_t Scaled(int32_t side, double scale) {
  return std::max<int64_t>(1, std::llround(side * scale));
}

// The size of the result, for a region of this size. Without any request the region keeps its own.
Image MakeResult(const ResizeOptions& options, Size region, OvraPixelFormatCode format) {
  const double across = static_cast<double>(options.width) / region.width;
  const double down = static_cast<double>(options.height) / region.height;
  if (options.width != 0 && options.height != 0) {
    return Image(options.width, options.height, format);
  }
  if (options.width != 0) return Image(options.width, Scaled(region.height, across), format);
  if (options.height != 0) return Image(Scaled(region.width, down), options.height, format);
  double scale = options.scale != 0 ? options.scale : 1.0;
  if (options.fit.width != 0) {
    scale = std::min(static_cast<double>(options.fit.width) / region.width,
                     static_cast<double>(options.fit.height) / region.height);
  }
  return Image(Scaled(region.width, scale), Scaled(region.height, scale), format);
}

Image Resize(const Image& source, const ResizeOptions& options, const CommonOptions& common) {
  const bool whole = options.crop.size.width == 0;
  const Rectangle region =
      whole ? Rectangle{{0, 0}, {source.width(), source.height()}} : options.crop;
  Image result = MakeResult(options, region.size, source.format());
  if (whole) {
    CallLibrary(common, "OvraResizeImage", [&] {
      return OvraResizeImage(source.data(), source.width(), source.height(), result.data(),
                             result.width(), result.height(), source.format());
    });
  } else {
    CallLibrary(common, "OvraResizeImageROI", [&] {
      return OvraResizeImageROI(source.data(), source.width(), source.height(), result.data(),
                                result.width(), result.height(), source.format(), region.position.x,
                                region.position.y, region.size.width, region.size.height);
    });
  }
  return result;
}

void AddSizeOptions(CLI::App& command, ResizeOptions& options) {
  CLI::Option* const width =
      command.add_option("--width", options.width, "width in pixels")->check(CLI::PositiveNumber);
  CLI::Option* const height = command.add_option("--height", options.height, "height in pixels")
                                  ->check(CLI::PositiveNumber);
  CLI::Option* const scale = command.add_option("--scale", options.scale, "so many times as large")
                                 ->check(CLI::Range(0.0001, 1000.0));
  AddSize(command, "--fit", options.fit, "as large as fits into this")
      ->excludes(width, height, scale);
  scale->excludes(width, height);
}

}  // namespace

void AddResizeCommand(CLI::App& app, const CommonOptions& common) {
  CLI::App* const command = app.add_subcommand("resize", "Make smaller or larger, whole or a part");
  const auto options = std::make_shared<ResizeOptions>();
  AddSizeOptions(*command, *options);
  AddRectangle(*command, "--crop", options->crop, "the part of the picture to take");
  command->footer(
      "Proportions are kept: with both --width and --height the middle is taken and what does not\n"
      "fit is cut off at two sides; with one of them the other follows. With --crop alone the "
      "part\n"
      "keeps its size.\n\n"
      "Example:\n  ovra resize --fit 1600x1200 photo.jpg smaller.jpg");
  AddPictureFiles(*command, common, OnImages(common, [options, &common](const Image& image) {
    return Resize(image, *options, common);
  }));
}

}  // namespace ovra_host
