// SPDX-License-Identifier: MIT
#include <string>
#include <vector>

#include "bench_support.h"
#include "resample/kernel_table.h"
#include "resample/small_resize/small_resize.h"

namespace ovra_bench {

void RegisterSmallResize() {
  struct Format {
    const char* name;
    uint32_t depth_bits;
    uint32_t channels;
    OvraColorModel model;
  };
  const Format formats[] = {{"8x1", 8, 1, OVRA_MODEL_GREY},
                            {"8x3", 8, 3, OVRA_MODEL_RGB},
                            {"8x4", 8, 4, OVRA_MODEL_RGBA},
                            {"16x3", 16, 3, OVRA_MODEL_RGB}};
  constexpr double kPixels = double{kWidth} * kHeight;
  for (const Format& f : formats) {
    const OvraPixelFormatCode code =
        OvraMakePixelFormat(f.depth_bits, f.channels, f.model, 1, OVRA_ROWS_TOP_DOWN);
    const size_t bytes = size_t{kWidth} * kHeight * f.channels * (f.depth_bits > 8 ? 2 : 1);
    for (const int32_t divisor : {4, 10, 40}) {
      const std::string name =
          "small_resize/" + std::string(f.name) + "/by_" + std::to_string(divisor);
      RegisterTiers(name, kPixels, [=](ovra::KernelTier tier) {
        std::vector<float> table(OVRA_KERNEL_TABLE_ENTRIES);
        ovra::CalcCubicSpline(ovra::kResizeKernelParameter, table.data());
        ovra::SmallResizeImage(
            {Source(bytes),
             Destination(bytes),
             code,
             {{kWidth, kHeight}, {kWidth / divisor, kHeight / divisor}, {0, 0, kWidth, kHeight}}},
            table.data(), tier);
      });
    }
    RegisterMemcpy("small_resize/" + std::string(f.name), bytes, 0, kPixels);
  }
}

}  // namespace ovra_bench
