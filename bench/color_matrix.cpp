// SPDX-License-Identifier: MIT
#include "color/color_matrix/color_matrix.h"

#include "depth_pairs.h"

namespace ovra_bench {
namespace {

// Which arithmetic the weights ask for.
struct Weights {
  const char* name;
  double gain;
  double second_order;

  ovra::ColorMatrix For(const DepthPair& depths) const {
    const double scale = static_cast<double>((1U << depths.output) - 1) /
                         static_cast<double>((1U << depths.input) - 1);
    ovra::ColorMatrix matrix = {};
    for (auto& row : matrix.rows) {
      for (int j = 0; j < 3; ++j) row[j] = gain * scale / 3;
      row[4] = second_order;
    }
    return matrix;
  }
};

constexpr Weights kWeights[] = {
    {"fixed", 1, 0},
    {"fixed_large", 300, 0},  // weights that do not fit 16 bits
    {"double", 1, 1e-6},
};

}  // namespace

void RegisterColorMatrix() {
  constexpr double kPixels = double{kWidth} * kHeight;
  for (const DepthPair& depths : kDepthPairs) {
    for (const Weights& weights : kWeights) {
      RegisterTiers(std::string("color_matrix/") + weights.name + "/" + depths.Name(), kPixels,
                    [=](ovra::KernelTier tier) {
                      const ovra::ColorMatrix matrix = weights.For(depths);
                      ovra::ConvertByColorMatrixOnce(depths.Images(), depths.Formats(), &matrix,
                                                     tier);
                    });
    }
    RegisterMemcpy("color_matrix/" + depths.Name(), depths.InputBytes(), depths.OutputBytes(),
                   kPixels);
  }
  for (const Weights& weights : kWeights) {
    ForNarrowWidths(std::string("color_matrix/") + weights.name, [&](const std::string& name,
                                                                     int32_t width, double pixels) {
      RegisterTiers(name, pixels, [=](ovra::KernelTier tier) {
        const ovra::ColorMatrix matrix = weights.For({8, 8});
        ovra::ConvertByColorMatrixOnce(NarrowImages(width), NarrowFormats(width), &matrix, tier);
      });
    });
  }
}

}  // namespace ovra_bench
