// SPDX-License-Identifier: MIT
#include <algorithm>
#include <vector>

#include "bench_support.h"
#include "filter/multi_frequency/multi_frequency.h"
#include "tone/hyper_tone/hyper_tone.h"

namespace ovra_bench {
namespace {

using ovra::ToneForm;

constexpr double kPixels = double{kWidth} * kHeight;
constexpr size_t kBytes = size_t{6} * kWidth * kHeight;
constexpr ovra::PixelFormatCode kRgb12 = 0x124;

// Noise of 16 bits would be white nearly everywhere: slopes of 12 bits with some noise.
const uint8_t* TonePicture() {
  static std::vector<uint16_t> samples;
  if (samples.empty()) {
    const uint8_t* const noise = Source(kBytes);
    samples.resize(kBytes / 2);
    for (size_t i = 0; i < samples.size(); ++i) {
      const size_t x = i / 3 % kWidth;
      const size_t y = i / 3 / kWidth;
      const size_t slope = (x + (y / 500 % 2 != 0 ? 2 * y : 0)) % 8192;
      const size_t folded = slope < 4096 ? slope : 8191 - slope;
      samples[i] = static_cast<uint16_t>(std::min<size_t>(folded + noise[i] / 4, 4095));
    }
  }
  return reinterpret_cast<const uint8_t*>(samples.data());
}

void RegisterMultiFrequency() {
  for (const uint32_t bands : {4U, 8U}) {
    RegisterTiers("multi_frequency/bands" + std::to_string(bands), kPixels,
                  [bands](ovra::KernelTier tier) {
                    OvraMultiFrequencyParams params = {bands, 0.9F, 0.5F, 0, {}};
                    for (auto& band : params.band) band = {1.5F, 0.01F, 0.5F, 0.1F};
                    ovra::MultiFrequency(TonePicture(), Destination(kBytes), kWidth, kHeight,
                                         kRgb12, &params, tier);
                  });
  }
  RegisterMemcpy("multi_frequency", kBytes, kBytes, kPixels);
}

void RegisterForm(const char* name, ToneForm form, float colour, int32_t scale) {
  const std::string row =
      std::string(name) + "/scale" + std::to_string(scale) + (colour < 1.0F ? "/colour" : "");
  RegisterTiers(row, kPixels, [form, colour, scale](ovra::KernelTier tier) {
    const OvraHyperToneParams params = {1.0F, 0.6F, 0.4F, 1.2F, 0.12F, colour, scale, 0};
    void* context = nullptr;
    ovra::InitHyperTone(form, 12, kRgb12, &params, nullptr, &context);
    ovra::RunHyperTone(form, TonePicture(), Destination(kBytes), kWidth, kHeight, kRgb12, context,
                       tier);
    ovra::FreeAnyContext(&context);
  });
}

}  // namespace

void RegisterTone() {
  RegisterMultiFrequency();
  for (const int32_t scale : {3, 8}) {
    RegisterForm("hyper_tone", ToneForm::kHyperTone, 1, scale);
    RegisterForm("hyper_tone_light", ToneForm::kHyperToneLight, 1, scale);
    RegisterForm("hybrid_hyper_tone", ToneForm::kHybridHyperTone, 1, scale);
    RegisterForm("hybrid_hyper_tone_light", ToneForm::kHybridHyperToneLight, 1, scale);
  }
  RegisterForm("hybrid_hyper_tone", ToneForm::kHybridHyperTone, 0.5F, 8);
  RegisterMemcpy("hyper_tone", kBytes, kBytes, kPixels);
}

}  // namespace ovra_bench
