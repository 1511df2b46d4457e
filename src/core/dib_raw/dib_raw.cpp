// SPDX-License-Identifier: MIT
#include "core/dib_raw/dib_raw.h"

#include <cstddef>
#include <cstring>

#include "core/dib_raw/kernels.h"
#include "core/pixel_format.h"
#include "core/rows.h"
#include "ovra/basic.h"

namespace ovra {
namespace {

constexpr int32_t kChannels = 3;
constexpr int32_t kDepthBits = 8;
constexpr int32_t kDibAlignment = 4;

struct Layout {
  std::ptrdiff_t width;
  std::ptrdiff_t height;
  std::ptrdiff_t raw_stride;
  std::ptrdiff_t dib_stride;
};

// Sizes beyond the positive range of a signed number become an empty picture.
Layout MakeLayout(uint32_t width, uint32_t height) {
  const auto signed_width = static_cast<int32_t>(width);
  const auto signed_height = static_cast<int32_t>(height);
  if (signed_width <= 0 || signed_height <= 0) return Layout{};
  return {signed_width, signed_height, RowStride(signed_width, kChannels, kDepthBits, 1),
          RowStride(signed_width, kChannels, kDepthBits, kDibAlignment)};
}

const DibRawKernels& KernelsOf(KernelTier tier) {
  return ForTier(tier, kDibRawPlain, kDibRawSse, kDibRawAvx2);
}

}  // namespace

void Dib2Raw(const uint8_t* dib, uint8_t* raw, uint32_t width, uint32_t height, KernelTier tier) {
  if (dib == nullptr || raw == nullptr) return;
  SwapRedBlueRow* const swap_row = KernelsOf(tier).swap_red_blue;
  const Layout layout = MakeLayout(width, height);
  for (std::ptrdiff_t y = 0; y < layout.height; ++y) {
    swap_row(RowAt<uint8_t>(dib, layout.dib_stride, layout.height - 1 - y),
             RowAt<uint8_t>(raw, layout.raw_stride, y), layout.width);
  }
}

void Raw2Dib(const uint8_t* raw, uint8_t* dib, uint32_t width, uint32_t height, KernelTier tier) {
  if (dib == nullptr || raw == nullptr) return;
  SwapRedBlueRow* const swap_row = KernelsOf(tier).swap_red_blue;
  const Layout layout = MakeLayout(width, height);
  const auto padding = static_cast<size_t>(layout.dib_stride - layout.raw_stride);
  for (std::ptrdiff_t y = 0; y < layout.height; ++y) {
    uint8_t* const dib_row = RowAt<uint8_t>(dib, layout.dib_stride, layout.height - 1 - y);
    swap_row(RowAt<uint8_t>(raw, layout.raw_stride, y), dib_row, layout.width);
    std::memset(dib_row + layout.raw_stride, 0, padding);
  }
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
