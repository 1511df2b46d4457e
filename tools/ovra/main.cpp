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
#include "help_text.h"
#include "manual.h"
#include "ovra/version.h"
#include "temporary_files.h"
#include "usage.h"

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

void PrintTime(const std::string& function, double milliseconds) {
  std::printf("%s %.3f ms\n", function.c_str(), milliseconds);
}

std::string CheckFormatName(const std::string& format) {
  try {
    ovra_host::CheckOutput("picture." + format);
  } catch (const ovra_host::Error& error) {
    return error.what();
  }
  return "";
}

void AddCommonOptions(CLI::App& app, ovra_host::CommonOptions& common) {
  app.add_flag_callback(
      "--time", [&common] { common.on_time = PrintTime; },
      "Print the milliseconds of each library call");
  AddWriteOptions(app, common.write);
  AddOpenOptions(app, common.read.open);
  app.add_option_function<std::string>(
         "--format",
         [&common](const std::string& format) { common.write.stream_format = "." + format; },
         "Format of a picture that goes to standard output, as its extension [png]")
      ->check(CLI::Validator(CheckFormatName, ""))
      ->type_name("png|jpg|...");
  app.add_flag_callback(
      "--force", [&common] { common.write.overwrite = ovra_host::Overwrite::kReadOnlyToo; },
      "Replace files also where they are read-only");
  app.add_flag("--strip", common.read.strip,
               "Leave out all that the picture carries but its colour profile");
  app.add_flag("--to-srgb", common.read.to_srgb, "Convert colors by the picture's profile to sRGB");
  app.add_flag_callback(
      "--no-auto-orient", [&common] { common.read.auto_orient = false; },
      "Keep pixels and orientation tag as they are, instead of turning the picture upright");
}

// "help COMMAND" is another way to say "COMMAND --help".
std::vector<std::string> WordsOf(int argc, char** argv) {
  std::vector<std::string> words(argv + std::min(argc, 1), argv + argc);
  if (words.empty() || words[0] != "help") return words;
  words.erase(words.begin());
  words.push_back("--help");
  return words;
}

// Answers the exit status.
int Run(const std::vector<std::string>& words) {
  CLI::App app(
      "Turns, places, resizes, sharpens and recolours pictures: PNG, JPEG, TIFF, BMP, WebP, AVIF.",
      "ovra");
  ovra_host::CommonOptions common;
  app.formatter(std::make_shared<ovra_host::HelpFormatter>());
  app.require_subcommand(1);
  app.fallthrough();  // common options may also follow the subcommand
  app.set_version_flag("--version", VersionText());
  AddCommonOptions(app, common);
  ovra_host::AddPictureCommands(app, common);
  ovra_host::AddOtherCommands(app, common);
  app.footer(
      "Every command has its own --help, with an example; ovra help COMMAND shows it too.\n"
      "What a photograph carries (colour profile, EXIF, XMP, IPTC, resolution, comment) goes into\n"
      "the result as far as its format can hold it.");
  int status = 0;
  if (words.size() == 2 && words[0] == "--write-man") {
    ovra_host::WriteManPage(app, VersionText(), words[1]);
    return 0;
  }
  if (words.size() == 2 && words[0] == "--write-completion") {
    ovra_host::WriteCompletion(app, words[1]);
    return 0;
  }
  try {
    app.parse(std::vector<std::string>(words.rbegin(), words.rend()));
  } catch (const CLI::Success& request) {  // --help, --version
    const std::string unknown = ovra_host::UnknownCommand(app, words);
    if (!unknown.empty()) return Report(unknown, kUsageError);
    app.exit(request);
  } catch (const CLI::ParseError& error) {
    return Report(ovra_host::UsageMessage(app, words, error), kUsageError);
  } catch (const ovra_host::Exit& exit) {
    status = exit.code;
  }
  std::cout.flush();
  const bool written = std::cout.good() && std::fflush(stdout) == 0 && std::ferror(stdout) == 0;
  return written ? status : Report("standard output cannot be written", kFailed);
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
