// SPDX-License-Identifier: MIT
// Times the library beside its peers, in one process and on one thread.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <fstream>
#include <regex>

#include "compare.h"

namespace {

constexpr compare::AddCases* kFamilies[] = {compare::AddResizeCases, compare::AddTurnCases,
                                            compare::AddTrimmingCases, compare::AddToneCases};

}  // namespace

int main(int argc, char** argv) {
  CLI::App app("OvraBase beside what people use for the same work, on one thread");
  std::string filter = ".";
  std::vector<double> megapixels = {2, 24};
  int turns = 7;
  std::string json;
  std::string svg;
  app.add_option("--filter", filter, "Regular expression on the operations' names");
  app.add_option("--megapixels", megapixels, "Picture sizes")->capture_default_str();
  app.add_option("--turns", turns, "Turns each participant has")->check(CLI::Range(1, 1000));
  app.add_option("--json", json, "Write the figures to this file");
  app.add_option("--svg", svg, "Write a bar chart to this file");
  CLI11_PARSE(app, argc, argv);

  const std::regex wanted(filter);
  std::vector<compare::CaseResult> results;
  for (const double size : megapixels) {
    std::vector<compare::NamedCase> cases;
    for (compare::AddCases* const add : kFamilies) add(&cases, size);
    for (const compare::NamedCase& named : cases) {
      if (!std::regex_search(named.name, wanted)) continue;
      results.push_back(compare::Measure(named.name, named.make(), turns));
      std::fputs(compare::TextReport({results.back()}).c_str(), stderr);
    }
  }
  std::fputs(compare::TextReport(results).c_str(), stdout);
  if (!json.empty()) std::ofstream(json) << compare::JsonReport(results);
  if (!svg.empty()) std::ofstream(svg) << compare::SvgReport(results);
}
