// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstdarg>
#include <cstdio>

#include "compare.h"

namespace compare {
namespace {

__attribute__((format(printf, 1, 2))) std::string Format(const char* format, ...) {
  char text[512];
  va_list arguments;
  va_start(arguments, format);
  vsnprintf(text, sizeof text, format, arguments);
  va_end(arguments);
  return text;
}

double Rate(const CaseResult& result, double milliseconds) {
  return result.megapixels / milliseconds * 1e3;
}

}  // namespace

std::string TextReport(const std::vector<CaseResult>& results) {
  std::string text = Format("%-46s %9s %9s %7s  %s\n", "operation", "MP/s", "of copy", "ratio",
                            "peers: MP/s (PSNR against ours, dB)");
  for (const CaseResult& result : results) {
    const double ours = result.timings[0].milliseconds;
    text += Format("%-46s %9.1f %9.2f %7.2f ", result.name.c_str(), Rate(result, ours),
                   result.copy_milliseconds / ours, result.Ratio());
    for (size_t i = 1; i < result.timings.size(); ++i) {
      const Timing& peer = result.timings[i];
      text += Format(" %s %.1f (%.0f%s)", peer.name.c_str(), Rate(result, peer.milliseconds),
                     peer.psnr, peer.alike ? "" : ", other work");
    }
    text += "\n";
  }
  return text;
}

std::string JsonReport(const std::vector<CaseResult>& results) {
  std::string text = "[\n";
  for (const CaseResult& result : results) {
    text += Format("  {\"operation\": \"%s\", \"megapixels\": %.3f, \"copy_ms\": %.4f, \"ms\": {",
                   result.name.c_str(), result.megapixels, result.copy_milliseconds);
    for (const Timing& timing : result.timings) {
      text += Format("%s\"%s\": %.4f", &timing == &result.timings[0] ? "" : ", ",
                     timing.name.c_str(), timing.milliseconds);
    }
    text +=
        Format("}, \"ratio\": %.3f}%s\n", result.Ratio(), &result == &results.back() ? "" : ",");
  }
  return text + "]\n";
}

// Bars of speed: ours and each peer's, with the copy limit as a line.
std::string SvgReport(const std::vector<CaseResult>& results) {
  constexpr int kLeft = 330;
  constexpr int kWidth = 560;
  constexpr int kBar = 12;
  int y = 30;
  std::string bars;
  for (const CaseResult& result : results) {
    double fastest = result.copy_milliseconds;
    for (const Timing& timing : result.timings) fastest = std::min(fastest, timing.milliseconds);
    const int top = y;
    for (const Timing& timing : result.timings) {
      const bool ours = &timing == &result.timings[0];
      const double length = kWidth * fastest / timing.milliseconds;
      bars += Format("<rect x='%d' y='%d' width='%.1f' height='%d' fill='%s'/>", kLeft, y, length,
                     kBar - 2, ours ? "#2463a5" : "#b9c4cf");
      bars += Format("<text x='%.1f' y='%d'>%s %.0f MP/s</text>\n", kLeft + length + 4, y + 9,
                     timing.name.c_str(), Rate(result, timing.milliseconds));
      y += kBar;
    }
    const double limit = kLeft + kWidth * fastest / result.copy_milliseconds;
    bars += Format("<path d='M%.1f %dV%d' stroke='#c33' fill='none'/>", limit, top, y);
    bars += Format("<text x='%d' y='%d' text-anchor='end'>%s</text>\n", kLeft - 6, top + 9,
                   result.name.c_str());
    y += 8;
  }
  return Format(
             "<svg xmlns='http://www.w3.org/2000/svg' width='%d' height='%d' "
             "font-family='sans-serif' font-size='10'>\n",
             kLeft + kWidth + 160, y + 10) +
         "<text x='8' y='16'>Speed on one thread; the red line is the copy of as many "
         "bytes</text>\n" +
         bars + "</svg>\n";
}

}  // namespace compare
