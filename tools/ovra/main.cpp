// SPDX-License-Identifier: MIT
// ovra: the library's operations on picture files. An ordinary host: it calls the library through
// its public C interface only.
#include <algorithm>
#include <cstdio>
#include <exception>
#include <string>

#include "commands.h"
#include "ovra/version.h"

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

void AddCommonOptions(CLI::App& app, ovra_host::CommonOptions& common) {
  app.add_flag("--time", common.show_time, "Print the milliseconds of each library call");
  app.add_option("--quality", common.write.jpeg_quality, "Quality of JPEG output")
      ->check(CLI::Range(1, 100))
      ->type_name("1..100")
      ->capture_default_str();
}

void AddCommands(CLI::App& app, const ovra_host::CommonOptions& common) {
  ovra_host::AddInfoCommand(app, common);
  ovra_host::AddRotateCommand(app, common);
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
}

int Run(int argc, char** argv) {
  CLI::App app("Turns, places, resizes, sharpens and recolours pictures: PNG, JPEG, TIFF and BMP.",
               "ovra");
  ovra_host::CommonOptions common;
  app.require_subcommand(1);
  app.fallthrough();  // common options may also follow the subcommand
  app.set_version_flag("--version", VersionText());
  AddCommonOptions(app, common);
  AddCommands(app, common);
  app.footer("Every command has its own --help, with an example.");
  try {
    app.parse(argc, argv);
  } catch (const CLI::Success& request) {  // --help, --version
    return app.exit(request);
  } catch (const CLI::ParseError& error) {
    return Report(std::string(error.what()) + "; see --help", kUsageError);
  }
  return std::fflush(stdout) == 0 ? 0 : Report("standard output cannot be written", kFailed);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return Run(argc, argv);
  } catch (const std::bad_alloc&) {
    return Report("out of memory", kFailed);
  } catch (const std::exception& error) {
    return Report(error.what(), kFailed);
  }
}
