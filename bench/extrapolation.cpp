// SPDX-License-Identifier: MIT
#include "geometry/extrapolation/extrapolation.h"

#include <string>

#include "bench_support.h"
#include "pixel_kinds.h"

namespace ovra_bench {
namespace {

// A source of three quarters of the width and height in the middle of the canvas.
void RegisterKind(const PixelKind& kind) {
  constexpr int32_t kSourceWidth = kWidth * 3 / 4;
  constexpr int32_t kSourceHeight = kHeight * 3 / 4;
  constexpr double kPixels = double{kWidth} * kHeight;
  const size_t bytes = kind.Bytes() * kWidth * kHeight;
  const size_t source_bytes = kind.Bytes() * kSourceWidth * kSourceHeight;
  RegisterTiers(std::string("extrapolation/") + kind.name, kPixels, [=](ovra::KernelTier tier) {
    const uint16_t fill[] = {10, 20, 30, 40};
    ovra::ExtrapolateImage(Source(bytes), kSourceWidth, kSourceHeight, Destination(bytes), kWidth,
                           kHeight, kind.Format(), (kWidth - kSourceWidth) / 2,
                           (kHeight - kSourceHeight) / 2, fill, tier);
  });
  RegisterMemcpy(std::string("extrapolation/") + kind.name, source_bytes, bytes, kPixels);
}

}  // namespace

void RegisterExtrapolation() {
  for (const PixelKind& kind : kPixelKinds) RegisterKind(kind);
}

}  // namespace ovra_bench
