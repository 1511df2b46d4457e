// SPDX-License-Identifier: MIT
// ovra: the library's operations on picture files. An ordinary host: it calls the library through
// its public C interface only.
#include <algorithm>
#include <cstdio>
#include <exception>
#include <iostream>
#include <string>
#include <vector>

#include "color_words.h"
#include "commands.h"
#include "ovra/version.h"
#include "suggestion.h"
#include "temporary_files.h"

namespace {

constexpr int kFailed = 1;
constexpr int kUsageError = 2;

int Report(std::string message, int exit_code) {
  std::replace(message.begin(), message.end(), '\n', ' ');
  std::fprintf(stderr, "ovra: %s\n", message.c_str());
  return exit_code;
}

std::string VersionText() {
  const uint32_t version = OvraGetVersion();
  return "ovra with OvraBase " + std::to_string(version >> 16) + "." +
         std::to_string(version >> 8 & 255) + "." + std::to_string(version & 255);
}

void AddWriteOptions(CLI::App& app, ovra_host::WriteOptions& options) {
  app.add_option("--quality", options.quality, "Quality of JPEG, WebP and AVIF output [92, 90, 80]")
      ->check(CLI::Range(1, 100))
      ->type_name("1..100");
  app.add_option("--compression", options.compression,
                 "Effort to make PNG output small: 0 none, 9 most; usually little, and fast")
      ->check(CLI::Range(0, 9))
      ->type_name("0..9");
  app.add_option("--depth", options.depth_bits, "Bits a sample of the output [those of the input]")
      ->check(CLI::IsMember({8, 16}))
      ->type_name("8|16");
  app.add_option("--background", options.background,
                 "Lay pictures with alpha on this color, as for JPEG, which holds no alpha")
      ->type_name(ovra_host::kColorForms);
}

void AddOpenOptions(CLI::App& app, ovra_host::OpenOptions& options) {
  constexpr int32_t kMostPages = 1'000'000;
  app.add_option("--page", options.page, "Which page of a TIFF file to read [1]")
      ->check(CLI::Range(1, kMostPages))
      ->type_name("N");
  app.add_option("--max-pixels", options.max_pixels, "Refuse to read pictures of more pixels")
      ->check(CLI::PositiveNumber)
      ->type_name("N")
      ->capture_default_str();
}

void AddCommonOptions(CLI::App& app, ovra_host::CommonOptions& common) {
  app.add_flag("--time", common.show_time, "Print the milliseconds of each library call");
  AddWriteOptions(app, common.write);
  AddOpenOptions(app, common.read.open);
  app.add_flag("--strip", common.read.strip,
               "Leave out all that the picture carries but its colour profile");
  app.add_flag("--to-srgb", common.read.to_srgb, "Convert colors by the picture's profile to sRGB");
  app.add_flag(
      "!--no-auto-orient", common.read.auto_orient,
      "Keep pixels and orientation tag as they are, instead of turning the picture upright");
}

void AddCommands(CLI::App& app, const ovra_host::CommonOptions& common) {
  ovra_host::AddInfoCommand(app, common);
  ovra_host::AddRotateCommand(app, common);
  ovra_host::AddStraightenCommand(app, common);
  ovra_host::AddResizeCommand(app, common);
  ovra_host::AddCanvasCommand(app, common);
  ovra_host::AddComposeCommand(app, common);
  ovra_host::AddLutCommand(app, common);
  ovra_host::AddCascadeCommand(app, common);
  ovra_host::AddCurveCommand(app, common);
  ovra_host::AddMatrixCommand(app, common);
  ovra_host::AddSmoothCommand(app, common);
  ovra_host::AddSoftFocusCommand(app, common);
  ovra_host::AddDifferenceCommand(app, common);
  ovra_host::AddSharpenCommand(app, common);
  ovra_host::AddClarityCommand(app, common);
  ovra_host::AddToneCommand(app, common);
}

std::vector<std::string> CommandNames(const CLI::App& app) {
  std::vector<std::string> names;
  for (const CLI::App* command : app.get_subcommands({})) names.push_back(command->get_name());
  return names;
}

// The long options of a command, also those that stand in groups.
std::vector<std::string> OptionNames(const CLI::App& app) {
  std::vector<std::string> names;
  for (const CLI::Option* option : app.get_options()) {
    for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
  }
  for (const CLI::App* group : app.get_subcommands({})) {
    if (!group->get_name().empty()) continue;
    const std::vector<std::string> more = OptionNames(*group);
    names.insert(names.end(), more.begin(), more.end());
  }
  return names;
}

// What to say about a command line that cannot be read, in the user's words.
std::string UsageMessage(const CLI::App& app, const std::vector<std::string>& words,
                         const CLI::ParseError& error) {
  const std::vector<std::string> commands = CommandNames(app);
  const auto is_option = [](const std::string& word) { return word.rfind("--", 0) == 0; };
  const auto command = std::find_if_not(words.begin(), words.end(), is_option);
  if (command == words.end()) return "no command; see ovra --help";
  if (std::find(commands.begin(), commands.end(), *command) == commands.end()) {
    const std::string nearest = ovra_host::NearestWord(*command, commands);
    return "there is no command \"" + *command + "\"; " +
           (nearest.empty() ? "see ovra --help" : "did you mean " + nearest + "?");
  }
  const CLI::App* const chosen = app.get_subcommand(*command);
  std::vector<std::string> options = OptionNames(*chosen);
  const std::vector<std::string> everywhere = OptionNames(app);
  options.insert(options.end(), everywhere.begin(), everywhere.end());
  for (const std::string& word : words) {
    const std::string name = word.substr(0, word.find('='));
    if (!is_option(word) || std::find(options.begin(), options.end(), name) != options.end())
      continue;
    const std::string nearest = ovra_host::NearestWord(name, options);
    return *command + " has no option " + name + "; " +
           (nearest.empty() ? "see ovra " + *command + " --help" : "did you mean " + nearest + "?");
  }
  return std::string(error.what()) + "; see ovra " + *command + " --help";
}

// "help COMMAND" is another way to say "COMMAND --help".
std::vector<std::string> WordsOf(int argc, char** argv) {
  std::vector<std::string> words(argv + std::min(argc, 1), argv + argc);
  if (words.empty() || words[0] != "help") return words;
  words.erase(words.begin());
  words.push_back("--help");
  return words;
}

int Run(const std::vector<std::string>& words) {
  CLI::App app(
      "Turns, places, resizes, sharpens and recolours pictures: PNG, JPEG, TIFF, BMP, WebP, AVIF.",
      "ovra");
  ovra_host::CommonOptions common;
  app.require_subcommand(1);
  app.fallthrough();  // common options may also follow the subcommand
  app.set_version_flag("--version", VersionText());
  AddCommonOptions(app, common);
  AddCommands(app, common);
  app.footer(
      "Every command has its own --help, with an example; ovra help COMMAND shows it too.\n"
      "What a photograph carries (colour profile, EXIF, XMP, IPTC, resolution, comment) goes into\n"
      "the result as far as its format can hold it.");
  try {
    app.parse(std::vector<std::string>(words.rbegin(), words.rend()));
  } catch (const CLI::Success& request) {  // --help, --version
    app.exit(request);
  } catch (const CLI::ParseError& error) {
    return Report(UsageMessage(app, words, error), kUsageError);
  }
  std::cout.flush();
  const bool written = std::cout.good() && std::fflush(stdout) == 0 && std::ferror(stdout) == 0;
  return written ? 0 : Report("standard output cannot be written", kFailed);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    ovra_host::RemoveTemporaryFilesOnSignals();
    return Run(WordsOf(argc, argv));
  } catch (const std::bad_alloc&) {
    return Report("out of memory", kFailed);
  } catch (const std::exception& error) {
    return Report(error.what(), kFailed);
  }
}
