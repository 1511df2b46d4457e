// SPDX-License-Identifier: MIT
#include <cmath>
#include <string>

#include "bench_support.h"
#include "resample/resize/resize.h"

namespace ovra_bench {
namespace {

struct Format {
  const char* name;
  ovra::PixelFormatCode code;
  int32_t pixel_bytes;
};

constexpr Format kFormats[] = {{"8bit_1ch", 0x0000, 1},
                               {"8bit_3ch", 0x0120, 3},
                               {"8bit_4ch", 0x1030, 4},
                               {"16bit_3ch", 0x0128, 6}};

struct Ratio {
  const char* name;
  double value;
};

constexpr Ratio kRatios[] = {{"2.0", 2.0}, {"0.75", 0.75}, {"0.5", 0.5}, {"0.35", 0.35}};

size_t Bytes(ovra::ImageSize size, const Format& format) {
  return static_cast<size_t>(size.width) * static_cast<size_t>(size.height * format.pixel_bytes);
}

// The larger one of the two pictures has 24 megapixels.
void RegisterResizeOf(const Format& format, const Ratio& ratio) {
  const double scale = ratio.value < 1.0 ? ratio.value : 1.0 / ratio.value;
  const ovra::ImageSize large = {kWidth, kHeight};
  const ovra::ImageSize small = {static_cast<int32_t>(std::lround(kWidth * scale)),
                                 static_cast<int32_t>(std::lround(kHeight * scale))};
  const ovra::ImageSize source = ratio.value < 1.0 ? large : small;
  const ovra::ImageSize destination = ratio.value < 1.0 ? small : large;
  const std::string name = std::string("resize/") + ratio.name + "/" + format.name;
  constexpr double kPixels = double{kWidth} * kHeight;
  RegisterTiers(name, kPixels, [=](ovra::KernelTier tier) {
    const ovra::ResizeImages images = {Source(Bytes(source, format)),
                                       Destination(Bytes(destination, format)),
                                       format.code,
                                       {source, destination, {0, 0, source.width, source.height}}};
    ovra::ResizeImageVar(images, {ratio.value, ratio.value}, tier);
  });
  RegisterMemcpy(name, Bytes(source, format), Bytes(destination, format), kPixels);
}

}  // namespace

void RegisterResize() {
  for (const Ratio& ratio : kRatios) {
    for (const Format& format : kFormats) RegisterResizeOf(format, ratio);
  }
}

}  // namespace ovra_bench
