// SPDX-License-Identifier: MIT
#include "core/composition/composition.h"
#include "fuzz_support.h"

namespace {

// An image as a caller hands it over. Its buffer has the declared size, or is small and never to be
// touched when the arguments are not acceptable.
struct Image {
  int32_t width;
  int32_t height;
  ovra::PixelFormatCode code;

  explicit Image(FuzzedDataProvider& input)
      : width(input.ConsumeIntegralInRange<int32_t>(-2, 100)),
        height(input.ConsumeIntegralInRange<int32_t>(-2, 40)),
        code(input.ConsumeIntegral<uint32_t>()) {
    // Mostly an acceptable word: any channel count, bits 28-31 and row order; some colour models
    // and alignments.
    if (input.ConsumeIntegralInRange<int>(0, 15) != 0) code &= 0xF1200330;
  }

  size_t Size() const {
    ovra::PixelFormat format;
    if (ovra::CheckCompositeFormat(code, &format) != OVRA_OK || width <= 0 || height <= 0) return 1;
    const std::ptrdiff_t packed = std::ptrdiff_t{width} * static_cast<int32_t>(format.channels);
    return static_cast<size_t>(ovra::RowStride(width, format) * (height - 1) + packed);
  }
};

// A position near the destination, or any at all.
int32_t TakePosition(FuzzedDataProvider& input) {
  if (input.ConsumeBool()) return input.ConsumeIntegral<int32_t>();
  return input.ConsumeIntegralInRange<int32_t>(-110, 110);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FuzzedDataProvider input(data, size);
  const ovra::KernelTier tier = ovra_fuzz::TakeTier(input);
  const bool with_mask = input.ConsumeBool();
  const Image destination(input);
  Image source(input);
  constexpr uint32_t kOneChannelMore = 0x10;
  const int relation = with_mask ? 0 : input.ConsumeIntegralInRange<int>(0, 2);
  if (relation == 0) source.code = destination.code;
  if (relation == 1) source.code = destination.code + kOneChannelMore;
  const int32_t x = TakePosition(input);
  const int32_t y = TakePosition(input);
  const auto mode = input.ConsumeIntegral<uint8_t>();
  std::vector<uint8_t> actual = ovra_fuzz::TakeImage(input, destination.Size());
  std::vector<uint8_t> expected = actual;
  const std::vector<uint8_t> pixels = ovra_fuzz::TakeImage(input, source.Size());
  const std::vector<uint8_t> mask = ovra_fuzz::TakeImage(input, source.Size());

  const auto composite = [&](std::vector<uint8_t>& result, ovra::KernelTier with_tier) {
    if (with_mask) {
      return ovra::CompositeImageWithMaskBlending(
          result.data(), destination.width, destination.height, pixels.data(), mask.data(),
          source.width, source.height, destination.code, x, y, mode, with_tier);
    }
    return ovra::CompositeImage(result.data(), destination.width, destination.height,
                                destination.code, pixels.data(), source.width, source.height,
                                source.code, x, y, mode, with_tier);
  };
  const std::vector<uint8_t> before = actual;
  const ovra::Status status = composite(actual, tier);
  if (status != composite(expected, ovra::KernelTier::kPlain)) std::abort();
  ovra_fuzz::RequireEqual(actual, expected);
  if (status != OVRA_OK) ovra_fuzz::RequireEqual(actual, before);
  return 0;
}
