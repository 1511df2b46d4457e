// SPDX-License-Identifier: MIT
#include <algorithm>

#include "fuzz_support.h"
#include "resample/kernel_table.h"
#include "resample/resize/resize.h"

// Any format word, region, factors, stretches, tap counts and table; pictures of the declared size.
// Every tier answers the same status and the same bytes.
namespace {

constexpr int32_t kMaxSide = 120;
constexpr int32_t kMaxTaps = 40;

// Mostly tap counts that have unrolled forms.
int32_t TakeTaps(FuzzedDataProvider& input) {
  if (input.ConsumeBool()) return input.ConsumeIntegralInRange<int32_t>(0, kMaxTaps);
  return input.PickValueInArray({4, 5, 6, 7, 8, 16});
}

std::vector<float> TakeTable(FuzzedDataProvider& input) {
  std::vector<float> table(ovra::kKernelTableEntries);
  if (input.ConsumeBool()) {
    ovra::CalcCubicSpline(input.ConsumeFloatingPoint<float>(), table.data());
  } else {
    const auto period = input.ConsumeIntegralInRange<size_t>(1, 64);
    for (size_t i = 0; i < period; ++i) table[i] = input.ConsumeFloatingPoint<float>();
    for (size_t i = period; i < table.size(); ++i) table[i] = table[i - period];
  }
  return table;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FuzzedDataProvider input(data, size);
  const ovra::KernelTier tier = ovra_fuzz::TakeTier(input);
  const auto side = [&] { return input.ConsumeIntegralInRange<int32_t>(0, kMaxSide); };
  ovra::ResizeImages images = {};
  images.format = input.ConsumeIntegral<uint32_t>();
  images.shape.source = {side(), side()};
  images.shape.destination = {side(), side()};
  images.shape.region = {input.ConsumeIntegral<int32_t>(), input.ConsumeIntegral<int32_t>(), side(),
                         side()};
  if (input.ConsumeBool()) {  // inside the source
    images.shape.region.x =
        std::min(images.shape.region.x, images.shape.source.width - images.shape.region.width);
    images.shape.region.y =
        std::min(images.shape.region.y, images.shape.source.height - images.shape.region.height);
  }
  const ovra::KernelSupport horizontal = {input.ConsumeFloatingPoint<float>(), TakeTaps(input)};
  const ovra::KernelSupport vertical = {input.ConsumeFloatingPoint<float>(), TakeTaps(input)};
  const ovra::ResizeFactors factors = {input.ConsumeFloatingPoint<double>(),
                                       input.ConsumeFloatingPoint<double>()};
  const bool own_factors = input.ConsumeBool();
  const std::vector<float> table = TakeTable(input);
  ovra::PixelFormat format;
  if (ovra::DecodePixelFormat(images.format, &format) != OVRA_OK) format = {};
  const auto bytes = [&format](ovra::ImageSize image) {
    return static_cast<size_t>(ovra::RowStride(image.width, format) * image.height);
  };
  const std::vector<uint8_t> source = ovra_fuzz::TakeImage(input, bytes(images.shape.source));
  images.source = source.data();
  const auto run = [&](std::vector<uint8_t>& out, ovra::KernelTier with) {
    images.destination = out.data();
    return own_factors ? ovra::ResizeImageCoreVar(images, factors,
                                                  {table.data(), horizontal, vertical}, with)
                       : ovra::ResizeImageCore(images, table.data(), horizontal, with);
  };
  std::vector<uint8_t> expected(bytes(images.shape.destination), 1);
  std::vector<uint8_t> actual(expected);
  if (run(expected, ovra::KernelTier::kPlain) != run(actual, tier)) std::abort();
  ovra_fuzz::RequireEqual(expected, actual);
  return 0;
}
