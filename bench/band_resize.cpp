// SPDX-License-Identifier: MIT
#include "resample/band_resize/band_resize.h"

#include <algorithm>
#include <string>

#include "bench_support.h"
#include "ovra/resample.h"
#include "pixel_kinds.h"
#include "resample/resize/resize.h"

namespace ovra_bench {
namespace {

void RunBands(const PixelKind& kind, const ovra::ResizeShape& shape, int32_t band_rows,
              ovra::KernelTier tier) {
  const size_t stride = kind.Bytes() * kWidth;
  const size_t to_stride = kind.Bytes() * static_cast<size_t>(shape.destination.width);
  const uint8_t* const source = Source(stride * kHeight);
  uint8_t* const destination = Destination(stride * kHeight);
  OvraBandResizeContext* context = nullptr;
  if (ovra::BandResizeInit(shape, kind.Format(), tier, &context) != OVRA_OK) return;
  int32_t out = 0;
  for (int32_t first = 0; first < kHeight;) {
    int32_t taken = 0;
    int32_t written = 0;
    OvraBandResize(source + stride * static_cast<size_t>(first), kWidth,
                   std::min(band_rows, kHeight - first),
                   destination + to_stride * static_cast<size_t>(out), shape.destination.width,
                   shape.destination.height - out, kind.Format(), first, &taken, &written, context);
    first += taken;
    out += written;
  }
  OvraBandResize_Free(&context);
}

// The whole picture in one call, and in bands of so many rows.
void RegisterKind(const PixelKind& kind, int32_t percent) {
  const ovra::ResizeShape shape = {{kWidth, kHeight},
                                   {kWidth * percent / 100, kHeight * percent / 100},
                                   {0, 0, kWidth, kHeight}};
  const size_t bytes = kind.Bytes() * kWidth * kHeight;
  const std::string name =
      std::string("band_resize/") + kind.name + "/" + std::to_string(percent) + "_percent";
  constexpr double kPixels = double{kWidth} * kHeight;
  RegisterTiers(name + "/whole", kPixels, [=](ovra::KernelTier tier) {
    ovra::ResizeImage({Source(bytes), Destination(bytes), kind.Format(), shape}, tier);
  });
  for (const int32_t rows : {1, 16, 256}) {
    RegisterTiers(name + "/" + std::to_string(rows) + "_rows", kPixels,
                  [=](ovra::KernelTier tier) { RunBands(kind, shape, rows, tier); });
  }
}

}  // namespace

void RegisterBandResize() {
  for (const PixelKind& kind : {kPixelKinds[0], kPixelKinds[1], kPixelKinds[4]}) {
    for (const int32_t percent : {50, 25, 5}) RegisterKind(kind, percent);
  }
}

}  // namespace ovra_bench
