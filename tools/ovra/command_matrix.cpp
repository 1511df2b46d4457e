// SPDX-License-Identifier: MIT
#include "color_command.h"
#include "color_terms.h"
#include "commands.h"
#include "ovra/color.h"
#include "picture_files.h"
#include "picture_forms.h"

namespace ovra_host {
namespace {

struct MatrixOptions {
  std::string file;
  bool sepia = false;
  double saturation = 1;
  std::vector<double> gains;
};

ColorTerms TermsFor(const MatrixOptions& options) {
  if (!options.file.empty()) return ReadColorTerms(options.file);
  if (options.sepia) return SepiaTerms();
  if (options.gains.empty()) return SaturationTerms(options.saturation);
  if (options.gains.size() != 3) throw Error("--gains needs three numbers");
  return GainTerms({options.gains[0], options.gains[1], options.gains[2]});
}

Image Matrix(const Image& source, const MatrixOptions& options, const CommonOptions& common) {
  const OvraColorMatrix matrix = MakeColorMatrix(TermsFor(options), source.max_sample());
  Image result(source.width(), source.height(), source.format());
  CallLibrary(common, "OvraConvColorMtxSingleStep", [&] {
    return OvraConvColorMtxSingleStep(source.data(), result.data(), source.width(), source.height(),
                                      source.format(), result.format(), &matrix);
  });
  return result;
}

}  // namespace

void AddMatrixCommand(CLI::App& app, const CommonOptions& common) {
  CLI::App* const command = app.add_subcommand("matrix", "Mix the channels by a color matrix");
  const auto options = std::make_shared<MatrixOptions>();
  CLI::Option_group* const what = command->add_option_group("what to do");
  what->add_option("--file", options->file, "text file with three rows of 3 or 10 weights")
      ->type_name("FILE");
  what->add_flag("--sepia", options->sepia, "brown, as old photographs are");
  what->add_option("--saturation", options->saturation, "0 is grey, 1 leaves all, more adds")
      ->check(CLI::Range(0.0, 10.0))
      ->type_name("S");
  what->add_option("--gains", options->gains, "white balance: a factor for each channel")
      ->delimiter(',')
      ->allow_extra_args(false)
      ->check(CLI::Range(0.0, 100.0))
      ->type_name("R,G,B");
  what->require_option(1);
  command->footer(
      "Samples count as 0..1. The rows of a file make red, green and blue, by weights of\n"
      "  r g b 1 r*r g*g b*b r*g g*b b*r\n"
      "or of the first three of them. A # begins a remark.\n\n"
      "Example:\n  ovra matrix --saturation 1.3 photo.jpg vivid.png");
  AddPictureFiles(*command, common, OnPixels([options, &common](const Image& image) {
    return OnThreeChannels(image, GreyBecomes::kColor,
                           [&](const Image& source) { return Matrix(source, *options, common); });
  }));
}

}  // namespace ovra_host
