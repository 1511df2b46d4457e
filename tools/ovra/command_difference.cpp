// SPDX-License-Identifier: MIT
#include <algorithm>

#include "commands.h"

namespace ovra_host {
namespace {

struct DifferenceOptions {
  std::string first;
  std::string second;
  std::string output;
  int32_t gain = 8;
};

template <class Sample>
void DifferenceRow(const Sample* first, const Sample* second, Sample* result, size_t samples,
                   int32_t gain, int32_t max) {
  for (size_t i = 0; i < samples; ++i) {
    const int32_t value = max / 2 + 1 + gain * (second[i] - first[i]);
    result[i] = static_cast<Sample>(std::clamp(value, 0, max));
  }
}

void Difference(const DifferenceOptions& options, const CommonOptions& common) {
  CheckOutput(options.output, common.write);
  const Image first = ReadPicture(options.first, common.read).image;
  const Image second = ReadPicture(options.second, common.read).image;
  if (first.width() != second.width() || first.height() != second.height() ||
      first.format() != second.format()) {
    throw Error("difference needs two pictures of one size and format");
  }
  Image result(first.width(), first.height(), first.format());
  const size_t samples = first.row_bytes() / first.bytes_per_sample();
  const auto max = static_cast<int32_t>(first.max_sample());
  for (int32_t y = 0; y < first.height(); ++y) {
    if (first.bytes_per_sample() == 1) {
      DifferenceRow(first.Row(y), second.Row(y), result.Row(y), samples, options.gain, max);
    } else {
      DifferenceRow(first.Row16(y), second.Row16(y), result.Row16(y), samples, options.gain, max);
    }
  }
  WriteImage(result, options.output, common.write);
}

}  // namespace

void AddDifferenceCommand(CLI::App& app, const CommonOptions& common) {
  constexpr int32_t kMaxGain = 1000;
  CLI::App* const command =
      app.add_subcommand("difference", "Show what has changed from one picture to another");
  const auto options = std::make_shared<DifferenceOptions>();
  AddInput(*command, "first", options->first);
  AddInput(*command, "second", options->second, "picture of the same size and format");
  AddOutput(*command, "output", options->output);
  command->add_option("--gain", options->gain, "Factor by which differences are amplified")
      ->check(CLI::Range(1, kMaxGain))
      ->type_name("FACTOR")
      ->capture_default_str();
  command->footer(
      "Middle grey is no difference; brighter is more in the second picture.\n\n"
      "Example:\n  ovra difference --gain 10 before.png after.png difference.png");
  command->callback([options, &common] { Difference(*options, common); });
}

}  // namespace ovra_host
