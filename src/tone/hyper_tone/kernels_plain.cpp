// SPDX-License-Identifier: MIT
#include <algorithm>

#include "tone/hyper_tone/kernels.h"
#include "tone/pyramid/expand.h"
#include "tone/pyramid/soft_limit.h"

namespace ovra {
namespace {

struct Pixel {
  int32_t samples[3];

  Pixel(const uint16_t* source, const TonePixels& format) {
    for (int c = 0; c < 3; ++c) samples[c] = std::min<int32_t>(source[c], format.MaxSample());
  }

  int32_t Weighted(const TonePixels& format) const {
    return format.weights[0] * samples[0] + format.weights[1] * samples[1] +
           format.weights[2] * samples[2];
  }
  int32_t Luminance(const TonePixels& format) const {
    return Weighted(format) >> (format.depth_bits - 9);
  }
  int32_t Strongest() const { return std::max({samples[0], samples[1], samples[2]}); }
  int32_t Brightness(const TonePixels& format) const {
    return (Luminance(format) + (Strongest() << (15 - format.depth_bits)) + 1) >> 1;
  }
};

void Brightness(const uint16_t* source, int16_t* brightness, std::ptrdiff_t pixels,
                const TonePixels& format) {
  for (std::ptrdiff_t i = 0; i < pixels; ++i) {
    brightness[i] = static_cast<int16_t>(Pixel(source + 3 * i, format).Brightness(format));
  }
}

void Blocks(const uint16_t* const* rows, int16_t* brightness, std::ptrdiff_t pixels,
            const TonePixels& format) {
  for (std::ptrdiff_t x = 0; x < pixels; x += 4) {
    int32_t sums[3] = {};
    for (std::ptrdiff_t k = 0; k < 16; ++k) {
      const Pixel pixel(rows[k / 4] + 3 * std::min(x + k % 4, pixels - 1), format);
      for (int c = 0; c < 3; ++c) sums[c] += pixel.samples[c];
    }
    const int32_t weighted =
        format.weights[0] * sums[0] + format.weights[1] * sums[1] + format.weights[2] * sums[2];
    const int32_t luminance = weighted >> (format.depth_bits - 5);
    const int32_t sum = std::max({sums[0], sums[1], sums[2]});
    const int32_t strongest = format.depth_bits == 10 ? sum << 1 : sum >> 1;
    brightness[x / 4] = static_cast<int16_t>((luminance + strongest + 1) >> 1);
  }
}

void FineDetail(const uint16_t* source, const int16_t* blocks, const SoftLimit& limit,
                const FineRows& rows, const RowSpan& pixels, const TonePixels& format) {
  for (std::ptrdiff_t i = pixels.first; i < pixels.end; ++i) {
    const int32_t brightness = Pixel(source + 3 * i, format).Brightness(format);
    const int32_t detail = Limited(brightness - EnlargedAt(blocks, i), limit);
    rows.brightness[i] = static_cast<int16_t>(brightness);
    rows.detail[i] = static_cast<int16_t>(detail);
    if (rows.rest != nullptr) rows.rest[i] = static_cast<int16_t>(brightness - detail);
  }
}

int32_t GainAt(int32_t brightness, int32_t detail, const ToneGains& gains) {
  const int32_t base = std::clamp(brightness - detail, 0, 32767);
  const int32_t entry = gains.table[(base + 4) >> 3];
  const int32_t gain = entry & 0xFFFF;
  const int32_t slope = entry >> 16;
  return std::clamp(gain + ((4 * detail * slope + 16384) >> 15), 0, 32767);
}

int32_t Scaled(int32_t sample, int32_t gain) {
  return (sample * gain + 4096) >> 13;
}

// The gain, or the greatest one that keeps the strongest channel within the depth.
int32_t UnclippedGain(const Pixel& pixel, int32_t gain, int32_t max_sample) {
  const int32_t strongest = pixel.Strongest();
  return Scaled(strongest, gain) > max_sample ? max_sample * 8192 / strongest : gain;
}

void Apply(const uint16_t* source, const DetailRow& row, const ToneGains& gains,
           uint16_t* destination, std::ptrdiff_t pixels, const TonePixels& format) {
  for (std::ptrdiff_t i = 0; i < pixels; ++i) {
    const Pixel pixel(source + 3 * i, format);
    const int32_t gain = GainAt(row.brightness[i], row.detail[i], gains);
    for (int c = 0; c < 3; ++c) {
      const int32_t scaled = Scaled(pixel.samples[c], gain);
      destination[3 * i + c] = static_cast<uint16_t>(std::min(scaled, format.MaxSample()));
    }
  }
}

void ApplyUnclipped(const uint16_t* source, const DetailRow& row, const ToneGains& gains,
                    uint16_t* destination, std::ptrdiff_t pixels, const TonePixels& format) {
  for (std::ptrdiff_t i = 0; i < pixels; ++i) {
    const Pixel pixel(source + 3 * i, format);
    const int32_t gain =
        UnclippedGain(pixel, GainAt(row.brightness[i], row.detail[i], gains), format.MaxSample());
    for (int c = 0; c < 3; ++c) {
      destination[3 * i + c] = static_cast<uint16_t>(Scaled(pixel.samples[c], gain));
    }
  }
}

void ApplyColour(const uint16_t* source, const DetailRow& row, const ToneGains& gains,
                 uint16_t* destination, std::ptrdiff_t pixels, const TonePixels& format) {
  const int32_t up = 15 - format.depth_bits;
  const int32_t down = 28 - format.depth_bits;
  for (std::ptrdiff_t i = 0; i < pixels; ++i) {
    const Pixel pixel(source + 3 * i, format);
    const int32_t gain =
        UnclippedGain(pixel, GainAt(row.brightness[i], row.detail[i], gains), format.MaxSample());
    const int32_t kept = ((gain - 8192) * gains.keep + 16384) >> 15;
    const int32_t added = pixel.Luminance(format) * kept + (1 << (down - 1));
    for (int c = 0; c < 3; ++c) {
      const int32_t sample = ((pixel.samples[c] << up) * (gain - kept) + added) >> down;
      destination[3 * i + c] = static_cast<uint16_t>(std::clamp(sample, 0, format.MaxSample()));
    }
  }
}

}  // namespace

const HyperToneKernels kHyperTonePlain = {Brightness, Blocks,         FineDetail,
                                          Apply,      ApplyUnclipped, ApplyColour};

}  // namespace ovra
