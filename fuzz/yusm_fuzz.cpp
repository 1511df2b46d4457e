// SPDX-License-Identifier: MIT
// Both luminance masks: all tiers and forms give the plain tier's bytes, in place or not.
#include "filter/yusm.h"
#include "filter/yusm_double.h"
#include "fuzz_support.h"

namespace {

using ovra::KernelTier;

constexpr uint32_t kMaxSide = 100;

// 32-bit words of weights, 16-bit entries of tables: small or extreme, as the input says.
template <class T>
std::vector<T> TakeNumbers(FuzzedDataProvider& input, size_t count) {
  const std::vector<uint8_t> bytes = ovra_fuzz::TakeImage(input, count * sizeof(T));
  const int shift = input.ConsumeIntegralInRange<int>(0, 8 * sizeof(T) - 4);
  std::vector<T> numbers(count);
  std::memcpy(numbers.data(), bytes.data(), bytes.size());
  for (T& number : numbers) number = static_cast<T>(number >> shift);
  return numbers;
}

struct Tables {
  explicit Tables(FuzzedDataProvider& input)
      : amount(input.ConsumeFloatingPoint<float>()),
        level(TakeNumbers<int16_t>(input, OVRA_LEVEL_TABLE_SIZE)),
        difference(TakeNumbers<int16_t>(input, OVRA_DIFFERENCE_TABLE_SIZE)) {}

  float amount;
  std::vector<int16_t> level;
  std::vector<int16_t> difference;
};

// Runs into another buffer plainly and in place with `tier`.
template <class Run>
void Compare(const std::vector<uint8_t>& source, KernelTier tier, const Run& run) {
  std::vector<uint8_t> expected = source;
  std::vector<uint8_t> actual = source;
  const OvraStatus expected_status = run(source.data(), expected.data(), KernelTier::kPlain);
  if (run(actual.data(), actual.data(), tier) != expected_status) std::abort();
  ovra_fuzz::RequireEqual(expected, actual);
}

void FuzzMask(FuzzedDataProvider& input, KernelTier tier) {
  constexpr OvraColorModel kModels[] = {OVRA_MODEL_GREY, OVRA_MODEL_RGB,  OVRA_MODEL_BGR,
                                        OVRA_MODEL_YCC,  OVRA_MODEL_RGBA, OVRA_MODEL_BGRA};
  const OvraColorModel model = input.PickValueInArray(kModels);
  const uint32_t channels = model == OVRA_MODEL_GREY ? 1 : model <= OVRA_MODEL_YCC ? 3 : 4;
  const auto depth_bits = input.ConsumeIntegralInRange<uint32_t>(8, 14);
  const uint32_t alignment = 1U << input.ConsumeIntegralInRange<int>(0, 2);
  const auto width = input.ConsumeIntegralInRange<uint32_t>(0, kMaxSide);
  const auto height = input.ConsumeIntegralInRange<uint32_t>(0, kMaxSide);
  const auto taps = input.ConsumeIntegralInRange<int32_t>(-1, OVRA_YUSM_MAX_TAPS + 1);
  const std::vector<int32_t> weights = TakeNumbers<int32_t>(input, OVRA_YUSM_MAX_TAPS + 1);
  const Tables tables(input);
  const size_t stride = (size_t{width} * channels * (depth_bits == 8 ? 1 : 2) + alignment - 1) /
                        alignment * alignment;
  const std::vector<uint8_t> source = ovra_fuzz::TakeImage(input, stride * height);
  Compare(source, tier, [&](const uint8_t* from, uint8_t* to, KernelTier run_tier) {
    return ovra::RunYUsmSingleStep(
        from, to, width, height,
        OvraMakePixelFormat(depth_bits, channels, model, alignment, OVRA_ROWS_TOP_DOWN),
        {taps, weights.data(), tables.amount, tables.level.data(), tables.difference.data()},
        run_tier);
  });
}

void FuzzDoubleMask(FuzzedDataProvider& input, KernelTier tier) {
  constexpr uint32_t kMaxTaps = 40;
  const OvraPixelFormatCode format = input.ConsumeBool() ? 0x120 : 0x320;
  const auto width = input.ConsumeIntegralInRange<uint32_t>(1, kMaxSide);
  const auto height = input.ConsumeIntegralInRange<uint32_t>(1, kMaxSide);
  const auto coarse_taps = input.ConsumeIntegralInRange<uint32_t>(0, kMaxTaps);
  const auto fine_taps = input.ConsumeIntegralInRange<uint32_t>(0, kMaxTaps);
  const std::vector<int32_t> coarse_weights = TakeNumbers<int32_t>(input, kMaxTaps);
  const std::vector<int32_t> fine_weights = TakeNumbers<int32_t>(input, kMaxTaps);
  const Tables coarse(input);
  const Tables fine(input);
  const std::vector<uint8_t> source = ovra_fuzz::TakeImage(input, size_t{3} * width * height);
  const ovra::YUsmDoubleParameters parameters = {
      {coarse_taps, coarse_weights.data(), coarse.amount, coarse.level.data(),
       coarse.difference.data()},
      {fine_taps, fine_weights.data(), fine.amount, fine.level.data(), fine.difference.data()}};
  for (const auto form : {ovra::YUsmDoubleForm::kWholePlanes, ovra::YUsmDoubleForm::kStreaming}) {
    Compare(source, tier, [&](const uint8_t* from, uint8_t* to, KernelTier run_tier) {
      const bool is_plain = run_tier == KernelTier::kPlain;
      return ovra::FilterYUsmDouble(from, to, width, height, format, parameters,
                                    is_plain ? ovra::YUsmDoubleForm::kWholePlanes : form, run_tier);
    });
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FuzzedDataProvider input(data, size);
  const KernelTier tier = ovra_fuzz::TakeTier(input);
  if (input.ConsumeBool()) {
    FuzzMask(input, tier);
  } else {
    FuzzDoubleMask(input, tier);
  }
  return 0;
}
