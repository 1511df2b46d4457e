// SPDX-License-Identifier: MIT
#include "commands.h"
#include "ovra/filter.h"
#include "picture_files.h"
#include "picture_forms.h"

namespace ovra_host {
namespace {

struct SoftFocusOptions {
  int32_t radius = 60;
  double decay = 0.1;
  double mix = 0.5;
};

Image SoftFocus(const Image& source, const SoftFocusOptions& options, const CommonOptions& common) {
  Image result(source.width(), source.height(), source.format());
  OvraSoftFocusParams params = {};
  params.radius = options.radius;
  params.decay_exponent = 1;
  params.decay_base = options.decay;
  params.mix = options.mix;
  CallLibrary(common, "OvraSoftFocus", [&] {
    return OvraSoftFocus(source.data(), result.data(), static_cast<uint32_t>(source.width()),
                         static_cast<uint32_t>(source.height()), &params);
  });
  return result;
}

}  // namespace

void AddSoftFocusCommand(CLI::App& app, const CommonOptions& common) {
  // Rounding of the gain changes all levels of very long blurs, up to black. These keep off the worst;
  // both at once still darken.
  constexpr int32_t kMaxRadius = 2'000;
  constexpr double kMaxDecay = 0.9;
  CLI::App* const command = app.add_subcommand("softfocus", "Mix in a blurred copy, for a glow");
  const auto options = std::make_shared<SoftFocusOptions>();
  command
      ->add_option("--radius", options->radius,
                   "Length of the blur in pixels for a shorter side of 2503; scaled for others")
      ->check(CLI::Range(1, kMaxRadius))
      ->type_name("PIXELS")
      ->capture_default_str();
  command->add_option("--decay", options->decay, "What is left of a point's light at the radius")
      ->check(CLI::Range(1e-9, kMaxDecay))
      ->type_name("0..0.9")
      ->capture_default_str();
  command->add_option("--mix", options->mix, "Share of the blurred copy in the result")
      ->check(CLI::Range(0.0, 1.0))
      ->type_name("0..1")
      ->capture_default_str();
  command->footer(
      "Example:\n  ovra softfocus portrait.jpg soft.jpg\n"
      "  ovra softfocus --radius 150 --mix 0.7 portrait.jpg dream.jpg");
  AddPictureFiles(*command, common, OnPixels([options, &common](const Image& image) {
    return OnThreeChannels(image, GreyBecomes::kGrey, [&](const Image& color) {
      return OnEightBits(color,
                         [&](const Image& source) { return SoftFocus(source, *options, common); });
    });
  }));
}

}  // namespace ovra_host
