// SPDX-License-Identifier: MIT
#include "commands.h"
#include "ovra/filter.h"
#include "picture_files.h"
#include "picture_forms.h"

namespace ovra_host {
namespace {

Image Smooth(const Image& source, const CommonOptions& common) {
  Image result(source.width(), source.height(), source.format());
  CallLibrary(common, "OvraEFilterImage", [&] {
    return OvraEFilterImage(source.data(), result.data(), static_cast<uint32_t>(source.width()),
                            static_cast<uint32_t>(source.height()), source.format());
  });
  return result;
}

}  // namespace

void AddSmoothCommand(CLI::App& app, const CommonOptions& common) {
  CLI::App* const command = app.add_subcommand("smooth", "Smooth noise and keep edges");
  command->footer(
      "How strongly it smooths is chosen by how much fine color detail the picture holds. Changes\n"
      "are found at 8 bits a sample; deeper samples keep their lower bits.\n\n"
      "Example:\n  ovra smooth noisy.jpg smooth.png");
  AddPictureFiles(*command, common, OnPixels([&common](const Image& image) {
    return OnThreeChannels(image, GreyBecomes::kGrey, [&](const Image& color) {
      return OnEightBits(color, [&](const Image& source) { return Smooth(source, common); });
    });
  }));
}

}  // namespace ovra_host
