// SPDX-License-Identifier: MIT
#include "commands.h"
#include "ovra/geometry.h"
#include "picture_files.h"

namespace ovra_host {
namespace {

struct CanvasOptions {
  Size size;
  Position offset;
  bool has_offset = false;
  std::string fill = "0";
};

Image Canvas(const Image& source, const CanvasOptions& options, const CommonOptions& common) {
  const std::vector<uint16_t> fill = ParseFill(options.fill, source);
  Image result(options.size.width, options.size.height, source.format());
  const Position centered = {(result.width() - source.width()) / 2,
                             (result.height() - source.height()) / 2};
  const Position offset = options.has_offset ? options.offset : centered;
  if (offset.x < 0 || offset.y < 0 || source.width() > result.width() - offset.x ||
      source.height() > result.height() - offset.y) {
    throw Error("does not fit onto --size " + std::to_string(result.width()) + "x" +
                std::to_string(result.height()) + " at --offset " + std::to_string(offset.x) + "," +
                std::to_string(offset.y));
  }
  CallLibrary(common, "OvraExtrapolateImage", [&] {
    return OvraExtrapolateImage(source.data(), static_cast<uint32_t>(source.width()),
                                static_cast<uint32_t>(source.height()), result.data(),
                                static_cast<uint32_t>(result.width()),
                                static_cast<uint32_t>(result.height()), result.format(), offset.x,
                                offset.y, fill.data());
  });
  return result;
}

}  // namespace

void AddCanvasCommand(CLI::App& app, const CommonOptions& common) {
  CLI::App* const command =
      app.add_subcommand("canvas", "Place on a larger canvas of one color, unchanged");
  const auto options = std::make_shared<CanvasOptions>();
  AddSize(*command, "--size", options->size, "size of the canvas")->required();
  CLI::Option* const offset =
      AddPosition(*command, "--offset", options->offset,
                  "where the picture's top left corner lies; without it, in the middle");
  AddFill(*command, options->fill);
  command->footer(
      "Example:\n  ovra canvas --size 1200x800 --fill 250,245,235 photo.jpg framed.png");
  AddPictureFiles(*command, common, OnPixels([options, offset, &common](const Image& image) {
    CanvasOptions given = *options;
    given.has_offset = offset->count() > 0;
    return Canvas(image, given, common);
  }));
}

}  // namespace ovra_host
