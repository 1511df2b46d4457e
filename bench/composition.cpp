// SPDX-License-Identifier: MIT
#include <string>

#include "bench_support.h"
#include "core/composition/composition.h"
#include "ovra/basic.h"

namespace ovra_bench {
namespace {

constexpr double kPixels = double{kWidth} * kHeight;

OvraPixelFormatCode Format(size_t channels) {
  return OvraMakePixelFormat(8, static_cast<uint32_t>(channels), OVRA_MODEL_RGB, 1,
                             OVRA_ROWS_TOP_DOWN);
}

constexpr size_t Bytes(size_t channels) {
  return channels * kWidth * kHeight;
}

// A border leaves gaps between the rows that are written.
void RegisterCopy(const std::string& name, int32_t border) {
  constexpr size_t kChannels = 3;
  const int32_t width = kWidth - 2 * border;
  const int32_t height = kHeight - 2 * border;
  RegisterTiers(name, double{1} * width * height, [=](ovra::KernelTier tier) {
    ovra::CompositeImage(Destination(Bytes(kChannels)), kWidth, kHeight, Format(kChannels),
                         Source(Bytes(kChannels)), width, height, Format(kChannels), border, border,
                         OVRA_BLEND_WEIGHT_OF_SOURCE, tier);
  });
}

void RegisterAlpha(const std::string& name, size_t channels, OvraBlendMode mode) {
  RegisterTiers(name, kPixels, [=](ovra::KernelTier tier) {
    ovra::CompositeImage(Destination(Bytes(channels)), kWidth, kHeight, Format(channels),
                         Source(Bytes(channels + 1)), kWidth, kHeight, Format(channels + 1), 0, 0,
                         static_cast<uint8_t>(mode), tier);
  });
}

void RegisterMask(const std::string& name, size_t channels, OvraBlendMode mode) {
  RegisterTiers(name, kPixels, [=](ovra::KernelTier tier) {
    const uint8_t* const source = Source(2 * Bytes(channels));
    ovra::CompositeImageWithMaskBlending(Destination(Bytes(channels)), kWidth, kHeight, source,
                                         source + Bytes(channels), kWidth, kHeight,
                                         Format(channels), 0, 0, static_cast<uint8_t>(mode), tier);
  });
}

}  // namespace

void RegisterComposition() {
  RegisterCopy("composition/copy/3ch/whole", 0);
  RegisterCopy("composition/copy/3ch/inside", 100);
  RegisterMemcpy("composition/copy/3ch", Bytes(3), Bytes(3), kPixels);
  for (size_t channels = 1; channels <= 3; ++channels) {
    const std::string name = "composition/alpha/" + std::to_string(channels) + "+1";
    RegisterAlpha(name + "/of_destination", channels, OVRA_BLEND_WEIGHT_OF_DESTINATION);
    RegisterAlpha(name + "/of_source", channels, OVRA_BLEND_WEIGHT_OF_SOURCE);
    RegisterMemcpy(name, Bytes(2 * channels + 1), Bytes(channels), kPixels);
  }
  for (const size_t channels : {1, 3, 4}) {
    const std::string name = "composition/mask/" + std::to_string(channels) + "ch";
    RegisterMask(name + "/of_destination", channels, OVRA_BLEND_WEIGHT_OF_DESTINATION);
    RegisterMask(name + "/of_source", channels, OVRA_BLEND_WEIGHT_OF_SOURCE);
    RegisterMemcpy(name, 3 * Bytes(channels), Bytes(channels), kPixels);
  }
}

}  // namespace ovra_bench
