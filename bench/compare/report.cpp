// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <map>

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
  return result.pixels * 1e-3 / milliseconds;
}

std::string FloorText(const CaseResult& result) {
  const Floor& floor = result.floor;
  std::string text;
  if (floor.ratio > 0) text += Format("%.2g", floor.ratio);
  if (floor.ratio_of_plain > 0) text += Format("%.2g plain", floor.ratio_of_plain);
  if (floor.share_of_copy > 0) text += Format("|%.2g copy", floor.share_of_copy);
  return text.empty() || result.MeetsFloor() ? text : text + " !";
}

std::string SvgStart(int width, int height, const char* title) {
  return Format(
             "<svg xmlns='http://www.w3.org/2000/svg' width='%d' height='%d' "
             "font-family='sans-serif' font-size='10'>\n",
             width, height) +
         Format("<rect width='%d' height='%d' fill='#fff'/><text x='8' y='16'>%s</text>\n", width,
                height, title);
}

}  // namespace

std::string TextReport(const std::vector<CaseResult>& results) {
  std::string text = Format("%-58s %8s %8s %8s %8s %-13s %s\n", "operation", "MP/s", "of copy",
                            "of best", "of plain", "floor", "peers: MP/s (PSNR against ours, dB)");
  for (const CaseResult& result : results) {
    text += Format("%-58s %8.1f %8.2f %8.2f %8.2f %-13s", result.name.c_str(),
                   Rate(result, result.timings[0].milliseconds), result.ShareOfCopy(),
                   result.Ratio(Kind::kLibrary), result.Ratio(Kind::kPlainLoop),
                   FloorText(result).c_str());
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
    text += Format("  {\"operation\": \"%s\", \"megapixels\": %.6f, \"copy_ms\": %.4f,\n",
                   result.name.c_str(), result.pixels * 1e-6, result.copy_milliseconds);
    text += "   \"participants\": [";
    for (const Timing& timing : result.timings) {
      text += Format("%s{\"name\": \"%s\", \"ms\": %.6f, \"psnr\": %.1f, \"alike\": %s}",
                     &timing == &result.timings[0] ? "" : ", ", timing.name.c_str(),
                     timing.milliseconds, timing.psnr, timing.alike ? "true" : "false");
    }
    text += Format(
        "],\n   \"ratio\": %.3f, \"ratio_of_plain\": %.3f, \"share_of_copy\": %.3f, "
        "\"floor\": {\"ratio\": %.2f, \"ratio_of_plain\": %.2f, \"share_of_copy\": %.2f, \"met\": "
        "%s}}%s\n",
        result.Ratio(Kind::kLibrary), result.Ratio(Kind::kPlainLoop), result.ShareOfCopy(),
        result.floor.ratio, result.floor.ratio_of_plain, result.floor.share_of_copy,
        result.MeetsFloor() ? "true" : "false", &result == &results.back() ? "" : ",");
  }
  return text + "]\n";
}

// Bars of speed: ours and each peer's, with the copy limit as a line.
std::string SvgReport(const std::vector<CaseResult>& results) {
  constexpr int kLeft = 370;
  constexpr int kWidth = 560;
  constexpr int kBar = 12;
  int y = 30;
  std::string bars;
  for (const CaseResult& result : results) {
    double fastest = result.copy_milliseconds;
    for (const Timing& timing : result.timings) fastest = std::min(fastest, timing.milliseconds);
    const int top = y;
    for (const Timing& timing : result.timings) {
      const char* const color = timing.kind == Kind::kOurs ? "#2463a5"
                                : !timing.alike            ? "#e4e4e4"
                                                           : "#b9c4cf";
      const double length = kWidth * fastest / timing.milliseconds;
      bars += Format("<rect x='%d' y='%d' width='%.1f' height='%d' fill='%s'/>", kLeft, y, length,
                     kBar - 2, color);
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
  return SvgStart(kLeft + kWidth + 260, y + 10,
                  "Speed on one thread; the red line is the copy of as many bytes, pale bars do "
                  "other work") +
         bars + "</svg>\n";
}

std::string GrowthSvg(const std::vector<CaseResult>& results) {
  constexpr int kLeft = 50;
  constexpr int kTop = 40;
  constexpr double kDecadeX = 180;
  constexpr double kDecadeY = 110;
  constexpr double kLeastMegapixels = 0.08;
  constexpr double kMostNanoseconds = 300;
  constexpr int kBottom = 420;
  const auto x_of = [](double megapixels) {
    return kLeft + kDecadeX * std::log10(megapixels / kLeastMegapixels);
  };
  const auto y_of = [](double nanoseconds) {
    return kTop + kDecadeY * std::log10(kMostNanoseconds / nanoseconds);
  };
  std::string lines;
  for (const double megapixels : {0.1, 1.0, 10.0, 100.0}) {
    lines += Format("<path d='M%.1f %dV%d' stroke='#ddd'/><text x='%.1f' y='%d'>%g MP</text>\n",
                    x_of(megapixels), kTop, kBottom, x_of(megapixels), kBottom + 14, megapixels);
  }
  for (const double nanoseconds : {0.1, 1.0, 10.0, 100.0}) {
    lines += Format("<path d='M%d %.1fH%.0f' stroke='#ddd'/><text x='6' y='%.1f'>%g ns</text>\n",
                    kLeft, y_of(nanoseconds), x_of(100), y_of(nanoseconds) + 3, nanoseconds);
  }
  std::map<std::string, std::vector<const CaseResult*>> operations;
  for (const CaseResult& result : results) {
    operations[result.name.substr(0, result.name.rfind('/'))].push_back(&result);
  }
  for (const auto& [name, points] : operations) {
    std::string path;
    double last_y = 0;
    for (const CaseResult* const point : points) {
      last_y = y_of(point->timings[0].milliseconds * 1e6 / point->pixels);
      path += Format("%c%.1f %.1f", path.empty() ? 'M' : 'L', x_of(point->pixels * 1e-6), last_y);
    }
    lines += "<path d='" + path + "' stroke='#2463a5' fill='none'/>";
    lines += Format("<text x='%.0f' y='%.1f'>", x_of(100) + 8, last_y + 3) + name + "</text>\n";
  }
  return SvgStart(
             static_cast<int>(x_of(100)) + 320, kBottom + 24,
             "Time a pixel by the size of the picture: level where time grows with the pixels") +
         lines + "</svg>\n";
}

}  // namespace compare
