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
                                   const std::regex& wanted, bool ours_alone, int turns) {
  const auto measure = ours_alone ? compare::MeasureOurs : compare::Measure;
  std::vector<CaseResult> results;
  for (const compare::Size& size : sizes) {
    for (const compare::NamedCase& named : compare::Cases(size, ours_alone)) {
      if (!std::regex_search(named.name, wanted)) continue;
      try {
        results.push_back(measure(named.name, named.make(), turns));
        std::fprintf(stderr, "%s: %.4f ms\n", named.name.c_str(),
                     results.back().timings[0].milliseconds);
      } catch (const compare::Refused& refused) {
        std::fprintf(stderr, "%s: %s\n", named.name.c_str(), refused.what());
      }
    }
  }
  return results;
}

// A picture as others are, widths of a power of two and beside it, single rows, and narrow pictures:
// where lanes, registers and blocks are not full.
const std::vector<compare::Size> kShapes = {{1000, 1000}, {4096, 256}, {8192, 128}, {65536, 1},
                                            {1, 65536},   {3, 21845},  {8, 8192},   {16, 4096},
                                            {33, 1985},   {64, 1024}};

// The cost of a call: what is done however small the picture is.
void PrintCalls(const std::vector<CaseResult>& results) {
  std::printf("%-58s %12s\n", "operation", "microseconds");
  for (const CaseResult& result : results) {
    std::printf("%-58s %12.2f\n", result.name.c_str(), result.timings[0].milliseconds * 1e3);
  }
}

void PrintTimeByPixel(const std::vector<CaseResult>& results) {
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
  bool shapes = false;
  app.add_option("--filter", filter, "Regular expression on the operations' names");
  auto* const sizes_option =
      app.add_option("--megapixels", megapixels, "Picture sizes")->capture_default_str();
  app.add_option("--turns", turns, "Turns each participant has")->check(CLI::Range(1, 1000));
  app.add_option("--json", json, "Write the figures to this file");
  app.add_option("--svg", svg, "Write a chart to this file");
  auto* const calls_option =
      app.add_flag("--calls", calls, "The cost of a call of the library, on 16 x 16 pixels");
  auto* const growth_option =
      app.add_flag("--growth", growth, "How the library's time grows with the picture")
          ->excludes(calls_option);
  app.add_flag("--shapes", shapes, "The library's time for narrow pictures and single rows")
      ->excludes(calls_option)
      ->excludes(growth_option);
  CLI11_PARSE(app, argc, argv);

  if (growth && sizes_option->count() == 0) megapixels = {0.1, 0.3, 1, 3, 10, 30, 100};
  std::vector<compare::Size> sizes;
  for (const double size : megapixels) sizes.push_back(compare::SizeOf(size));
  if (calls) sizes = {{16, 16}};
  if (shapes) sizes = kShapes;
  const std::vector<CaseResult> results =
      MeasureAll(sizes, std::regex(filter), calls || growth || shapes, turns);
  if (calls) {
    PrintCalls(results);
  } else if (growth || shapes) {
    PrintTimeByPixel(results);
  } else {
    std::fputs(compare::TextReport(results).c_str(), stdout);
  }
  if (!json.empty()) std::ofstream(json) << compare::JsonReport(results);
  if (!svg.empty()) {
    std::ofstream(svg) << (growth ? compare::GrowthSvg(results) : compare::SvgReport(results));
  }
}
