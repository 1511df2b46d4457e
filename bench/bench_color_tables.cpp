// SPDX-License-Identifier: MIT
// Per-channel tables and colour matrices.
#include <string>

#include "bench_support.h"
#include "color/channel_tables.h"
#include "color/color_matrix.h"

namespace ovra_bench {
namespace {

constexpr double kPixels = double{kWidth} * kHeight;

struct DepthPair {
  uint32_t input;
  uint32_t output;

  ovra::FormatPair Formats() const {
    return {OvraMakePixelFormat(input, 3, OVRA_MODEL_RGB, 1, OVRA_ROWS_TOP_DOWN),
            OvraMakePixelFormat(output, 3, OVRA_MODEL_RGB, 1, OVRA_ROWS_TOP_DOWN)};
  }
  size_t InputBytes() const { return size_t{3} * kWidth * kHeight * (input > 8 ? 2 : 1); }
  size_t OutputBytes() const { return size_t{3} * kWidth * kHeight * (output > 8 ? 2 : 1); }
  std::string Name() const { return std::to_string(input) + "to" + std::to_string(output); }
  ovra::ImagePair Images() const {
    return {Source(InputBytes()), Destination(OutputBytes()), kWidth, kHeight};
  }
};

// Noise as input: every look-up goes elsewhere, which photographs do not ask for.
void RegisterTables(const DepthPair& depths) {
  const std::string name = "color_tables/" + depths.Name();
  const double max_input = (1U << depths.input) - 1;
  const double max_output = (1U << depths.output) - 1;
  RegisterTiers(name, kPixels, [=](ovra::KernelTier tier) {
    ovra::ChannelPolynomial inverted = {};
    inverted.c0 = max_output;
    inverted.c1 = -max_output / max_input;
    const ovra::ChannelPolynomial coefficients[] = {inverted, inverted, inverted};
    ovra::ConvertByChannelTablesOnce(depths.Images(), depths.Formats(), coefficients, tier);
  });
  RegisterMemcpy(name, depths.InputBytes(), depths.OutputBytes(), kPixels);
}

void RegisterMatrix(const DepthPair& depths) {
  const double scale = static_cast<double>((1U << depths.output) - 1) /
                       static_cast<double>((1U << depths.input) - 1);
  const auto add = [&](const std::string& variant, double gain, double second_order) {
    RegisterTiers(
        "color_matrix/" + variant + "/" + depths.Name(), kPixels, [=](ovra::KernelTier tier) {
          ovra::ColorMatrix matrix = {};
          for (auto& row : matrix.rows) {
            for (int j = 0; j < 3; ++j) row[j] = gain * scale / 3;
            row[4] = second_order;
          }
          ovra::ConvertByColorMatrixOnce(depths.Images(), depths.Formats(), &matrix, tier);
        });
  };
  add("fixed", 1, 0);
  add("fixed_large", 300, 0);  // weights that do not fit 16 bits
  add("double", 1, 1e-6);
  RegisterMemcpy("color_matrix/" + depths.Name(), depths.InputBytes(), depths.OutputBytes(),
                 kPixels);
}

}  // namespace

void RegisterColorTables() {
  for (const DepthPair& depths : {DepthPair{8, 8}, {8, 16}, {16, 8}, {16, 16}}) {
    RegisterTables(depths);
  }
  for (const DepthPair& depths : {DepthPair{8, 8}, {8, 16}, {16, 8}, {16, 16}}) {
    RegisterMatrix(depths);
  }
}

}  // namespace ovra_bench
