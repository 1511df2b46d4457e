// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

#include "commands.h"
#include "files.h"
#include "ovra/tone.h"
#include "picture_files.h"
#include "picture_forms.h"
#include "tone_curve.h"
#include "twelve_bits.h"

namespace ovra_host {
namespace {

constexpr size_t kCurveEntries = 4096;
using CurveTable = std::vector<uint16_t>;

// The exports of one form.
struct Form {
  const char* name;
  decltype(&OvraHyperTone_Init_12) init;
  decltype(&OvraHyperTone) run;
  decltype(&OvraHyperTone_Free) free;
};

// In the order of kFormChoices.
constexpr std::array<Form, 4> kForms = {{
    {"OvraHyperTone", OvraHyperTone_Init_12, OvraHyperTone, OvraHyperTone_Free},
    {"OvraHyperToneLight", OvraHyperToneLight_Init_12, OvraHyperToneLight, OvraHyperToneLight_Free},
    {"OvraHybridHyperTone", OvraHybridHyperTone_Init_12, OvraHybridHyperTone,
     OvraHybridHyperTone_Free},
    {"OvraHybridHyperToneLight", OvraHybridHyperToneLight_Init_12, OvraHybridHyperToneLight,
     OvraHybridHyperToneLight_Free},
}};
const Choices kFormChoices = {{"hyper", 0}, {"hyper-light", 1}, {"hybrid", 2}, {"hybrid-light", 3}};
constexpr int32_t kHybrid = 2;

constexpr float kUsualShadows = 0.6F;

// A night is dark on purpose, and lifted whole it shows nothing but its noise: where hardly anything
// is lit, the usual lift is less, down to a quarter.
float UsualLift(const Image& image) {
  constexpr double kLit = 0.15;        // tones from here on are lit
  constexpr double kEnoughLit = 0.25;  // share of the picture
  constexpr double kLeast = 0.25;
  const auto threshold = static_cast<uint32_t>(kLit * image.max_sample());
  const uint32_t channels = image.channels();
  const uint32_t channel = channels == 1 ? 0 : 1;  // green is most of the brightness
  int64_t lit = 0;
  for (int32_t y = 0; y < image.height(); ++y) {
    for (int32_t x = 0; x < image.width(); ++x) {
      const size_t i = static_cast<size_t>(x) * channels + channel;
      lit += (image.bytes_per_sample() == 1 ? image.Row(y)[i] : image.Row16(y)[i]) >= threshold;
    }
  }
  const double share = static_cast<double>(lit) / image.width() / image.height();
  return kUsualShadows * static_cast<float>(std::clamp(share / kEnoughLit, kLeast, 1.0));
}

struct ToneOptions {
  OvraHyperToneParams params = {1.0F, kUsualShadows, 0.4F, 1.2F, 0.12F, 1.0F, 0, 0};
  std::string scale = "auto";
  std::string curve;
  int32_t form = kHybrid;
  const CLI::Option* given_shadows = nullptr;
  bool show = false;
};

constexpr int32_t kMinScale = 3;
constexpr int32_t kMaxScale = 8;

int32_t ScaleFor(const std::string& text, const Image& image) {
  constexpr double kBelowSide = 4;  // the blur is a sixteenth of the shorter side
  if (text != "auto") return std::stoi(text);
  const double octaves = std::log2(std::min(image.width(), image.height()));
  return std::clamp(static_cast<int32_t>(std::lround(octaves - kBelowSide)), kMinScale, kMaxScale);
}

// Points of a text file, "X:Y" of 0..1 with commas, spaces or line ends between them.
CurveTable ReadCurve(const std::string& path) {
  constexpr uint64_t kMaxBytes = 1 << 16;
  const InputFile file(path);
  if (file.size() > kMaxBytes) file.Refuse("is too long for a tone curve");
  std::string text(static_cast<size_t>(file.size()), '\0');
  if (std::fread(text.data(), 1, text.size(), file.stream()) != text.size()) {
    file.Refuse("cannot be read");
  }
  const bool separated = text.find(',') != std::string::npos;
  while (!text.empty() && std::isspace(static_cast<unsigned char>(text.back())) != 0)
    text.pop_back();
  for (char& c : text) {
    if (!separated && std::isspace(static_cast<unsigned char>(c)) != 0) c = ',';
  }
  if (separated) {
    std::erase_if(text, [](unsigned char c) { return std::isspace(c) != 0; });
  }
  CurveTable table;
  try {
    const ToneCurve curve(ParseCurvePoints(text), ToneCurve::Between::kCubic);
    constexpr double kMax = kCurveEntries - 1;
    for (size_t v = 0; v < kCurveEntries; ++v) {
      const double value = std::clamp(curve(static_cast<double>(v) / kMax), 0.0, 1.0);
      table.push_back(static_cast<uint16_t>(std::lround(value * kMax)));
    }
  } catch (const Error& error) {
    file.Refuse(error.what());
  }
  if (!std::is_sorted(table.begin(), table.end())) file.Refuse("the curve falls; it must rise");
  return table;
}

Image RunForm(const Image& source, const Form& form, const OvraHyperToneParams& params,
              const CurveTable& curve, const CommonOptions& common) {
  Image result(source.width(), source.height(), source.format());
  void* context = nullptr;
  CheckStatus(form.init(source.format(), &params, curve.empty() ? nullptr : curve.data(), &context),
              std::string(form.name) + "_Init_12");
  const auto release = [&form](void* made) { form.free(&made); };
  const std::unique_ptr<void, decltype(release)> owner(context, release);
  CallLibrary(common, form.name, [&] {
    return form.run(source.data(), result.data(), static_cast<uint32_t>(source.width()),
                    static_cast<uint32_t>(source.height()), source.format(), context);
  });
  return result;
}

Image Tone(const Image& image, const ToneOptions& options, const CommonOptions& common) {
  const CurveTable curve = options.curve.empty() ? CurveTable() : ReadCurve(options.curve);
  OvraHyperToneParams params = options.params;
  params.scale = ScaleFor(options.scale, image);
  if (options.given_shadows->count() == 0) params.shadows = UsualLift(image);
  if (options.show) {
    std::printf("shadows %.2g scale %d\n", static_cast<double>(params.shadows), params.scale);
  }
  const auto run = [&](const Image& source) {
    return RunForm(source, kForms[static_cast<size_t>(options.form)], params, curve, common);
  };
  return OnThreeChannels(image, GreyBecomes::kGrey, [&](const Image& color) {
    return color.depth_bits() == 8 ? WidenedToTwelveBits(color, run)
                                   : GainedAtTwelveBits(color, run);
  });
}

CLI::Option* AddSlider(CLI::App& command, const char* name, float& value, float low, float high,
                       const char* description) {
  char range[32];
  std::snprintf(range, sizeof(range), "%g..%g", static_cast<double>(low),
                static_cast<double>(high));
  return command.add_option(name, value, description)
      ->check(CLI::Range(low, high))
      ->type_name(range)
      ->capture_default_str();
}

void AddSliders(CLI::App& command, ToneOptions& options) {
  OvraHyperToneParams& params = options.params;
  AddSlider(command, "--amount", params.amount, 0.0F, 1.0F, "Strength of all; 0 changes nothing");
  options.given_shadows =
      AddSlider(command, "--shadows", params.shadows, -0.5F, 1.5F,
                "Lift of the shadows; by itself less in pictures that are dark throughout");
  AddSlider(command, "--highlights", params.highlights, -0.5F, 1.0F, "Hold of the highlights");
  AddSlider(command, "--local-contrast", params.local_contrast, 0.5F, 1.5F, "Factor on detail");
  AddSlider(command, "--edge", params.edge, 0.01F, 0.15F,
            "Difference of brightness beyond which it is an edge, not detail");
  AddSlider(command, "--colour,--color", params.colour, 0.0F, 1.0F,
            "1 lets colors grow with the light, 0 does not (hybrid forms)");
}

}  // namespace

void AddToneCommand(CLI::App& app, const CommonOptions& common) {
  CLI::App* const command =
      app.add_subcommand("tone", "Lift shadows and hold highlights, with their detail");
  const auto options = std::make_shared<ToneOptions>();
  AddSliders(*command, *options);
  const auto check_scale = [](const std::string& text) {
    const bool number =
        text.size() == 1 && text[0] >= '0' + kMinScale && text[0] <= '0' + kMaxScale;
    return number || text == "auto" ? "" : "--scale: \"" + text + "\" is not auto or 3..8";
  };
  command
      ->add_option("--scale", options->scale,
                   "How large a region has one tone; each step doubles it; auto suits the size")
      ->check(CLI::Validator(check_scale, ""))
      ->type_name("auto|3..8")
      ->capture_default_str();
  command
      ->add_option("--curve", options->curve,
                   "Text file with the points X:Y of a tone curve, in place of the two sliders")
      ->type_name("FILE");
  AddChoice(*command, "--form", options->form, kFormChoices,
            "How it is computed: hybrid (the default) has no halos; light forms are faster");
  command->add_flag("--show", options->show, "Print the lift and the scale that are used");
  command->footer(
      "Pictures of 8 bits a sample are worked on with 12 and brought back with an ordered dither: "
      "a\n"
      "sky that was lightened would show contours when it were rounded. Of those of 16 bits the "
      "upper\n"
      "12 are worked on, and the other four go through the gain of their pixel.\n\n"
      "Example:\n  ovra tone backlit.jpg better.jpg\n"
      "  ovra tone --shadows 1.2 --highlights 0.8 --colour 0.7 backlit.jpg bright.jpg");
  AddPictureFiles(*command, common, OnPixels([options, &common](const Image& image) {
    return Tone(image, *options, common);
  }));
}

}  // namespace ovra_host
