// SPDX-License-Identifier: MIT
#include "filter/soft_focus/soft_focus.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <limits>

#include "core/work_memory.h"
#include "filter/soft_focus/kernels.h"

namespace ovra {
namespace {

static_assert(sizeof(OvraSoftFocusParams) == 40);
static_assert(offsetof(OvraSoftFocusParams, decay_base) == 8);
static_assert(offsetof(OvraSoftFocusParams, mix) == 32);

constexpr double kReferenceSide = 2503.0;
constexpr uint32_t kUnit = 65536;  // 1.0 in 16.16 fixed point
constexpr std::ptrdiff_t kChannels = 3;

// The radius in pixels for a picture of this size, rounded; 0 or less stands for none.
int64_t EffectiveRadius(int32_t radius, uint32_t width, uint32_t height) {
  const auto scale = static_cast<float>(std::min(width, height) / kReferenceSide);
  return static_cast<int64_t>(radius * double{scale} + 0.5);
}

// Decay a pixel: the response falls to base^exponent over the radius.
double Decay(const SoftFocusParams& params, int64_t radius) {
  const double target = std::pow(params.decay_base, params.decay_exponent);
  return std::pow(target, 1.0 / static_cast<double>(radius));
}

// For a decay above 0 and below 1.
SoftFocusRecursion MakeRecursion(double decay) {
  const auto feedback = static_cast<uint32_t>(decay * kUnit + 0.5);
  return {static_cast<uint64_t>(1 / (1 - decay) + 0.5), feedback, kUnit - feedback};
}

// The share of the blurred picture in units of 1/65536.
uint32_t Share(double mix) {
  if (!(mix > 0.0)) return 0;
  return static_cast<uint32_t>(std::min(mix, 1.0) * kUnit + 0.5);
}

// Padding beyond which a longer one changes nothing, in steps. Along a constant line a step shrinks
// the distance of the state from its limit by feedback / 65536 until rounding holds it fast. From
// 2^26, more than any state's rounded part, that takes less than ln(2^27) * 65536 / input steps and
// a few. The way forward needs so many, and the way back as many again.
std::ptrdiff_t LongestPadding(const SoftFocusRecursion& recursion) {
  constexpr uint32_t kMoreThanLn = 20;
  constexpr std::ptrdiff_t kAFew = 16;
  if (recursion.input == 0) return 0;  // the outcome is 0 whatever the states are
  return 2 * (static_cast<std::ptrdiff_t>(kMoreThanLn * kUnit / recursion.input) + kAFew);
}

// Whether the picture could lie in memory at all.
bool IsAddressable(uint32_t width, uint32_t height) {
  constexpr uint64_t kMaxPixels = std::numeric_limits<std::ptrdiff_t>::max() / kChannels;
  return width <= kMaxPixels / height;
}

// Vector forms take narrow recursions alone.
FilterSoftFocusLines* SelectFilterLines(const SoftFocusRecursion& recursion, KernelTier tier) {
  return ForTier(IsNarrow(recursion) ? tier : KernelTier::kPlain, kSoftFocusPlain, kSoftFocusSse,
                 kSoftFocusAvx2)
      .filter_lines;
}

// One picture on its way.
struct Blur {
  const uint8_t* source;
  uint8_t* blurred;  // may be a picture of its own, or the destination
  std::ptrdiff_t row_bytes;
  std::ptrdiff_t height;
  std::ptrdiff_t padding;
  SoftFocusRecursion recursion;
  FilterSoftFocusLines* filter_lines;
  const SoftFocusKernels& kernels;
};

// Filters each row of the source into `blurred`. Rows are laid side by side in `lines`, which holds
// kSoftFocusRows of them.
void FilterRows(const Blur& blur, uint8_t* lines, uint32_t* work) {
  // A pixel's step along the row moves all three channels of all rows.
  constexpr std::ptrdiff_t kStep = kSoftFocusRows * kChannels;
  const SoftFocusLines side_by_side = {lines, kStep, blur.row_bytes / kChannels, blur.padding,
                                       kStep};
  for (std::ptrdiff_t y = 0; y < blur.height; y += kSoftFocusRows) {
    const uint8_t* in[kSoftFocusRows];
    uint8_t* out[kSoftFocusRows];
    for (std::ptrdiff_t k = 0; k < kSoftFocusRows; ++k) {
      // The last row fills up the last group.
      const std::ptrdiff_t offset = std::min(y + k, blur.height - 1) * blur.row_bytes;
      in[k] = blur.source + offset;
      out[k] = blur.blurred + offset;
    }
    blur.kernels.gather(in, lines, blur.row_bytes);
    blur.filter_lines(blur.recursion, side_by_side, work);
    blur.kernels.scatter(lines, out, blur.row_bytes);
  }
}

// Filters the columns of `blurred` in place and mixes them with the source, strip by strip while a
// strip is in the cache.
void FilterColumnsAndMix(const Blur& blur, uint8_t* destination, uint32_t share, uint32_t* work) {
  constexpr std::ptrdiff_t kStrip = 96;  // bytes: whole groups of lines for every tier
  for (std::ptrdiff_t x = 0; x < blur.row_bytes; x += kStrip) {
    const std::ptrdiff_t bytes = std::min(kStrip, blur.row_bytes - x);
    blur.filter_lines(blur.recursion,
                      {blur.blurred + x, blur.row_bytes, blur.height, blur.padding, bytes}, work);
    blur.kernels.mix(blur.source + x, blur.blurred + x, destination + x,
                     {blur.row_bytes, blur.height, bytes}, share);
  }
}

uint64_t WorkWords(const SoftFocusRecursion& recursion, uint64_t longest, std::ptrdiff_t padding) {
  if (!IsNarrow(recursion)) return longest;
  return (longest + static_cast<uint64_t>(padding)) * kSoftFocusWorkWords;
}

// Neither size is 0, the radius is above 0 and the share too.
Status BlurAndMix(const uint8_t* source, uint8_t* destination, uint32_t width, uint32_t height,
                  int64_t radius, const SoftFocusRecursion& recursion, uint32_t share,
                  KernelTier tier) {
  const auto row_bytes = static_cast<std::ptrdiff_t>(width) * kChannels;
  const auto rows = static_cast<std::ptrdiff_t>(height);
  const auto padding =
      static_cast<std::ptrdiff_t>(std::min<int64_t>(radius, LongestPadding(recursion)));
  WorkMemory<uint8_t> lines;
  WorkMemory<uint32_t> work;
  WorkMemory<uint8_t> plane;
  const bool in_place = source == destination;
  if (!lines.Allocate(static_cast<uint64_t>(row_bytes) * kSoftFocusRows) ||
      !work.Allocate(WorkWords(recursion, std::max(width, height), padding)) ||
      (in_place && !plane.Allocate(static_cast<uint64_t>(row_bytes) * height))) {
    return OVRA_ERROR_NO_MEMORY;
  }
  const Blur blur = {source,
                     in_place ? plane.data() : destination,
                     row_bytes,
                     rows,
                     padding,
                     recursion,
                     SelectFilterLines(recursion, tier),
                     ForTier(tier, kSoftFocusPlain, kSoftFocusSse, kSoftFocusAvx2)};
  FilterRows(blur, lines.data(), work.data());
  FilterColumnsAndMix(blur, destination, share, work.data());
  return OVRA_OK;
}

}  // namespace

Status SoftFocus(const uint8_t* source, uint8_t* destination, uint32_t width, uint32_t height,
                 const SoftFocusParams* params, KernelTier tier) {
  if (source == nullptr || destination == nullptr || params == nullptr) {
    return OVRA_ERROR_SOFT_FOCUS_NULL;
  }
  if (width == 0 || height == 0) return OVRA_OK;
  if (!IsAddressable(width, height)) return OVRA_ERROR_NO_MEMORY;
  const int64_t radius = EffectiveRadius(params->radius, width, height);
  const double decay = radius > 0 ? Decay(*params, radius) : 0.0;
  const uint32_t share = Share(params->mix);
  const bool blurs = decay > 0.0 && decay < 1.0;
  if (!blurs || share == 0) {
    std::memmove(destination, source, size_t{width} * height * kChannels);
    return OVRA_OK;
  }
  return BlurAndMix(source, destination, width, height, radius, MakeRecursion(decay), share, tier);
}

}  // namespace ovra

OVRA_API OvraStatus OVRA_CALL OvraSoftFocus(const uint8_t* source, uint8_t* destination,
                                            uint32_t width, uint32_t height,
                                            const OvraSoftFocusParams* params) {
  return ovra::SoftFocus(source, destination, width, height, params, ovra::DetectedTier());
}
