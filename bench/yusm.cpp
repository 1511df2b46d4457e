// SPDX-License-Identifier: MIT
#include <string>
#include <vector>

#include "bench_support.h"
#include "filter/yusm/yusm.h"

namespace ovra_bench {
namespace {

constexpr double kPixels = double{kWidth} * kHeight;

// Nearly equal weights, or the sets that have kernels of their own.
std::vector<int32_t> Weights(int32_t taps) {
  if (taps == 3) return {32, 64, 32};
  if (taps == 5) return {8, 32, 48, 32, 8};
  std::vector<int32_t> weights(static_cast<size_t>(taps), 128 / taps);
  weights[static_cast<size_t>(taps / 2)] += 128 % taps;
  return weights;
}

void RegisterMask(int32_t taps, uint32_t depth_bits) {
  const std::string name =
      "yusm/" + std::to_string(depth_bits) + "bit_rgb/" + std::to_string(taps) + "taps";
  const size_t bytes = size_t{3} * kWidth * kHeight * (depth_bits == 8 ? 1 : 2);
  RegisterTiers(name, kPixels, [=](ovra::KernelTier tier) {
    const OvraPixelFormatCode format =
        OvraMakePixelFormat(depth_bits, 3, OVRA_MODEL_RGB, 1, OVRA_ROWS_TOP_DOWN);
    const std::vector<int32_t> weights = Weights(taps);
    const std::vector<int16_t> level(OVRA_LEVEL_TABLE_SIZE, 128);
    const std::vector<int16_t> difference(OVRA_DIFFERENCE_TABLE_SIZE, 128);
    ovra::RunYUsmSingleStep(Source(bytes), Destination(bytes), kWidth, kHeight, format,
                            {taps, weights.data(), 1.5F, level.data(), difference.data()}, tier);
  });
}

}  // namespace

void RegisterYUsm() {
  for (const uint32_t depth_bits : {8U, 12U}) {
    for (const int32_t taps : {3, 5, 7, 15}) RegisterMask(taps, depth_bits);
    const size_t bytes = size_t{3} * kWidth * kHeight * (depth_bits == 8 ? 1 : 2);
    RegisterMemcpy("yusm/" + std::to_string(depth_bits) + "bit_rgb", bytes, bytes, kPixels);
  }
}

}  // namespace ovra_bench
