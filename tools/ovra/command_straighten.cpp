// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <cstdio>

#include "alpha.h"
#include "commands.h"
#include "ovra/geometry.h"
#include "picture_files.h"

namespace ovra_host {
namespace {

constexpr int32_t kInside = 0;
constexpr int32_t kSame = 1;
const Choices kCrops = {{"inside", kInside}, {"same", kSame}};

constexpr double kTenths = 10;  // the library turns by whole tenths of a degree

struct StraightenOptions {
  double angle = 0;
  int32_t crop = kInside;
  std::string fill;
};

// The largest rectangle of the picture's proportions about its middle whose
// corner pixels lie inside the picture when it is turned. Sides differ from the
// picture's by even numbers, so that the middle stays the middle.
Size LargestInside(Size picture, double degrees) {
  constexpr double kRadiansPerDegree = 3.14159265358979323846 / 180;
  const double cosine = std::abs(std::cos(degrees * kRadiansPerDegree));
  const double sine = std::abs(std::sin(degrees * kRadiansPerDegree));
  const double last_column = picture.width - 1;
  const double last_row = picture.height - 1;
  const auto fits = [&](int32_t width, int32_t height) {
    constexpr double kSlack = 1e-6;
    return (width - 1) * cosine + (height - 1) * sine <= last_column + kSlack &&
           (width - 1) * sine + (height - 1) * cosine <= last_row + kSlack;
  };
  const auto height_for = [&](int32_t width) {
    const double height = static_cast<double>(picture.height) * width / picture.width;
    const auto cut = static_cast<int32_t>(std::lround((picture.height - height) / 2));
    return picture.height - 2 * cut;
  };
  int32_t width = picture.width;
  while (width > 2 && !fits(width, height_for(width))) width -= 2;
  return {width, height_for(width)};
}

// The part of the turned picture, whose pixels may be averaged as they are. Without a fill, edges
// are repeated.
Image Turned(const Image& source, const Rectangle& part, double angle,
             const std::vector<uint16_t>& fill, const CommonOptions& common) {
  Image result(part.size.width, part.size.height, source.format());
  CallLibrary(common, "OvraFreeTrimming", [&] {
    return OvraFreeTrimming(source.data(), source.width(), source.height(), result.data(),
                            result.width(), result.height(), source.format(), part.position.x,
                            part.position.y, static_cast<int32_t>(std::lround(angle * kTenths)),
                            fill.empty() ? nullptr : fill.data());
  });
  return result;
}

// A fill color as one pixel of a picture whose colors are multiplied by alpha.
std::vector<uint16_t> MultipliedFill(const std::vector<uint16_t>& fill, uint32_t depth_bits) {
  if (fill.empty()) return {};
  Image pixel(1, 1, FileFormat(depth_bits, 4));
  for (size_t c = 0; c < fill.size(); ++c) {
    if (depth_bits == 8) {
      pixel.data()[c] = static_cast<uint8_t>(fill[c]);
    } else {
      pixel.Row16(0)[c] = fill[c];
    }
  }
  const Image multiplied = Multiplied(pixel);
  return std::vector<uint16_t>(multiplied.Row16(0), multiplied.Row16(0) + fill.size());
}

Image Straighten(const Image& source, const StraightenOptions& options,
                 const CommonOptions& common) {
  const Size picture = {source.width(), source.height()};
  const Size size = options.crop == kSame ? picture : LargestInside(picture, options.angle);
  const Rectangle part = {{(picture.width - size.width) / 2, (picture.height - size.height) / 2},
                          size};
  const std::vector<uint16_t> fill =
      options.fill.empty() ? std::vector<uint16_t>() : ParseFill(options.fill, source);
  if (options.crop == kInside) {
    std::printf("crop %d,%d,%d,%d: %d x %d of %d x %d pixels\n", part.position.x, part.position.y,
                size.width, size.height, size.width, size.height, picture.width, picture.height);
  }
  const bool clear_fill = fill.size() == 4 && fill[3] < source.max_sample();
  if (IsOpaque(source) && !clear_fill) return Turned(source, part, options.angle, fill, common);
  const uint32_t depth = source.depth_bits();
  return Divided(
      Turned(Multiplied(source), part, options.angle, MultipliedFill(fill, depth), common), depth);
}

CLI::Option* AddAngle(CLI::App& command, double& angle) {
  const auto check = [](const std::string& text) -> std::string {
    char* end = nullptr;
    const double value = std::strtod(text.c_str(), &end);
    const double tenths = value * kTenths;
    constexpr double kSlack = 1e-6;
    const bool whole = std::abs(tenths - std::round(tenths)) < kSlack;
    if (end == text.c_str() || *end != 0 || !(std::abs(value) <= 360) || !whole) {
      return "--angle: \"" + text + "\" is not a number of degrees in whole tenths, as 2.3";
    }
    return "";
  };
  return command
      .add_option("--angle", angle, "degrees to turn by, counter-clockwise, in tenths of one")
      ->required()
      ->check(CLI::Validator(check, ""))
      ->type_name("DEGREES");
}

}  // namespace

void AddStraightenCommand(CLI::App& app, const CommonOptions& common) {
  CLI::App* const command =
      app.add_subcommand("straighten", "Turn by a few degrees and cut upright again");
  const auto options = std::make_shared<StraightenOptions>();
  AddAngle(*command, options->angle);
  AddChoice(*command, "--crop", options->crop, kCrops,
            "inside (the default): the largest part of the same proportions "
            "that shows no border; "
            "same: as large as the picture");
  AddFill(*command, options->fill)
      ->description(
          "color of what lies beyond the picture; without it its "
          "edge pixels go on");
  command->footer(
      "A horizon whose right end hangs 2.3 degrees too low is straightened by "
      "--angle 2.3. The part\n"
      "that is cut out is printed as X,Y,W,H.\n\n"
      "Example:\n  ovra straighten --angle 2.3 tilted.jpg level.jpg");
  AddPictureFiles(*command, common, OnPixels([options, &common](const Image& image) {
    return Straighten(image, *options, common);
  }));
}

}  // namespace ovra_host
