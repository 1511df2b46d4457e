// SPDX-License-Identifier: MIT
#include "bench.h"
#include "bench_report.h"
#include "commands.h"

namespace ovra_host {

void AddBenchCommand(CLI::App& app, const CommonOptions&) {
  CLI::App* const command =
      app.add_subcommand("bench", "Time the library's operations on this machine");
  const auto json = std::make_shared<bool>(false);
  const auto svg = std::make_shared<bool>(false);
  command->add_flag("--json", *json, "Print them for programs");
  command->add_flag("--svg", *svg, "Print a chart")->excludes("--json");
  command->footer(
      "Every operation works on a picture in memory, on one thread, in turns with the others; "
      "told\n"
      "are the medians of their turns, in megapixels of the larger picture a second, and as a "
      "share of the\n"
      "speed at which the machine copies as many bytes as the pictures before and after have. It\n"
      "takes about ten seconds. OVRA_TIER=plain or sse in the environment asks for fewer vector\n"
      "instructions.\n\n"
      "Example:\n  ovra bench\n  ovra bench --svg >speed.svg");
  command->callback([json, svg] {
    const BenchResults results = RunBench();
    if (*json) {
      PrintBenchJson(results);
    } else if (*svg) {
      PrintBenchSvg(results);
    } else {
      PrintBenchText(results);
    }
  });
}

}  // namespace ovra_host
