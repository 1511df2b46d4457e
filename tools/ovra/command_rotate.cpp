// SPDX-License-Identifier: MIT
#include "commands.h"
#include "ovra/geometry.h"
#include "picture_files.h"

namespace ovra_host {
namespace {

struct RotateOptions {
  int32_t mode = OVRA_ROTATE_NONE;
};

Image Rotate(const Image& source, const RotateOptions& options, const CommonOptions& common) {
  const bool exchanged = options.mode % 2 != 0;  // the odd modes exchange width and height
  Image result(exchanged ? source.height() : source.width(),
               exchanged ? source.width() : source.height(), source.format());
  CallLibrary(common, "OvraRotateImage", [&] {
    return OvraRotateImage(source.data(), result.data(), source.width(), source.height(),
                           source.format(), options.mode);
  });
  return result;
}

}  // namespace

void AddRotateCommand(CLI::App& app, const CommonOptions& common) {
  CLI::App* const command = app.add_subcommand("rotate", "Turn by quarter turns, or mirror");
  const auto options = std::make_shared<RotateOptions>();
  AddChoice(*command, "--mode", options->mode, TurnChoices(),
            "what to do, by name or by number 0..7")
      ->required();
  command->footer(
      "left and right are quarter turns; flip exchanges top and bottom; transpose reflects in the\n"
      "diagonal from top left to bottom right, anti-transpose in the other one.\n\n"
      "Example:\n  ovra rotate --mode left photo.jpg turned.png");
  AddPictureFiles(*command, common, OnPixels([options, &common](const Image& image) {
    return Rotate(image, *options, common);
  }));
}

}  // namespace ovra_host
