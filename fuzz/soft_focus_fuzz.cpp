// SPDX-License-Identifier: MIT
#include "filter/soft_focus.h"
#include "fuzz_support.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  constexpr size_t kMaxSide = 70;
  FuzzedDataProvider input(data, size);
  const ovra::KernelTier tier = ovra_fuzz::TakeTier(input);
  const auto width = input.ConsumeIntegralInRange<uint32_t>(0, kMaxSide);
  const auto height = input.ConsumeIntegralInRange<uint32_t>(0, kMaxSide);
  ovra::SoftFocusParams params = {};
  // Any number, or one that blurs by a useful length: work grows with 1 / (1 - decay).
  if (input.ConsumeBool()) {
    params.radius = input.ConsumeIntegral<int32_t>();
    params.decay_exponent = input.ConsumeIntegral<int32_t>();
    params.decay_base = input.ConsumeFloatingPoint<double>();
    params.mix = input.ConsumeFloatingPoint<double>();
  } else {
    params.radius = input.ConsumeIntegralInRange<int32_t>(0, 20000);
    params.decay_exponent = input.ConsumeIntegralInRange<int32_t>(1, 4);
    params.decay_base = input.ConsumeProbability<double>();
    params.mix = input.ConsumeProbability<double>();
  }
  const bool in_place = input.ConsumeBool();
  std::vector<uint8_t> source = ovra_fuzz::TakeImage(input, size_t{3} * width * height);
  std::vector<uint8_t> expected(source.size());
  std::vector<uint8_t> other(source.size());
  std::vector<uint8_t>& actual = in_place ? source : other;
  if (ovra::SoftFocus(source.data(), expected.data(), width, height, &params,
                      ovra::KernelTier::kPlain) != OVRA_OK ||
      ovra::SoftFocus(source.data(), actual.data(), width, height, &params, tier) != OVRA_OK) {
    // A picture without pixels has null buffers.
    if (!source.empty()) std::abort();
  }
  ovra_fuzz::RequireEqual(actual, expected);
  return 0;
}
