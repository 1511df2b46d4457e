// SPDX-License-Identifier: MIT
#include "core/pixel_format.h"
#include "fuzz_support.h"
#include "geometry/extrapolation/extrapolation.h"

namespace {

// Mostly a size that images have, sometimes any number.
uint32_t TakeSize(FuzzedDataProvider& input) {
  constexpr uint32_t kMaxSide = 150;
  return input.ConsumeIntegralInRange<int>(0, 7) == 0
             ? input.ConsumeIntegral<uint32_t>()
             : input.ConsumeIntegralInRange<uint32_t>(0, kMaxSide);
}

}  // namespace

// Buffers are made for sizes up to a limit. A greater canvas, for which there is none, is asked for
// only where the call must refuse it.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  constexpr uint64_t kMaxBytes = 1 << 20;
  FuzzedDataProvider input(data, size);
  const auto code = input.ConsumeIntegral<uint32_t>();
  const uint32_t source_width = TakeSize(input);
  const uint32_t source_height = TakeSize(input);
  const uint32_t width = TakeSize(input);
  const uint32_t height = TakeSize(input);
  const auto x = static_cast<int32_t>(TakeSize(input));
  const auto y = static_cast<int32_t>(TakeSize(input));
  ovra::PixelFormat format;
  const bool accepted = ovra::ValidateExtrapolationFormat(code, &format) == OVRA_OK;
  const auto placed = [](uint32_t extent, int32_t offset, uint32_t canvas) {
    return offset >= 0 && int64_t{extent} + offset <= canvas;
  };
  const bool runs = accepted && source_width > 0 && height > 0 && placed(source_width, x, width) &&
                    placed(source_height, y, height);
  std::vector<uint16_t> fill(accepted ? format.channels : 4);
  for (uint16_t& value : fill) value = input.ConsumeIntegral<uint16_t>();
  if (!runs) {
    uint8_t source = 0;
    uint8_t destination = 0;
    const ovra::Status status = ovra::ExtrapolateImage(
        &source, source_width, source_height, &destination, width, height, code, x, y, fill.data());
    if (status == OVRA_OK || destination != 0) std::abort();
    return 0;
  }
  const auto stride = static_cast<uint64_t>(ovra::RowStride(width, format));
  const auto source_stride = static_cast<uint64_t>(ovra::RowStride(source_width, format));
  if (stride > kMaxBytes || height > kMaxBytes || stride * height > kMaxBytes) return 0;
  const std::vector<uint8_t> source =
      ovra_fuzz::TakeImage(input, static_cast<size_t>(source_stride * source_height) + 1);
  const uint64_t padding =
      stride - uint64_t{width} * format.channels * (format.depth_bits == 8 ? 1 : 2);
  std::vector<uint8_t> out(
      static_cast<size_t>(stride * height + (format.depth_bits == 8 ? 0 : padding)), 1);
  std::vector<uint8_t> again(out.size(), 2);
  for (std::vector<uint8_t>* destination : {&out, &again}) {
    if (ovra::ExtrapolateImage(source.data(), source_width, source_height, destination->data(),
                               width, height, code, x, y, fill.data()) != OVRA_OK) {
      std::abort();
    }
  }
  ovra_fuzz::RequireEqual(out, again);  // every byte was written
  return 0;
}
