// SPDX-License-Identifier: MIT
#include <array>
#include <cmath>

#include "color_command.h"
#include "commands.h"
#include "picture_files.h"
#include "picture_forms.h"
#include "tone_curve.h"

namespace ovra_host {
namespace {

constexpr size_t kChannels = 3;

struct CurveOptions {
  std::vector<double> gamma;                    // one for all, or one a channel
  double contrast = 0;                          // for all channels, after the gamma
  std::string points;                           // for all channels
  std::array<std::string, kChannels> channels;  // for one channel, after `points`
  bool linear = false;
};

// The slope is 1 + contrast in the middle and 1 - contrast at both ends, which stay.
double WithContrast(double value, double contrast) {
  constexpr double kTurn = 2 * 3.14159265358979323846;
  return value - contrast * std::sin(kTurn * value) / kTurn;
}

// One channel's steps, in the order in which they are taken.
struct ChannelCurve {
  double gamma = 1;
  double contrast = 0;
  std::vector<ToneCurve> curves;

  double operator()(double value) const {
    value = WithContrast(std::pow(value, 1 / gamma), contrast);
    for (const ToneCurve& curve : curves) value = curve(value);
    return value;
  }
};

ChannelCurve CurveFor(const CurveOptions& options, size_t channel) {
  const auto between = options.linear ? ToneCurve::Between::kLinear : ToneCurve::Between::kCubic;
  ChannelCurve curve;
  curve.contrast = options.contrast;
  if (!options.gamma.empty()) {
    curve.gamma = options.gamma[options.gamma.size() == 1 ? 0 : channel];
  }
  for (const std::string& points : {options.points, options.channels[channel]}) {
    if (!points.empty()) curve.curves.emplace_back(ParseCurvePoints(points), between);
  }
  return curve;
}

Image Curve(const Image& picture, const CurveOptions& options, const CommonOptions& common) {
  if (options.gamma.size() == 2) throw Error("--gamma needs one number or three");
  const std::array<ChannelCurve, kChannels> curves = {CurveFor(options, 0), CurveFor(options, 1),
                                                      CurveFor(options, 2)};
  const ChannelTables tables =
      TabulateChannels(picture.max_sample(), picture.max_sample(), [&](double value) {
        return Triple{curves[0](value), curves[1](value), curves[2](value)};
      });
  return OnThreeChannels(picture, GreyBecomes::kColor, [&](const Image& source) {
    return ApplyTables(source, tables, source.format(), common);
  });
}

void AddPoints(CLI::App& command, const std::string& name, std::string& points,
               const std::string& description) {
  command.add_option(name, points, description)->type_name("X:Y,...");
}

}  // namespace

void AddCurveCommand(CLI::App& app, const CommonOptions& common) {
  CLI::App* const command = app.add_subcommand("curve", "Change tones by curves");
  const auto options = std::make_shared<CurveOptions>();
  CLI::Option_group* const curves = command->add_option_group("curves");
  curves
      ->add_option("--gamma", options->gamma,
                   "one for all channels or one for each; above 1 brightens")
      ->delimiter(',')
      ->allow_extra_args(false)
      ->check(CLI::Range(0.01, 100.0))
      ->type_name("G[,G,G]");
  curves
      ->add_option("--contrast", options->contrast,
                   "an S of all channels, after the gamma; below 0 flattens")
      ->check(CLI::Range(-1.0, 1.0))
      ->type_name("-1..1");
  AddPoints(*curves, "--points", options->points, "curve of all channels, after these");
  AddPoints(*curves, "--red", options->channels[0], "curve of red alone, after that of all");
  AddPoints(*curves, "--green", options->channels[1], "curve of green alone");
  AddPoints(*curves, "--blue", options->channels[2], "curve of blue alone");
  curves->require_option(1, 0);
  command->add_flag("--linear", options->linear, "Straight lines between the points");
  command->footer(
      "Points are given by fractions of full scale, from left to right; curves are smooth and\n"
      "never leave the values of the two points beside them.\n\n"
      "Example:\n  ovra curve --points 0:0,0.25:0.18,0.75:0.84,1:1 photo.jpg contrast.png");
  AddPictureFiles(*command, common, OnPixels([options, &common](const Image& image) {
    return Curve(image, *options, common);
  }));
}

}  // namespace ovra_host
