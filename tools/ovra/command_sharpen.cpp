// SPDX-License-Identifier: MIT
#include <cstdio>
#include <numeric>

#include "commands.h"
#include "picture_files.h"
#include "picture_forms.h"
#include "sharpening.h"
#include "tone_curve.h"

namespace ovra_host {
namespace {

// The double mask has a blur about so many times as wide for its coarse band.
constexpr double kCoarseRadiusRatio = 4;

struct SharpenOptions {
  double amount = 1.8;
  double radius = 0;  // 0: from the size of the picture
  Weights taps;
  Curve levels;
  Curve differences;
  bool use_double = false;
  double coarse_amount = 1.25;
  double coarse_radius = 0;  // 0: from the fine one
  Weights coarse_taps;
  bool show = false;
};

// A blur and the response of the mask to what it leaves over.
struct Band {
  const char* name;
  double amount;
  Weights weights;
  Curve levels;
  Curve differences;
};

// Throws Error where the text is not a curve of the library's.
Curve ParseCurve(const std::string& text) {
  constexpr double kMaxStrength = 100;  // its table entry fits 16 bits
  Curve curve;
  for (const ToneCurve::Point& point : ParseCurvePoints(text)) {
    if (!(point.y >= -kMaxStrength && point.y <= kMaxStrength)) {
      throw Error("\"" + text + "\" has a strength beyond 100");
    }
    curve.push_back({point.x, point.y});
  }
  if (curve.size() < 2) throw Error("a curve needs two points or more");
  return curve;
}

CLI::Option* AddCurve(CLI::App& command, const std::string& name, Curve& curve,
                      const std::string& description) {
  const auto read = [&curve, name](const std::string& text) {
    try {
      curve = ParseCurve(text);
    } catch (const Error& error) {
      throw CLI::ConversionError(name + ": " + error.what());
    }
  };
  return command.add_option_function<std::string>(name, read, description)->type_name("X:Y,...");
}

CLI::Option* AddTaps(CLI::App& command, const std::string& name, Weights& taps,
                     const std::string& description) {
  return command.add_option(name, taps, description)
      ->delimiter(',')
      ->allow_extra_args(false)
      ->type_name("N,N,...");
}

void CheckTaps(const Weights& taps, const std::string& name) {
  const int64_t sum = std::accumulate(taps.begin(), taps.end(), int64_t{0});
  if (taps.empty() || sum == kWeightSum) return;
  throw Error(name + ": the weights sum to " + std::to_string(sum) + ", not to " +
              std::to_string(kWeightSum));
}

template <class T>
T Either(const T& given, const T& otherwise) {
  return given.empty() ? otherwise : given;
}

double FineRadius(const SharpenOptions& options, const Image& image) {
  return options.radius > 0 ? options.radius : RadiusForSize(image.width(), image.height());
}

Band SingleBand(const SharpenOptions& options, const Image& image) {
  CheckTaps(options.taps, "--taps");
  const DefaultCurves curves = MakeDefaultCurves();
  return {"mask", options.amount, Either(options.taps, BellWeights(FineRadius(options, image))),
          Either(options.levels, curves.levels), Either(options.differences, curves.differences)};
}

Band FineBand(const SharpenOptions& options, const Image& image) {
  Band band = SingleBand(options, image);
  band.name = "fine";
  band.levels = Either(options.levels, Curve{{0.0, 1.0}, {1.0, 1.0}});
  band.differences = Either(options.differences, DefaultBandDifferences(band.amount));
  return band;
}

Band CoarseBand(const SharpenOptions& options, const Image& image) {
  CheckTaps(options.coarse_taps, "--coarse-taps");
  const double radius = options.coarse_radius > 0 ? options.coarse_radius
                                                  : kCoarseRadiusRatio * FineRadius(options, image);
  Band band = FineBand(options, image);
  band.name = "coarse";
  band.amount = options.coarse_amount;
  band.weights = Either(options.coarse_taps, BellWeights(radius));
  band.differences = Either(options.differences, DefaultBandDifferences(band.amount));
  return band;
}

void ShowCurve(const char* name, const char* kind, const Curve& curve) {
  std::printf("%s %s", name, kind);
  for (size_t i = 0; i < curve.size(); ++i) {
    std::printf("%s%.4g:%.4g", i == 0 ? " " : ",", curve[i].x, curve[i].y);
  }
  std::printf("\n");
}

void Show(const Band& band) {
  std::printf("%s amount %g\n%s taps", band.name, band.amount, band.name);
  for (size_t i = 0; i < band.weights.size(); ++i) {
    std::printf("%s%d", i == 0 ? " " : ",", band.weights[i]);
  }
  std::printf("\n");
  ShowCurve(band.name, "level", band.levels);
  ShowCurve(band.name, "difference", band.differences);
}

void RunMask(const Band& band, Image* image, const CommonOptions& common) {
  const ResponseTables tables = MakeResponseTables(image->format(), band.levels, band.differences);
  CheckMaskStrength(tables, band.amount, image->depth_bits());
  CallLibrary(common, "OvraYUsmSingleStep", [&] {
    return OvraYUsmSingleStep(image->data(), image->data(), static_cast<uint32_t>(image->width()),
                              static_cast<uint32_t>(image->height()), image->format(),
                              static_cast<int32_t>(band.weights.size()), band.weights.data(),
                              static_cast<float>(band.amount), tables.level.data(),
                              tables.difference.data());
  });
}

void RunDoubleMask(const Band& coarse, const Band& fine, Image* image,
                   const CommonOptions& common) {
  const auto make_tables = [image](const Band& band) {
    ResponseTables tables = MakeResponseTables(image->format(), band.levels, band.differences);
    CheckBandStrength(tables, band.amount);
    return tables;
  };
  const ResponseTables tables1 = make_tables(coarse);
  const ResponseTables tables2 = make_tables(fine);
  CallLibrary(common, "OvraYUsmDoubleSingleStep", [&] {
    return OvraYUsmDoubleSingleStep(
        image->data(), image->data(), static_cast<uint32_t>(image->width()),
        static_cast<uint32_t>(image->height()), image->format(),
        static_cast<uint32_t>(coarse.weights.size()), coarse.weights.data(),
        static_cast<uint32_t>(fine.weights.size()), fine.weights.data(),
        static_cast<float>(coarse.amount), tables1.level.data(), tables1.difference.data(),
        static_cast<float>(fine.amount), tables2.level.data(), tables2.difference.data());
  });
}

void SharpenOnce(const SharpenOptions& options, Image* image, const CommonOptions& common) {
  const Band band = SingleBand(options, *image);
  if (options.show) Show(band);
  if (image->depth_bits() == 8) return RunMask(band, image, common);
  const Image before = WithFourteenBits(*image);
  Image after = before;
  RunMask(band, &after, common);
  AddChange(before, after, image);
}

void SharpenTwice(const SharpenOptions& options, Image* image, const CommonOptions& common) {
  const Band coarse = CoarseBand(options, *image);
  const Band fine = FineBand(options, *image);
  if (options.show) {
    Show(coarse);
    Show(fine);
  }
  RunDoubleMask(coarse, fine, image, common);
}

Image Sharpen(Image image, const SharpenOptions& options, const CommonOptions& common) {
  if (!options.use_double) {
    SharpenOnce(options, &image, common);
    return image;
  }
  return OnThreeChannels(image, GreyBecomes::kGrey, [&](const Image& color) {
    return OnEightBits(color, [&](Image narrow) {
      SharpenTwice(options, &narrow, common);
      return narrow;
    });
  });
}

void AddBlurOptions(CLI::App& command, SharpenOptions& options) {
  constexpr double kMinRadius = 0.3;
  constexpr double kMaxRadius = 10;
  const CLI::Range amounts(0.0, 20.0);
  const CLI::Range radii(kMinRadius, kMaxRadius);
  command.add_option("--amount", options.amount, "Strength: 1 changes nothing, below 1 softens")
      ->check(amounts)
      ->type_name("FACTOR")
      ->capture_default_str();
  command.add_option("--radius", options.radius, "Radius of the blur; without it, by the size")
      ->check(radii)
      ->type_name("PIXELS");
  AddTaps(command, "--taps", options.taps, "Weights of the blur, with a sum of 128");
  CLI::Option* const use_double =
      command.add_flag("--double", options.use_double, "Sharpen a fine and a coarse band");
  command.add_option("--coarse-amount", options.coarse_amount, "Strength of the coarse band")
      ->check(amounts)
      ->type_name("FACTOR")
      ->capture_default_str()
      ->needs(use_double);
  command
      .add_option("--coarse-radius", options.coarse_radius,
                  "Radius of its blur; without it, four times the fine one")
      ->check(radii)
      ->type_name("PIXELS")
      ->needs(use_double);
  AddTaps(command, "--coarse-taps", options.coarse_taps, "Weights of its blur")->needs(use_double);
}

}  // namespace

void AddSharpenCommand(CLI::App& app, const CommonOptions& common) {
  CLI::App* const command = app.add_subcommand("sharpen", "Sharpen or soften by the luminance");
  const auto options = std::make_shared<SharpenOptions>();
  AddBlurOptions(*command, *options);
  AddCurve(*command, "--level", options->levels,
           "Strength Y by brightness X of 0..1; points in rising order");
  AddCurve(*command, "--difference", options->differences,
           "Strength Y by difference X of -1..1 from the blur");
  command->add_flag("--show", options->show, "Print the weights and curves that are used");
  command->footer(
      "Without options the strength suits photographs, and the blur their size. The curves spare\n"
      "noise, deep shadows and hard edges; --show prints them in the form that the options take.\n"
      "With --double the curves scale the bands themselves: 1 divided by the amount keeps them.\n\n"
      "Example:\n  ovra sharpen photo.jpg sharp.jpg\n"
      "  ovra sharpen --amount 2.5 --radius 1.2 photo.jpg sharp.png\n"
      "  ovra sharpen --double --coarse-amount 1.4 photo.jpg crisp.jpg");
  AddPictureFiles(*command, common, OnPixels([options, &common](const Image& image) {
    return Sharpen(image, *options, common);
  }));
}

}  // namespace ovra_host
