// SPDX-License-Identifier: MIT
#include "bench_report.h"

#include <algorithm>
#include <cstdio>

namespace ovra_host {
namespace {

constexpr double kPercent = 100;

std::string Heading(const BenchResults& bench) {
  return "OvraBase " + bench.version + ", " + bench.tier + ", " + std::to_string(bench.width) +
         " x " + std::to_string(bench.height) + " pixels, median of " +
         std::to_string(bench.turns) + " turns";
}

}  // namespace

void PrintBenchText(const BenchResults& bench) {
  std::printf("%s\n\n%-29s %-39s %8s %10s\n", Heading(bench).c_str(), "function", "work", "MP/s",
              "of a copy");
  for (const BenchResult& result : bench.results) {
    std::printf("%-29s %-39s %8.1f %8.1f %%\n", result.function.c_str(), result.what.c_str(),
                result.megapixels_per_second, kPercent * result.share_of_copy);
  }
}

void PrintBenchJson(const BenchResults& bench) {
  std::printf(
      "{\n  \"version\": \"%s\",\n  \"tier\": \"%s\",\n  \"width\": %d,\n  \"height\": %d,\n"
      "  \"turns\": %d,\n  \"operations\": [",
      bench.version.c_str(), bench.tier.c_str(), bench.width, bench.height, bench.turns);
  const char* separator = "\n";
  for (const BenchResult& result : bench.results) {
    std::printf(
        "%s    {\"function\": \"%s\", \"work\": \"%s\", \"megapixels_per_second\": %.4g, "
        "\"share_of_copy\": %.4g}",
        separator, result.function.c_str(), result.what.c_str(), result.megapixels_per_second,
        result.share_of_copy);
    separator = ",\n";
  }
  std::printf("\n  ]\n}\n");
}

void PrintBenchSvg(const BenchResults& bench) {
  constexpr int kRow = 22;
  constexpr int kTop = 48;
  constexpr int kLeft = 290;
  constexpr int kLongest = 400;
  constexpr int kWidth = 920;
  const auto copy_of = [](const BenchResult& result) {
    return result.megapixels_per_second / result.share_of_copy;
  };
  double fastest = 1;
  for (const BenchResult& result : bench.results) {
    fastest = std::max({fastest, result.megapixels_per_second, copy_of(result)});
  }
  const int height = kTop + kRow * static_cast<int>(bench.results.size()) + 10;
  std::printf(
      "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"%d\" height=\"%d\" "
      "font-family=\"sans-serif\" font-size=\"12\">\n"
      "<rect width=\"100%%\" height=\"100%%\" fill=\"#fff\"/>\n"
      "<text x=\"10\" y=\"24\" font-size=\"15\">%s</text>\n",
      kWidth, height, Heading(bench).c_str());
  int y = kTop;
  for (const BenchResult& result : bench.results) {
    const double length = kLongest * result.megapixels_per_second / fastest;
    const double copy = kLongest * copy_of(result) / fastest;
    std::printf(
        "<text x=\"%d\" y=\"%d\" text-anchor=\"end\">%s</text>\n"
        "<rect x=\"%d\" y=\"%d\" width=\"%.1f\" height=\"%d\" fill=\"#dde\"><title>a "
        "copy</title></rect>\n"
        "<rect x=\"%d\" y=\"%d\" width=\"%.1f\" height=\"%d\" fill=\"#36c\"><title>%s</title>"
        "</rect>\n<text x=\"%.1f\" y=\"%d\">%.4g MP/s, %.1f %% of a copy</text>\n",
        kLeft - 8, y + 13, result.what.c_str(), kLeft, y, copy, kRow - 5, kLeft, y, length,
        kRow - 5, result.function.c_str(), kLeft + std::max(length, copy) + 6, y + 13,
        result.megapixels_per_second, kPercent * result.share_of_copy);
    y += kRow;
  }
  std::printf("</svg>\n");
}

}  // namespace ovra_host
