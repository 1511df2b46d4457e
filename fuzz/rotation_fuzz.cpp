// SPDX-License-Identifier: MIT
#include "core/pixel_format.h"
#include "fuzz_support.h"
#include "geometry/rotation/rotation.h"

// Any format word and mode; a picture of the declared size where the format is accepted. A turn and
// the turn back must give the picture again, on every tier the same bytes.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  constexpr int32_t kMaxSide = 150;
  constexpr int32_t kInverse[] = {0, 3, 2, 1, 4, 5, 6, 7};
  FuzzedDataProvider input(data, size);
  const ovra::KernelTier tier = ovra_fuzz::TakeTier(input);
  const auto code = input.ConsumeIntegral<uint32_t>();
  const auto mode = input.ConsumeIntegralInRange<int32_t>(-1, 8);
  const auto width = input.ConsumeIntegralInRange<int32_t>(-1, kMaxSide);
  const auto height = input.ConsumeIntegralInRange<int32_t>(-1, kMaxSide);
  ovra::PixelFormat format;
  if (width <= 0 || height <= 0 || mode < 0 || mode > 7 ||
      ovra::ValidateRotationFormat(code, &format) != OVRA_OK) {
    uint8_t pixel = 0;
    uint8_t untouched = 0;
    ovra::RotateImage(&pixel, &untouched, width, height, code, mode, tier);
    return 0;
  }
  const int32_t out_width = mode % 2 == 0 ? width : height;
  const int32_t out_height = mode % 2 == 0 ? height : width;
  const auto source_stride = static_cast<size_t>(ovra::RowStride(width, format));
  const auto out_stride = static_cast<size_t>(ovra::RowStride(out_width, format));
  const std::vector<uint8_t> source =
      ovra_fuzz::TakeImage(input, source_stride * static_cast<size_t>(height));
  std::vector<uint8_t> out(out_stride * static_cast<size_t>(out_height), 1);
  std::vector<uint8_t> expected(out.size(), 2);
  ovra::RotateImage(source.data(), out.data(), width, height, code, mode, tier);
  ovra::RotateImage(source.data(), expected.data(), width, height, code, mode,
                    ovra::KernelTier::kPlain);
  ovra_fuzz::RequireEqual(out, expected);
  std::vector<uint8_t> back(source.size(), 1);
  std::vector<uint8_t> cleared(source.size(), 2);
  ovra::RotateImage(out.data(), back.data(), out_width, out_height, code, kInverse[mode], tier);
  ovra::RotateImage(source.data(), cleared.data(), width, height, code, 0,
                    ovra::KernelTier::kPlain);
  ovra_fuzz::RequireEqual(back, cleared);
  return 0;
}
