// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <cstdio>

#include "commands.h"

namespace ovra_host {
namespace {

// What cmp answers, too.
constexpr int kDiffer = 1;
constexpr int kTrouble = 2;

struct CompareOptions {
  std::string first;
  std::string second;
  std::string output;
  int32_t gain = 8;
};

struct Findings {
  double sum_of_squares = 0;
  int64_t differing = 0;
  int32_t greatest = 0;
  int32_t x = 0;  // of the first place where it is so great
  int32_t y = 0;
  size_t channel = 0;
};

int32_t SampleAt(const Image& image, int32_t y, size_t i) {
  return image.bytes_per_sample() == 1 ? image.Row(y)[i] : image.Row16(y)[i];
}

size_t SamplesInRow(const Image& image) {
  return image.row_bytes() / image.bytes_per_sample();
}

Findings Find(const Image& first, const Image& second) {
  Findings findings;
  for (int32_t y = 0; y < first.height(); ++y) {
    for (size_t i = 0; i < SamplesInRow(first); ++i) {
      const int32_t difference = std::abs(SampleAt(second, y, i) - SampleAt(first, y, i));
      if (difference == 0) continue;
      findings.sum_of_squares += double{1} * difference * difference;
      ++findings.differing;
      if (difference <= findings.greatest) continue;
      findings.greatest = difference;
      findings.x = static_cast<int32_t>(i / first.channels());
      findings.y = y;
      findings.channel = i % first.channels();
    }
  }
  return findings;
}

void Print(const Findings& findings, const Image& first, const Image& second) {
  if (findings.differing == 0) {
    std::printf("equal\n");
    return;
  }
  constexpr const char* kChannels[] = {"red", "green", "blue", "alpha"};
  const char* const channel = first.channels() == 1 ? "grey" : kChannels[findings.channel];
  const size_t at = static_cast<size_t>(findings.x) * first.channels() + findings.channel;
  const double samples = double{1} * static_cast<double>(SamplesInRow(first)) * first.height();
  const double rms = std::sqrt(findings.sum_of_squares / samples);
  std::printf("psnr        %.2f dB\n", 20 * std::log10(first.max_sample() / rms));
  std::printf("greatest    %d of %u, at %d,%d in %s: %d and %d\n", findings.greatest,
              first.max_sample(), findings.x, findings.y, channel, SampleAt(first, findings.y, at),
              SampleAt(second, findings.y, at));
  std::printf("differing   %.4g %% of the samples\n",
              100 * static_cast<double>(findings.differing) / samples);
}

Image Difference(const Image& first, const Image& second, int32_t gain) {
  Image result(first.width(), first.height(), first.format());
  const auto max = static_cast<int32_t>(first.max_sample());
  for (int32_t y = 0; y < first.height(); ++y) {
    for (size_t i = 0; i < SamplesInRow(first); ++i) {
      const int32_t difference = SampleAt(second, y, i) - SampleAt(first, y, i);
      const int32_t value = std::clamp(max / 2 + 1 + gain * difference, 0, max);
      if (result.bytes_per_sample() == 1) {
        result.Row(y)[i] = static_cast<uint8_t>(value);
      } else {
        result.Row16(y)[i] = static_cast<uint16_t>(value);
      }
    }
  }
  return result;
}

std::string Form(const Image& image) {
  return std::to_string(image.width()) + " x " + std::to_string(image.height()) + " pixels of " +
         std::to_string(image.channels()) + " channels, " + std::to_string(image.depth_bits()) +
         " bits";
}

// Answers whether they are equal.
bool Compare(const CompareOptions& options, const CommonOptions& common) {
  if (options.output == kStandardStream) KeepStandardOutputForAPicture();
  if (!options.output.empty()) CheckOutput(options.output, common.write);
  const Image first = ReadPicture(options.first, common.read).image;
  const Image second = ReadPicture(options.second, common.read).image;
  if (first.width() != second.width() || first.height() != second.height() ||
      first.format() != second.format()) {
    const std::string text = "unlike: " + Form(first) + " and " + Form(second);
    if (!options.output.empty()) throw Error(text + "; no difference can be shown");
    std::printf("%s\n", text.c_str());
    return false;
  }
  const Findings findings = Find(first, second);
  Print(findings, first, second);
  if (!options.output.empty()) {
    WriteImage(Difference(first, second, options.gain), options.output, common.write);
  }
  return findings.differing == 0;
}

}  // namespace

void AddCompareCommand(CLI::App& app, const CommonOptions& common) {
  constexpr int32_t kMaxGain = 1000;
  CLI::App* const command =
      app.add_subcommand("compare", "Tell how two pictures differ, and show where");
  const auto options = std::make_shared<CompareOptions>();
  AddInput(*command, "first", options->first);
  AddInput(*command, "second", options->second);
  CLI::Option* const output =
      AddOutput(*command, "-o,--output", options->output, "picture of the differences to write");
  command->add_option("--gain", options->gain, "Factor by which differences are shown amplified")
      ->check(CLI::Range(1, kMaxGain))
      ->type_name("FACTOR")
      ->capture_default_str()
      ->needs(output);
  command->footer(
      "Told are the peak signal-to-noise ratio over all samples, the greatest difference and the\n"
      "first place that has it. In the picture middle grey is no difference, and brighter is more\n"
      "in the second one. What pictures carry beside their pixels does not count.\n"
      "The exit status is 0 when they are equal, 1 when they differ and 2 in trouble, as that of "
      "cmp.\n\n"
      "Example:\n  ovra compare before.png after.png\n"
      "  ovra compare --gain 10 before.png after.png -o difference.png");
  command->callback([options, &common] {
    try {
      if (!Compare(*options, common)) throw Exit(kDiffer);
    } catch (const Error& error) {
      PrintNote(error.what());
      throw Exit(kTrouble);
    } catch (const std::bad_alloc&) {
      PrintNote("out of memory");
      throw Exit(kTrouble);
    }
  });
}

}  // namespace ovra_host
