// SPDX-License-Identifier: MIT
#include <string>

#include "bench_support.h"
#include "filter/soft_focus/soft_focus.h"

namespace ovra_bench {
namespace {

constexpr double kPixels = double{kWidth} * kHeight;
constexpr size_t kBytes = size_t{3} * kWidth * kHeight;

}  // namespace

void RegisterSoftFocus() {
  for (const int32_t radius : {20, 100, 500}) {
    for (const bool in_place : {false, true}) {
      const std::string name =
          "soft_focus/radius" + std::to_string(radius) + (in_place ? "/in_place" : "");
      RegisterTiers(name, kPixels, [radius, in_place](ovra::KernelTier tier) {
        ovra::SoftFocusParams params = {};
        params.radius = radius;
        params.decay_base = 0.1;
        params.decay_exponent = 1;
        params.mix = 0.5;
        uint8_t* const destination = Destination(kBytes);
        ovra::SoftFocus(in_place ? destination : Source(kBytes), destination, kWidth, kHeight,
                        &params, tier);
      });
    }
  }
  RegisterMemcpy("soft_focus", kBytes, kBytes, kPixels);
}

}  // namespace ovra_bench
