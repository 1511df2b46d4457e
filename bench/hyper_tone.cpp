// SPDX-License-Identifier: MIT
#include "tone/hyper_tone/hyper_tone.h"

#include "tone_picture.h"

namespace ovra_bench {
namespace {

using ovra::ToneForm;

void RegisterForm(const char* name, ToneForm form, float colour, int32_t scale) {
  const std::string row =
      std::string(name) + "/scale" + std::to_string(scale) + (colour < 1.0F ? "/colour" : "");
  RegisterTiers(row, kTonePixels, [form, colour, scale](ovra::KernelTier tier) {
    const OvraHyperToneParams params = {1.0F, 0.6F, 0.4F, 1.2F, 0.12F, colour, scale, 0};
    void* context = nullptr;
    ovra::InitHyperTone(form, 12, kRgb12, &params, nullptr, &context);
    ovra::RunHyperTone(form, TonePicture(), Destination(kToneBytes), kWidth, kHeight, kRgb12,
                       context, tier);
    ovra::FreeAnyContext(&context);
  });
}

}  // namespace

void RegisterHyperTone() {
  for (const int32_t scale : {3, 8}) {
    RegisterForm("hyper_tone", ToneForm::kHyperTone, 1, scale);
    RegisterForm("hyper_tone_light", ToneForm::kHyperToneLight, 1, scale);
    RegisterForm("hybrid_hyper_tone", ToneForm::kHybridHyperTone, 1, scale);
    RegisterForm("hybrid_hyper_tone_light", ToneForm::kHybridHyperToneLight, 1, scale);
  }
  RegisterForm("hybrid_hyper_tone", ToneForm::kHybridHyperTone, 0.5F, 8);
  RegisterMemcpy("hyper_tone", kToneBytes, kToneBytes, kTonePixels);
}

}  // namespace ovra_bench
