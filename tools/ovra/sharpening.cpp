// SPDX-License-Identifier: MIT
#include "sharpening.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "error.h"

namespace ovra_host {
namespace {

constexpr int32_t kNoDifference = OVRA_DIFFERENCE_TABLE_SIZE / 2;

int64_t LargestEntry(const std::vector<int16_t>& table) {
  int64_t largest = 0;
  for (const int16_t entry : table) largest = std::max<int64_t>(largest, std::abs(entry));
  return largest;
}

void RequireInRange(double magnitude, double limit) {
  if (magnitude < limit) return;
  throw Error("--amount and the curves ask for more than the mask can compute");
}

template <class Use>
void ForEachSample(const Image& image, const Use& use) {
  const size_t samples = image.row_bytes() / image.bytes_per_sample();
  for (int32_t y = 0; y < image.height(); ++y) {
    for (size_t i = 0; i < samples; ++i) use(y, i);
  }
}

}  // namespace

double RadiusForSize(int32_t width, int32_t height) {
  constexpr double kLeast = 0.6;
  constexpr double kMost = 2.0;
  constexpr double kDiagonalPerPixel = 5000;
  return std::clamp(std::hypot(width, height) / kDiagonalPerPixel + 0.3, kLeast, kMost);
}

Weights BellWeights(double radius) {
  Weights weights(OVRA_YUSM_MAX_TAPS);
  int32_t count = 0;
  CheckStatus(OvraGaussianWeights(radius, OVRA_YUSM_MAX_TAPS, &count, weights.data()),
              "OvraGaussianWeights");
  weights.resize(static_cast<size_t>(count));
  return weights;
}

DefaultCurves MakeDefaultCurves() {
  DefaultCurves curves;
  curves.levels.resize(OVRA_DEFAULT_LEVEL_POINTS);
  curves.differences.resize(OVRA_DEFAULT_DIFFERENCE_POINTS);
  CheckStatus(OvraDefaultCurves(curves.levels.data(), curves.differences.data()),
              "OvraDefaultCurves");
  return curves;
}

Curve DefaultBandDifferences(double amount) {
  Curve curve = MakeDefaultCurves().differences;
  if (amount <= 1) return {{-1.0, 1.0}, {1.0, 1.0}};
  for (OvraResponsePoint& point : curve) point.y = (1 + (amount - 1) * point.y) / amount;
  return curve;
}

ResponseTables MakeResponseTables(OvraPixelFormatCode format, const Curve& levels,
                                  const Curve& differences) {
  ResponseTables tables;
  tables.level.resize(OVRA_LEVEL_TABLE_SIZE);
  tables.difference.resize(OVRA_DIFFERENCE_TABLE_SIZE);
  CheckStatus(OvraYUsmMakeTable(format, static_cast<int32_t>(levels.size()), levels.data(),
                                static_cast<int32_t>(differences.size()), differences.data(),
                                tables.level.data(), tables.difference.data()),
              "OvraYUsmMakeTable");
  return tables;
}

void CheckMaskStrength(const ResponseTables& tables, double amount, uint32_t depth_bits) {
  const double scale =
      std::ldexp(std::fabs(amount - 1), depth_bits > 10 ? int(depth_bits) - 10 : 0);
  const double level = static_cast<double>(LargestEntry(tables.level));
  // Products have 32 bits; what is left after the shift has 16.
  const double limit = std::ldexp(1.0, depth_bits == 8 ? 31 : 15 + 14);
  for (int32_t k = 0; k < OVRA_DIFFERENCE_TABLE_SIZE; ++k) {
    const double entry = tables.difference[static_cast<size_t>(k)];
    RequireInRange(std::fabs(entry * (k - kNoDifference)) * scale * level, limit);
  }
}

void CheckBandStrength(const ResponseTables& tables, double amount) {
  const double level = static_cast<double>(LargestEntry(tables.level)) * std::fabs(amount) * 1024;
  const double limit = std::ldexp(1.0, 31);
  for (int32_t k = 0; k < OVRA_DIFFERENCE_TABLE_SIZE; ++k) {
    const double strength = std::fabs(tables.difference[static_cast<size_t>(k)] * level);
    RequireInRange(strength, limit);
    RequireInRange(strength / 256 * std::abs(k - kNoDifference), limit);
  }
}

Image WithFourteenBits(const Image& image) {
  Image result(image.width(), image.height(), FileFormat(14, image.channels()));
  ForEachSample(image, [&](int32_t y, size_t i) {
    result.Row16(y)[i] = static_cast<uint16_t>(image.Row16(y)[i] >> 2);
  });
  return result;
}

void AddChange(const Image& before, const Image& after, Image* image) {
  const auto max = static_cast<int32_t>(image->max_sample());
  ForEachSample(*image, [&](int32_t y, size_t i) {
    const int32_t change = (after.Row16(y)[i] - before.Row16(y)[i]) * 4;
    uint16_t& sample = image->Row16(y)[i];
    sample = static_cast<uint16_t>(std::clamp(sample + change, 0, max));
  });
}

}  // namespace ovra_host
