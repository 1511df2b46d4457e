// SPDX-License-Identifier: MIT
#include "filter/multi_frequency/multi_frequency.h"

#include "tone_picture.h"

namespace ovra_bench {

void RegisterMultiFrequency() {
  for (const uint32_t bands : {4U, 8U}) {
    RegisterTiers("multi_frequency/bands" + std::to_string(bands), kTonePixels,
                  [bands](ovra::KernelTier tier) {
                    OvraMultiFrequencyParams params = {bands, 0.9F, 0.5F, 0, {}};
                    for (auto& band : params.band) band = {1.5F, 0.01F, 0.5F, 0.1F};
                    ovra::MultiFrequency(TonePicture(), Destination(kToneBytes), kWidth, kHeight,
                                         kRgb12, &params, tier);
                  });
  }
  RegisterMemcpy("multi_frequency", kToneBytes, kToneBytes, kTonePixels);
}

}  // namespace ovra_bench
