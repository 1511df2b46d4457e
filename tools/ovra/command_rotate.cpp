// SPDX-License-Identifier: MIT
#include "commands.h"
#include "ovra/geometry.h"

namespace ovra_host {
namespace {

struct RotateOptions {
  std::string input;
  std::string output;
  int32_t mode = OVRA_ROTATE_NONE;
};

const Choices kModes = {
    {"none", OVRA_ROTATE_NONE},     {"left", OVRA_ROTATE_QUARTER_LEFT},
    {"half", OVRA_ROTATE_HALF},     {"right", OVRA_ROTATE_QUARTER_RIGHT},
    {"mirror", OVRA_ROTATE_MIRROR}, {"anti-transpose", OVRA_ROTATE_ANTI_TRANSPOSE},
    {"flip", OVRA_ROTATE_FLIP},     {"transpose", OVRA_ROTATE_TRANSPOSE},
};

// The odd modes exchange width and height.
bool ExchangesSides(int32_t mode) {
  return mode % 2 != 0;
}

void Rotate(const RotateOptions& options, const CommonOptions& common) {
  const Image source = ReadImage(options.input);
  const bool exchanged = ExchangesSides(options.mode);
  Image result(exchanged ? source.height() : source.width(),
               exchanged ? source.width() : source.height(), source.format());
  CallLibrary(common, "OvraRotateImage", [&] {
    return OvraRotateImage(source.data(), result.data(), source.width(), source.height(),
                           source.format(), options.mode);
  });
  WriteImage(result, options.output, common.write);
}

}  // namespace

void AddRotateCommand(CLI::App& app, const CommonOptions& common) {
  CLI::App* const command = app.add_subcommand("rotate", "Turn by quarter turns, or mirror");
  const auto options = std::make_shared<RotateOptions>();
  AddInput(*command, "input", options->input);
  AddOutput(*command, "output", options->output);
  AddChoice(*command, "--mode", options->mode, kModes, "what to do, by name or by number 0..7")
      ->required();
  command->footer(
      "left and right are quarter turns; flip exchanges top and bottom; transpose reflects in the\n"
      "diagonal from top left to bottom right, anti-transpose in the other one.\n\n"
      "Example:\n  ovra rotate --mode left photo.jpg turned.png");
  command->callback([options, &common] { Rotate(*options, common); });
}

}  // namespace ovra_host
