// SPDX-License-Identifier: MIT
#include "core/dib_raw/dib_raw.h"
#include "fuzz_support.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  constexpr size_t kMaxSide = 200;
  FuzzedDataProvider input(data, size);
  const ovra::KernelTier tier = ovra_fuzz::TakeTier(input);
  const auto width = input.ConsumeIntegralInRange<uint32_t>(0, kMaxSide);
  const auto height = input.ConsumeIntegralInRange<uint32_t>(0, kMaxSide);
  const std::vector<uint8_t> raw = ovra_fuzz::TakeImage(input, size_t{3} * width * height);
  const size_t dib_size = size_t{(3 * width + 3) / 4 * 4} * height;
  std::vector<uint8_t> dib(dib_size, 1);
  std::vector<uint8_t> expected(dib_size, 2);
  ovra::Raw2Dib(raw.data(), dib.data(), width, height, tier);
  ovra::Raw2Dib(raw.data(), expected.data(), width, height, ovra::KernelTier::kPlain);
  ovra_fuzz::RequireEqual(dib, expected);
  std::vector<uint8_t> back(raw.size());
  ovra::Dib2Raw(dib.data(), back.data(), width, height, tier);
  ovra_fuzz::RequireEqual(back, raw);
  return 0;
}
