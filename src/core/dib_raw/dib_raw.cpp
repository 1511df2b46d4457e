// SPDX-License-Identifier: MIT
#include "core/dib_raw/dib_raw.h"

#include <cstddef>

#include "core/dib_raw/kernels.h"
#include "core/pixel_format.h"
#include "core/row_move.h"
#include "ovra/basic.h"

namespace ovra {
namespace {

constexpr int32_t kChannels = 3;
constexpr int32_t kDepthBits = 8;
constexpr int32_t kDibAlignment = 4;

// A picture of a DIB's rows, from the last one in memory up, and of raw rows.
struct Layout {
  std::ptrdiff_t width;
  std::ptrdiff_t height;
  std::ptrdiff_t raw_stride;
  std::ptrdiff_t dib_stride;

  std::ptrdiff_t DibTop() const { return dib_stride * (height - 1); }
};

// Sizes beyond the positive range of a signed number become an empty picture.
Layout MakeLayout(uint32_t width, uint32_t height) {
  const auto signed_width = static_cast<int32_t>(width);
  const auto signed_height = static_cast<int32_t>(height);
  if (signed_width <= 0 || signed_height <= 0) return Layout{};
  return {signed_width, signed_height, RowStride(signed_width, kChannels, kDepthBits, 1),
          RowStride(signed_width, kChannels, kDepthBits, kDibAlignment)};
}

MoveRows* SwapOf(KernelTier tier) {
  return ForTier(tier, kDibRawPlain, kDibRawSse, kDibRawAvx2).swap_red_blue;
}

}  // namespace

void Dib2Raw(const uint8_t* dib, uint8_t* raw, uint32_t width, uint32_t height, KernelTier tier) {
  const Layout layout = MakeLayout(width, height);
  if (dib == nullptr || raw == nullptr || layout.height == 0) return;
  SwapOf(tier)({.source = dib + layout.DibTop(),
                .source_stride = -layout.dib_stride,
                .destination = raw,
                .destination_stride = layout.raw_stride,
                .pixels = layout.width,
                .rows = layout.height,
                .padding = 0,
                .streaming = WritesRoundCache(layout.raw_stride, layout.height)});
}

void Raw2Dib(const uint8_t* raw, uint8_t* dib, uint32_t width, uint32_t height, KernelTier tier) {
  const Layout layout = MakeLayout(width, height);
  if (dib == nullptr || raw == nullptr || layout.height == 0) return;
  SwapOf(tier)({.source = raw,
                .source_stride = layout.raw_stride,
                .destination = dib + layout.DibTop(),
                .destination_stride = -layout.dib_stride,
                .pixels = layout.width,
                .rows = layout.height,
                .padding = layout.dib_stride - layout.raw_stride,
                .streaming = WritesRoundCache(layout.dib_stride, layout.height)});
}

}  // namespace ovra

OVRA_API void OVRA_CALL OvraDib2Raw(const uint8_t* dib, uint8_t* raw, uint32_t width,
                                    uint32_t height) {
  ovra::Dib2Raw(dib, raw, width, height, ovra::DetectedTier());
}

OVRA_API void OVRA_CALL OvraRaw2Dib(const uint8_t* raw, uint8_t* dib, uint32_t width,
                                    uint32_t height) {
  ovra::Raw2Dib(raw, dib, width, height, ovra::DetectedTier());
}
