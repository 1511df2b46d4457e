// SPDX-License-Identifier: MIT
#include "filter/edge_filter.h"
#include "fuzz_support.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  constexpr size_t kMaxSide = 80;
  FuzzedDataProvider input(data, size);
  const ovra::KernelTier tier = ovra_fuzz::TakeTier(input);
  const auto format = input.ConsumeBool() ? 0x0120 : input.ConsumeIntegral<uint32_t>();
  const auto width = input.ConsumeIntegralInRange<uint32_t>(0, kMaxSide);
  const auto height = input.ConsumeIntegralInRange<uint32_t>(0, kMaxSide);
  const std::vector<uint8_t> source = ovra_fuzz::TakeImage(input, size_t{3} * width * height);
  std::vector<uint8_t> actual(source.size(), 1);
  std::vector<uint8_t> expected(source.size(), 1);
  const ovra::Status status =
      ovra::EdgeFilterImage(source.data(), actual.data(), width, height, format, tier);
  if (status != ovra::EdgeFilterImage(source.data(), expected.data(), width, height, format,
                                      ovra::KernelTier::kPlain)) {
    std::abort();
  }
  ovra_fuzz::RequireEqual(actual, expected);
  return 0;
}
