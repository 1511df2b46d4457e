// SPDX-License-Identifier: MIT
// Times the library beside its peers, in one process and on one thread.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <fstream>
#include <regex>

#include "compare.h"

namespace {

using compare::CaseResult;

std::vector<CaseResult> MeasureAll(const std::vector<compare::Size>& sizes,
                                   const std::regex& wanted, decltype(compare::Measure)* measure,
                                   int turns) {
  std::vector<CaseResult> results;
  for (const compare::Size& size : sizes) {
    for (const compare::NamedCase& named : compare::Cases(size)) {
      if (!std::regex_search(named.name, wanted)) continue;
      results.push_back(measure(named.name, named.make(), turns));
      std::fprintf(stderr, "%s: %.4f ms\n", named.name.c_str(),
                   results.back().timings[0].milliseconds);
    }
  }
  return results;
}

// The cost of a call: what is done however small the picture is.
void PrintCalls(const std::vector<CaseResult>& results) {
  std::printf("%-58s %12s\n", "operation", "microseconds");
  for (const CaseResult& result : results) {
    std::printf("%-58s %12.2f\n", result.name.c_str(), result.timings[0].milliseconds * 1e3);
  }
}

void PrintGrowth(const std::vector<CaseResult>& results) {
  std::printf("%-58s %12s\n", "operation", "ns a pixel");
  for (const CaseResult& result : results) {
    std::printf("%-58s %12.3f\n", result.name.c_str(),
                result.timings[0].milliseconds * 1e6 / result.pixels);
  }
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app("OvraBase beside what people use for the same work, on one thread");
  std::string filter = ".";
  std::vector<double> megapixels = {2, 24};
  int turns = 5;
  std::string json;
  std::string svg;
  bool calls = false;
  bool growth = false;
  app.add_option("--filter", filter, "Regular expression on the operations' names");
  auto* const sizes_option =
      app.add_option("--megapixels", megapixels, "Picture sizes")->capture_default_str();
  app.add_option("--turns", turns, "Turns each participant has")->check(CLI::Range(1, 1000));
  app.add_option("--json", json, "Write the figures to this file");
  app.add_option("--svg", svg, "Write a chart to this file");
  auto* const calls_option =
      app.add_flag("--calls", calls, "The cost of a call of the library, on 16 x 16 pixels");
  app.add_flag("--growth", growth, "How the library's time grows with the picture")
      ->excludes(calls_option);
  CLI11_PARSE(app, argc, argv);

  if (growth && sizes_option->count() == 0) megapixels = {0.1, 0.3, 1, 3, 10, 30, 100};
  std::vector<compare::Size> sizes;
  for (const double size : megapixels) sizes.push_back(compare::SizeOf(size));
  if (calls) sizes = {{16, 16}};
  const bool ours_alone = calls || growth;
  const std::vector<CaseResult> results = MeasureAll(
      sizes, std::regex(filter), ours_alone ? compare::MeasureOurs : compare::Measure, turns);
  if (calls) {
    PrintCalls(results);
  } else if (growth) {
    PrintGrowth(results);
  } else {
    std::fputs(compare::TextReport(results).c_str(), stdout);
  }
  if (!json.empty()) std::ofstream(json) << compare::JsonReport(results);
  if (!svg.empty()) {
    std::ofstream(svg) << (growth ? compare::GrowthSvg(results) : compare::SvgReport(results));
  }
}
