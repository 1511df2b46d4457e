// SPDX-License-Identifier: MIT
#include "geometry/rotation/rotation.h"

#include <string>

#include "bench_support.h"
#include "ovra/geometry.h"
#include "pixel_kinds.h"

namespace ovra_bench {
namespace {

struct Mode {
  const char* name;
  int32_t mode;
};

constexpr Mode kModes[] = {
    {"quarter_left", OVRA_ROTATE_QUARTER_LEFT},
    {"half", OVRA_ROTATE_HALF},
    {"quarter_right", OVRA_ROTATE_QUARTER_RIGHT},
    {"mirror", OVRA_ROTATE_MIRROR},
    {"flip", OVRA_ROTATE_FLIP},
};

void RegisterKind(const PixelKind& kind, int32_t width, int32_t height, const std::string& suffix) {
  const double pixels = double{1} * width * height;
  const size_t bytes = kind.Bytes() * static_cast<size_t>(width) * static_cast<size_t>(height);
  for (const Mode& mode : kModes) {
    RegisterTiers(std::string("rotation/") + mode.name + "/" + kind.name + suffix, pixels,
                  [=](ovra::KernelTier tier) {
                    ovra::RotateImage(Source(bytes), Destination(bytes), width, height,
                                      kind.Format(), mode.mode, tier);
                  });
  }
  RegisterMemcpy(std::string("rotation/") + kind.name + suffix, bytes, bytes, pixels);
}

}  // namespace

void RegisterRotation() {
  for (const PixelKind& kind : kPixelKinds) RegisterKind(kind, kWidth, kHeight, "");
  // Rows a power of two apart fall on few sets of the caches.
  RegisterKind(kPixelKinds[0], 8192, 4096, "_8192x4096");
  RegisterKind(kPixelKinds[2], 8192, 4096, "_8192x4096");
}

}  // namespace ovra_bench
