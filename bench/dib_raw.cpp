// SPDX-License-Identifier: MIT
#include "core/dib_raw/dib_raw.h"
#include "bench_support.h"

namespace ovra_bench {

void RegisterDibRaw() {
  constexpr double kPixels = double{kWidth} * kHeight;
  constexpr size_t kBytes = size_t{3} * kWidth * kHeight;
  RegisterTiers("dib_raw/dib2raw", kPixels, [](ovra::KernelTier tier) {
    ovra::Dib2Raw(Source(kBytes), Destination(kBytes), kWidth, kHeight, tier);
  });
  RegisterTiers("dib_raw/raw2dib", kPixels, [](ovra::KernelTier tier) {
    ovra::Raw2Dib(Source(kBytes), Destination(kBytes), kWidth, kHeight, tier);
  });
  RegisterMemcpy("dib_raw", kBytes, kBytes, kPixels);
}

}  // namespace ovra_bench
