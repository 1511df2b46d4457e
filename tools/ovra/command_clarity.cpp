// SPDX-License-Identifier: MIT
#include <charconv>
#include <cstdio>

#include "clarity.h"
#include "commands.h"
#include "picture_files.h"
#include "picture_forms.h"
#include "twelve_bits.h"

namespace ovra_host {
namespace {

// Without any slider.
constexpr ClaritySliders kDefaults = {.detail = 0.4, .clarity = 0.5};

struct ClarityOptions {
  ClaritySliders sliders;
  std::vector<CLI::Option*> given;
  std::string bands;
  double base_gain = 1;
  double pivot = 0.5;
  bool show = false;
};

// "GAIN[:NOISE[:DAMPING[:LIMIT]]],...": one entry a band, the finest first.
OvraMultiFrequencyParams ParseBands(const ClarityOptions& options) {
  OvraMultiFrequencyParams params = {};
  params.base_gain = static_cast<float>(options.base_gain);
  params.pivot = static_cast<float>(options.pivot);
  const char* position = options.bands.data();
  const char* const end = position + options.bands.size();
  const auto refuse = [&] {
    throw Error("--bands: \"" + options.bands +
                "\" is not GAIN:NOISE:DAMPING:LIMIT,... of up to 8 bands");
  };
  while (true) {
    if (params.band_count == OVRA_MULTI_FREQUENCY_MAX_BANDS) refuse();
    OvraMultiFrequencyBand& band = params.band[params.band_count++];
    band = {1, 0, 0, 1};
    float* const fields[] = {&band.gain, &band.noise, &band.damping, &band.limit};
    for (float* const* field = std::begin(fields);; ++field) {
      const auto [next, error] = std::from_chars(position, end, **field);
      if (error != std::errc()) refuse();
      position = next;
      if (position == end || *position != ':' || field + 1 == std::end(fields)) break;
      ++position;
    }
    if (position == end) return params;
    if (*position++ != ',') refuse();
  }
}

OvraMultiFrequencyParams ParamsFor(const ClarityOptions& options, const Image& image) {
  if (!options.bands.empty()) return ParseBands(options);
  bool any = false;
  for (const CLI::Option* option : options.given) any = any || option->count() > 0;
  return ClarityParams(any ? options.sliders : kDefaults, image.width(), image.height(),
                       EstimateNoise(image));
}

void Show(const OvraMultiFrequencyParams& params) {
  std::printf("base-gain %.4g pivot %.4g bands ", params.base_gain, params.pivot);
  for (uint32_t k = 0; k < params.band_count; ++k) {
    const OvraMultiFrequencyBand& band = params.band[k];
    std::printf("%s%.4g:%.4g:%.4g:%.4g", k == 0 ? "" : ",", band.gain, band.noise, band.damping,
                band.limit);
  }
  std::printf("\n");
}

Image Clarity(const Image& image, const ClarityOptions& options, const CommonOptions& common) {
  const OvraMultiFrequencyParams params = ParamsFor(options, image);
  if (options.show) Show(params);
  const auto run = [&](const Image& source) {
    Image result(source.width(), source.height(), source.format());
    CallLibrary(common, "OvraMultiFrequency", [&] {
      return OvraMultiFrequency(source.data(), result.data(), static_cast<uint32_t>(source.width()),
                                static_cast<uint32_t>(source.height()), source.format(), &params);
    });
    return result;
  };
  return image.depth_bits() == 8 ? WidenedToTwelveBits(image, run) : run(image);
}

void AddSliders(CLI::App& command, ClarityOptions& options) {
  const auto add = [&](const char* name, double& value, const char* description) {
    options.given.push_back(command.add_option(name, value, description)
                                ->check(CLI::Range(0.0, 1.0))
                                ->type_name("0..1"));
  };
  add("--detail", options.sliders.detail, "Fine texture, above the noise");
  add("--clarity", options.sliders.clarity, "Contrast of shapes");
  add("--soft-skin", options.sliders.soft_skin, "Skin without pores, with its contours");
  add("--denoise", options.sliders.denoise, "Less noise, by as much as the picture has");
  add("--flatten", options.sliders.flatten, "Gentler light with the same detail");
}

}  // namespace

void AddClarityCommand(CLI::App& app, const CommonOptions& common) {
  CLI::App* const command =
      app.add_subcommand("clarity", "Bring out or soften detail, from texture to large shapes");
  const auto options = std::make_shared<ClarityOptions>();
  AddSliders(*command, *options);
  CLI::Option* const bands =
      command
          ->add_option("--bands", options->bands,
                       "For experts: each band's weight, noise, damping and limit, finest first")
          ->type_name("G:N:D:L,...");
  for (CLI::Option* slider : options->given) bands->excludes(slider);
  command->add_option("--base-gain", options->base_gain, "Weight of what the bands leave")
      ->check(CLI::Range(0.0, 2.0))
      ->type_name("0..2")
      ->needs(bands);
  command->add_option("--pivot", options->pivot, "Tone that the base gain leaves alone")
      ->check(CLI::Range(0.0, 1.0))
      ->type_name("0..1")
      ->needs(bands);
  command->add_flag("--show", options->show,
                    "Print the bands that are used, as --bands takes them");
  command->footer(
      "Without a slider it is --detail 0.4 --clarity 0.5. Sliders suit the picture's size, and "
      "its\n"
      "noise is not enlarged. Pictures of 8 bits a sample are worked on with 12 and brought back "
      "with\n"
      "an ordered dither, which shows no contours in skies; those of 16 keep all their bits.\n\n"
      "Example:\n  ovra clarity photo.jpg crisp.jpg\n"
      "  ovra clarity --soft-skin 0.6 --denoise 0.5 portrait.jpg soft.jpg\n"
      "  ovra clarity --bands 1.5:0.004:0:0.08,1.2 photo.jpg texture.png");
  AddPictureFiles(*command, common, OnPixels([options, &common](const Image& image) {
    return Clarity(image, *options, common);
  }));
}

}  // namespace ovra_host
