// SPDX-License-Identifier: MIT
#include <string>
#include <vector>

#include "bench_support.h"
#include "filter/yusm_double/yusm_double.h"

namespace ovra_bench {
namespace {

void RegisterMask(const std::string& name, int32_t width, int32_t height) {
  const double pixels = double{1} * width * height;
  const size_t bytes = size_t{3} * static_cast<size_t>(width) * static_cast<size_t>(height);
  RegisterTiers("yusm_double/" + name, pixels, [=](ovra::KernelTier tier) {
    const std::vector<int32_t> coarse = {1, 3, 8, 15, 23, 28, 23, 15, 8, 3, 1};
    const std::vector<int32_t> fine = {32, 64, 32};
    const std::vector<int16_t> level(OVRA_LEVEL_TABLE_SIZE, 128);
    const std::vector<int16_t> difference(OVRA_DIFFERENCE_TABLE_SIZE, 128);
    const auto band = [&](const std::vector<int32_t>& weights, float amount) {
      return ovra::YUsmBand{static_cast<uint32_t>(weights.size()), weights.data(), amount,
                            level.data(), difference.data()};
    };
    constexpr OvraPixelFormatCode kRgb8 =
        OvraMakePixelFormat(8, 3, OVRA_MODEL_RGB, 1, OVRA_ROWS_TOP_DOWN);
    ovra::RunYUsmDoubleSingleStep(Source(bytes), Destination(bytes), static_cast<uint32_t>(width),
                                  static_cast<uint32_t>(height), kRgb8,
                                  {band(coarse, 1.5F), band(fine, 2.0F)}, tier);
  });
  RegisterMemcpy("yusm_double/" + name, bytes, bytes, pixels);
}

}  // namespace

void RegisterYUsmDouble() {
  RegisterMask("3MP", 2048, 1536);
  RegisterMask("24MP", kWidth, kHeight);
}

}  // namespace ovra_bench
