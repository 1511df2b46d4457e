// SPDX-License-Identifier: MIT

#include "fuzz_support.h"
#include "resample/kernel_table.h"
#include "resample/small_resize/small_resize.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  constexpr int32_t kMaxSide = 300;
  FuzzedDataProvider input(data, size);
  const ovra::KernelTier tier = ovra_fuzz::TakeTier(input);
  const auto format = input.ConsumeIntegral<uint32_t>();
  const auto side = [&] { return input.ConsumeIntegralInRange<int32_t>(0, kMaxSide); };
  const int32_t source_width = side();
  const int32_t source_height = side();
  const int32_t width = side();
  const int32_t height = side();
  const int32_t x = input.ConsumeIntegral<int8_t>();
  const int32_t y = input.ConsumeIntegral<int8_t>();
  const int32_t to_width = side();
  const int32_t to_height = side();
  std::vector<float> table(ovra::kKernelTableEntries);
  ovra::CalcCubicSpline(input.ConsumeFloatingPoint<float>(), table.data());
  for (int i = 0; i < 8; ++i) {
    table[input.ConsumeIntegralInRange<size_t>(0, table.size() - 1)] =
        input.ConsumeFloatingPoint<float>();
  }
  ovra::PixelFormat decoded;
  if (ovra::DecodePixelFormat(format, &decoded) != OVRA_OK) decoded = {};
  const auto bytes = [&](int32_t w, int32_t h) {
    return static_cast<size_t>(ovra::RowStride(w, decoded) * h);
  };
  const std::vector<uint8_t> source =
      ovra_fuzz::TakeImage(input, bytes(source_width, source_height));
  std::vector<uint8_t> expected(bytes(to_width, to_height), 1);
  std::vector<uint8_t> actual(expected);
  const auto run = [&](std::vector<uint8_t>& out, ovra::KernelTier with) {
    return ovra::SmallResizeImage(
        {source.data(),
         out.data(),
         format,
         {{source_width, source_height}, {to_width, to_height}, {x, y, width, height}}},
        table.data(), with);
  };
  if (run(expected, ovra::KernelTier::kPlain) != run(actual, tier)) std::abort();
  ovra_fuzz::RequireEqual(expected, actual);
  return 0;
}
