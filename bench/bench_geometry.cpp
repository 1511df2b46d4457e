// SPDX-License-Identifier: MIT
#include <vector>

#include "bench_support.h"
#include "geometry/extrapolation.h"
#include "geometry/rotation.h"
#include "ovra/geometry.h"

namespace ovra_bench {
namespace {

struct PixelKind {
  const char* name;
  uint32_t depth_bits;
  uint32_t channels;
  OvraColorModel model;

  size_t Bytes() const { return (depth_bits == 8 ? 1 : 2) * channels; }
  OvraPixelFormatCode Format() const {
    return OvraMakePixelFormat(depth_bits, channels, model, 1, OVRA_ROWS_TOP_DOWN);
  }
};

constexpr PixelKind kKinds[] = {
    {"8bit_grey", 8, 1, OVRA_MODEL_GREY}, {"8bit_rgb", 8, 3, OVRA_MODEL_RGB},
    {"8bit_rgba", 8, 4, OVRA_MODEL_RGBA}, {"16bit_grey", 16, 1, OVRA_MODEL_GREY},
    {"16bit_rgb", 16, 3, OVRA_MODEL_RGB}, {"16bit_rgba", 16, 4, OVRA_MODEL_RGBA},
};

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

void RegisterRotation(const PixelKind& kind, int32_t width, int32_t height,
                      const std::string& suffix) {
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

// A source of three quarters of the width and height in the middle of the canvas.
void RegisterExtrapolation(const PixelKind& kind) {
  constexpr int32_t kSourceWidth = kWidth * 3 / 4;
  constexpr int32_t kSourceHeight = kHeight * 3 / 4;
  constexpr double kPixels = double{kWidth} * kHeight;
  const size_t bytes = kind.Bytes() * kWidth * kHeight;
  const size_t source_bytes = kind.Bytes() * kSourceWidth * kSourceHeight;
  Register(std::string("extrapolation/") + kind.name, kPixels, [=] {
    const uint16_t fill[] = {10, 20, 30, 40};
    ovra::ExtrapolateImage(Source(bytes), kSourceWidth, kSourceHeight, Destination(bytes), kWidth,
                           kHeight, kind.Format(), (kWidth - kSourceWidth) / 2,
                           (kHeight - kSourceHeight) / 2, fill);
  });
  RegisterMemcpy(std::string("extrapolation/") + kind.name, source_bytes, bytes, kPixels);
}

}  // namespace

void RegisterGeometry() {
  for (const PixelKind& kind : kKinds) {
    RegisterRotation(kind, kWidth, kHeight, "");
    RegisterExtrapolation(kind);
  }
  // Rows a power of two apart fall on few sets of the caches.
  RegisterRotation(kKinds[0], 8192, 4096, "_8192x4096");
  RegisterRotation(kKinds[2], 8192, 4096, "_8192x4096");
}

}  // namespace ovra_bench
