// SPDX-License-Identifier: MIT
#include "resample/resize_rotate/resize_rotate.h"

#include <string>

#include "bench_support.h"
#include "ovra/geometry.h"
#include "pixel_kinds.h"
#include "resample/resize/resize.h"

namespace ovra_bench {
namespace {

// To half the size. The resize alone, and with turns and mirrors.
void RegisterKind(const PixelKind& kind) {
  constexpr int32_t kToWidth = kWidth / 2;
  constexpr int32_t kToHeight = kHeight / 2;
  const size_t bytes = kind.Bytes() * kWidth * kHeight;
  struct Mode {
    const char* name;
    int32_t mode;
  };
  const std::string name = std::string("resize_rotate/") + kind.name;
  const auto images = [=](bool is_turned) {
    const ovra::ImageSize upright = {kToWidth, kToHeight};
    const ovra::ImageSize turned = {kToHeight, kToWidth};
    return ovra::ResizeImages{
        Source(bytes),
        Destination(bytes),
        kind.Format(),
        {{kWidth, kHeight}, is_turned ? turned : upright, {0, 0, kWidth, kHeight}}};
  };
  RegisterTiers(name + "/resize_alone", double{kWidth} * kHeight,
                [=](ovra::KernelTier tier) { ovra::ResizeImage(images(false), tier); });
  for (const Mode& mode : {Mode{"none", OVRA_ROTATE_NONE}, Mode{"half", OVRA_ROTATE_HALF},
                           Mode{"quarter_left", OVRA_ROTATE_QUARTER_LEFT},
                           Mode{"quarter_right", OVRA_ROTATE_QUARTER_RIGHT}}) {
    RegisterTiers(name + "/" + mode.name, double{kWidth} * kHeight, [=](ovra::KernelTier tier) {
      ovra::ResizeRotateImage(images(mode.mode % 2 != 0), mode.mode, tier);
    });
  }
}

}  // namespace

void RegisterResizeRotate() {
  for (const PixelKind& kind : kPixelKinds) RegisterKind(kind);
}

}  // namespace ovra_bench
