// SPDX-License-Identifier: MIT
#include "commands.h"
#include "ovra/geometry.h"

namespace ovra_host {
namespace {

struct CanvasOptions {
  std::string input;
  std::string output;
  Size size;
  Position offset;
  bool has_offset = false;
  std::vector<uint16_t> fill = {0};
};

// One value a channel: as many as were given, or one for all.
std::vector<uint16_t> FillFor(const Image& image, const std::vector<uint16_t>& given) {
  if (given.size() == image.channels()) return given;
  if (given.size() == 1) return std::vector<uint16_t>(image.channels(), given[0]);
  throw Error("--fill: " + std::to_string(given.size()) + " values for a picture of " +
              std::to_string(image.channels()) + " channels");
}

void Canvas(const CanvasOptions& options, const CommonOptions& common) {
  const Image source = ReadImage(options.input);
  const std::vector<uint16_t> fill = FillFor(source, options.fill);
  Image result(options.size.width, options.size.height, source.format());
  const Position centered = {(result.width() - source.width()) / 2,
                             (result.height() - source.height()) / 2};
  const Position offset = options.has_offset ? options.offset : centered;
  CallLibrary(common, "OvraExtrapolateImage", [&] {
    return OvraExtrapolateImage(source.data(), static_cast<uint32_t>(source.width()),
                                static_cast<uint32_t>(source.height()), result.data(),
                                static_cast<uint32_t>(result.width()),
                                static_cast<uint32_t>(result.height()), result.format(), offset.x,
                                offset.y, fill.data());
  });
  WriteImage(result, options.output, common.write);
}

}  // namespace

void AddCanvasCommand(CLI::App& app, const CommonOptions& common) {
  CLI::App* const command =
      app.add_subcommand("canvas", "Place on a larger canvas of one color, unchanged");
  const auto options = std::make_shared<CanvasOptions>();
  AddInput(*command, "input", options->input);
  AddOutput(*command, "output", options->output);
  AddSize(*command, "--size", options->size, "size of the canvas")->required();
  CLI::Option* const offset =
      AddPosition(*command, "--offset", options->offset,
                  "where the picture's top left corner lies; without it, in the middle");
  command
      ->add_option("--fill", options->fill,
                   "color around it: one value a channel or one for all, 0..255, of 16-bit "
                   "pictures 0..65535")
      ->delimiter(',')
      ->type_name("N,N,N")
      ->capture_default_str();
  command->footer(
      "Example:\n  ovra canvas --size 1200x800 --fill 250,245,235 photo.jpg framed.png");
  command->callback([options, offset, &common] {
    options->has_offset = offset->count() > 0;
    Canvas(*options, common);
  });
}

}  // namespace ovra_host
