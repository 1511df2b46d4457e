// SPDX-License-Identifier: MIT
#include "clarity.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace ovra_host {
namespace {

constexpr int kMaxBands = OVRA_MULTI_FREQUENCY_MAX_BANDS;
constexpr double kMaxNoise = 0.25;

// What a slider asks of a band at full strength.
struct Setting {
  int band;  // from 1, for a picture of a megapixel
  double gain;
  double limit;
};

constexpr Setting kDetail[] = {{1, 2, 0.08}, {2, 2, 0.08}};
constexpr Setting kClarity[] = {{3, 1.2, 0.1}, {4, 1.5, 0.1}, {5, 1.5, 0.1}, {6, 1.3, 0.1}};
constexpr Setting kSoftSkin[] = {{2, 0.5, 0.06}, {3, 0.4, 0.06}, {4, 0.7, 0.06}};
constexpr Setting kFlatten[] = {{4, 1.2, 0.1}, {5, 1.2, 0.1}, {6, 1.2, 0.1}};
constexpr double kFlattenedBase = 0.8;

// What is left of white noise in the finest bands, as a factor on its standard deviation up to which
// amplitudes are noise, and the share that is taken away at full strength.
constexpr double kNoiseReach[] = {2.5, 1.2, 0.6};
constexpr double kNoiseDamping[] = {1, 1, 0.7};

// Detail below this is noise even in the cleanest picture.
constexpr double kLeastNoise = 0.004;

// Bands double in size; pictures with four times the pixels show the same shapes one band coarser.
int BandShift(int32_t width, int32_t height) {
  constexpr double kMegapixel = 1e6;
  const double megapixels = static_cast<double>(width) * height / kMegapixel;
  return std::clamp(static_cast<int>(std::lround(std::log2(megapixels) / 2)), -2, 2);
}

template <size_t kCount>
void Apply(const Setting (&settings)[kCount], double strength, int shift,
           OvraMultiFrequencyParams* params) {
  if (strength <= 0) return;
  for (const Setting& setting : settings) {
    const int band = std::clamp(setting.band + shift, 1, kMaxBands);
    OvraMultiFrequencyBand& entry = params->band[band - 1];
    entry.gain = static_cast<float>(entry.gain * (1 + strength * (setting.gain - 1)));
    entry.limit = std::min(entry.limit, static_cast<float>(setting.limit));
    params->band_count = std::max(params->band_count, static_cast<uint32_t>(band));
  }
}

}  // namespace

OvraMultiFrequencyParams ClarityParams(const ClaritySliders& sliders, int32_t width, int32_t height,
                                       double noise) {
  OvraMultiFrequencyParams params = {};
  params.band_count = 1;
  params.base_gain = static_cast<float>(1 + sliders.flatten * (kFlattenedBase - 1));
  params.pivot = 0.5F;
  for (OvraMultiFrequencyBand& band : params.band) band = {1, 0, 0, 1};
  const int shift = BandShift(width, height);
  Apply(kDetail, sliders.detail, 0, &params);  // texture is as fine as pixels at any size
  Apply(kClarity, sliders.clarity, shift, &params);
  Apply(kSoftSkin, sliders.soft_skin, shift, &params);
  Apply(kFlatten, sliders.flatten, shift, &params);
  if (sliders.denoise > 0) params.band_count = std::max(params.band_count, 3U);
  for (size_t k = 0; k < std::size(kNoiseReach) && k < params.band_count; ++k) {
    OvraMultiFrequencyBand& band = params.band[k];
    const double reach = std::max(kNoiseReach[k] * noise, k < 2 ? kLeastNoise : 0);
    band.noise = static_cast<float>(std::min(reach, kMaxNoise));
    band.damping = static_cast<float>(sliders.denoise * kNoiseDamping[k]);
    band.limit = std::max(band.limit, band.noise);
  }
  return params;
}

double EstimateNoise(const Image& image) {
  constexpr double kNorm = 6;         // root of the sum of the squares of the mask's weights
  constexpr double kMedian = 0.6745;  // of the absolute value of a normal variable of deviation 1
  constexpr size_t kMaxProbes = 1 << 20;
  if (image.width() < 3 || image.height() < 3) return 0;
  const uint32_t channels = image.channels();
  const uint32_t channel = channels == 1 ? 0 : 1;  // green is most of the brightness
  const auto sample = [&](int32_t x, int32_t y) -> int32_t {
    const size_t i = static_cast<size_t>(x) * channels + channel;
    return image.bytes_per_sample() == 1 ? image.Row(y)[i] : image.Row16(y)[i];
  };
  const size_t inner =
      static_cast<size_t>(image.width() - 2) * static_cast<size_t>(image.height() - 2);
  const auto step = static_cast<int32_t>(std::ceil(std::sqrt(double(inner) / kMaxProbes)));
  std::vector<int32_t> found;
  for (int32_t y = 1; y + 1 < image.height(); y += step) {
    for (int32_t x = 1; x + 1 < image.width(); x += step) {
      const int32_t corners =
          sample(x - 1, y - 1) + sample(x + 1, y - 1) + sample(x - 1, y + 1) + sample(x + 1, y + 1);
      const int32_t sides =
          sample(x, y - 1) + sample(x - 1, y) + sample(x + 1, y) + sample(x, y + 1);
      found.push_back(std::abs(corners - 2 * sides + 4 * sample(x, y)));
    }
  }
  const auto middle = found.begin() + static_cast<std::ptrdiff_t>(found.size() / 2);
  std::nth_element(found.begin(), middle, found.end());
  return *middle / (kMedian * kNorm) / image.max_sample();
}

}  // namespace ovra_host
