// SPDX-License-Identifier: MIT
#include "commands.h"
#include "ovra/filter.h"

namespace ovra_host {
namespace {

struct SmoothOptions {
  std::string input;
  std::string output;
};

void Smooth(const SmoothOptions& options, const CommonOptions& common) {
  const Image source = ReadImage(options.input);
  if (source.channels() != 3 || source.depth_bits() != 8) {
    throw Error(options.input + ": smooth needs a picture of 8 bits a sample in color");
  }
  Image result(source.width(), source.height(), source.format());
  CallLibrary(common, "OvraEFilterImage", [&] {
    return OvraEFilterImage(source.data(), result.data(), static_cast<uint32_t>(source.width()),
                            static_cast<uint32_t>(source.height()), source.format());
  });
  WriteImage(result, options.output, common.write);
}

}  // namespace

void AddSmoothCommand(CLI::App& app, const CommonOptions& common) {
  CLI::App* const command = app.add_subcommand("smooth", "Smooth noise and keep edges");
  const auto options = std::make_shared<SmoothOptions>();
  AddInput(*command, "input", options->input, "picture of 8 bits a sample in color");
  AddOutput(*command, "output", options->output);
  command->footer(
      "How strongly it smooths is chosen by how much fine color detail the picture holds.\n\n"
      "Example:\n  ovra smooth noisy.jpg smooth.png");
  command->callback([options, &common] { Smooth(*options, common); });
}

}  // namespace ovra_host
