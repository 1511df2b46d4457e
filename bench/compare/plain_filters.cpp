// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "ovra/filter.h"
#include "plain.h"

namespace compare {
namespace {

// A plane of numbers.
struct Plane {
  Plane(int w, int h) : width(w), height(h), values(static_cast<size_t>(w) * h) {}
  int* Row(int y) { return &values[static_cast<size_t>(y) * width]; }
  const int* Row(int y) const { return &values[static_cast<size_t>(y) * width]; }

  int width;
  int height;
  std::vector<int> values;
};

// Of 10 bits, as the masks have it.
template <class Sample>
Plane Luminance(const Picture& source) {
  Plane plane(source.width(), source.height());
  const Sample* const in = SamplesOf<Sample>(&source);
  const int shift = source.depth_bits() - 4;  // from 64 parts to 10 bits
  for (size_t i = 0; i < plane.values.size(); ++i) {
    plane.values[i] = (19 * in[3 * i] + 38 * in[3 * i + 1] + 7 * in[3 * i + 2]) >> shift;
  }
  return plane;
}

Plane Blur(const Plane& plane, const std::vector<int32_t>& taps) {
  const auto count = static_cast<int>(taps.size());
  const int reach = count / 2;
  constexpr int kShift = 7;
  Plane across(plane.width, plane.height);
  for (int y = 0; y < plane.height; ++y) {
    const int* const in = plane.Row(y);
    for (int x = 0; x < plane.width; ++x) {
      int sum = 0;
      for (int k = 0; k < count; ++k) {
        sum += taps[static_cast<size_t>(k)] * in[Limit(x + k - reach, plane.width - 1)];
      }
      across.Row(y)[x] = sum;
    }
  }
  Plane result(plane.width, plane.height);
  int weight = 0;
  for (const int32_t tap : taps) weight += tap;
  for (int y = 0; y < plane.height; ++y) {
    int* const out = result.Row(y);
    for (int k = 0; k < count; ++k) {
      const int* const in = across.Row(Limit(y + k - reach, plane.height - 1));
      for (int x = 0; x < plane.width; ++x) out[x] += taps[static_cast<size_t>(k)] * in[x];
    }
    if (weight == 1 << kShift) {
      for (int x = 0; x < plane.width; ++x) out[x] >>= 2 * kShift;
    } else {
      for (int x = 0; x < plane.width; ++x) out[x] /= weight * weight;
    }
  }
  return result;
}

// Adds the change of luminance, of 10 bits, to all samples.
template <class Sample, class Change>
void AddChange(const Picture& source, Picture* target, const Change& change) {
  const Sample* const in = SamplesOf<Sample>(&source);
  Sample* const out = SamplesOf<Sample>(target);
  const size_t pixels = target->samples() / 3;
  const int max = target->max();
  for (size_t i = 0; i < pixels; ++i) {
    const int shift = 10 - source.depth_bits();
    const int wide = change(i);
    const int by = shift >= 0 ? wide >> shift : wide * (1 << -shift);
    for (size_t c = 0; c < 3; ++c)
      out[3 * i + c] = static_cast<Sample>(Limit(in[3 * i + c] + by, max));
  }
}

// In parts of 16384.
int Strength(const MaskCurves& curves, int level, int difference) {
  return curves.level[static_cast<size_t>(level)] *
         curves.difference[static_cast<size_t>(difference + OVRA_DIFFERENCE_TABLE_SIZE / 2)];
}

template <class Sample>
void MaskSamples(const Work& work, Picture* target) {
  const Plane plane = Luminance<Sample>(*work.source);
  const Plane blurred = Blur(plane, kMaskTaps[work.mode]);
  const MaskCurves curves(work);
  const auto amount = static_cast<int>((kMaskAmount - 1) * 256);
  AddChange<Sample>(*work.source, target, [&](size_t i) {
    const int y = plane.values[i];
    return (amount * Strength(curves, y, y - blurred.values[i]) >> 8) * (y - blurred.values[i]) >>
           14;
  });
}

void LuminanceMask(const Work& work, Picture* target) {
  if (target->sample_bytes() == 1) return MaskSamples<uint8_t>(work, target);
  MaskSamples<uint16_t>(work, target);
}

void DoubleMask(const Work& work, Picture* target) {
  const Plane plane = Luminance<uint8_t>(*work.source);
  const Plane coarse = Blur(plane, kCoarseTaps);
  const Plane fine = Blur(plane, kFineTaps);
  const MaskCurves curves(work);
  const auto middle = static_cast<int>(kCoarseAmount * 256);
  const auto details = static_cast<int>(kFineAmount * 256);
  AddChange<uint8_t>(*work.source, target, [&](size_t i) {
    const int y = plane.values[i];
    const int coarse_band = fine.values[i] - coarse.values[i];
    const int fine_band = y - fine.values[i];
    const int changed = (middle * Strength(curves, y, coarse_band) >> 14) * coarse_band +
                        (details * Strength(curves, y, fine_band) >> 14) * fine_band;
    return coarse.values[i] + (changed >> 8) - y;
  });
}

// Every pixel moves toward 49 neighbours, each by its likeness.
void EdgeFilter(const Work& work, Picture* target) {
  constexpr int kReach = 6;
  constexpr int kStep = 2;
  constexpr int kNeighbours = 49;
  constexpr int kFull = 19;
  constexpr int kNone = 41;
  int weights[3 * 255 + 1] = {};
  for (int d = 0; d < kNone; ++d) {
    weights[d] = 1024 * std::min(kNone - d, kNone - kFull) / (kNone - kFull);
  }
  const Picture& source = *work.source;
  const int width = source.width();
  const int height = source.height();
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const uint8_t* const centre = source.data() + 3 * (static_cast<size_t>(y) * width + x);
      int pulls[3] = {};
      for (int v = -kReach; v <= kReach; v += kStep) {
        for (int u = -kReach; u <= kReach; u += kStep) {
          const size_t at =
              static_cast<size_t>(Limit(y + v, height - 1)) * width + Limit(x + u, width - 1);
          const uint8_t* const other = source.data() + 3 * at;
          const int d0 = other[0] - centre[0];
          const int d1 = other[1] - centre[1];
          const int d2 = other[2] - centre[2];
          const int weight = weights[std::abs(d0) + std::abs(d1) + std::abs(d2)];
          pulls[0] += weight * d0 >> 10;
          pulls[1] += weight * d1 >> 10;
          pulls[2] += weight * d2 >> 10;
        }
      }
      uint8_t* const out = target->data() + (centre - source.data());
      for (int c = 0; c < 3; ++c) out[c] = static_cast<uint8_t>(centre[c] + pulls[c] / kNeighbours);
    }
  }
}

struct Recursion {
  uint32_t feedback;  // of 65536
  uint32_t input;
  uint32_t gain;
  int radius;
};

// There and back along one line.
void FilterLine(const Recursion& r, uint8_t* samples, size_t stride, size_t length,
                uint32_t* line) {
  const auto rounded = [](uint64_t value) { return value + 32768 >> 16; };
  uint64_t state = uint64_t{samples[0]} * r.gain;
  line[0] = uint32_t{samples[0]} << 16;
  for (size_t i = 1; i < length; ++i) {
    state = rounded(state * r.feedback + (uint64_t{samples[i * stride]} << 16));
    line[i] = static_cast<uint32_t>(state * r.input);
  }
  for (size_t i = 0; i < static_cast<size_t>(r.radius); ++i) {
    state = rounded(state * r.feedback + (uint64_t{samples[(length - 1) * stride]} << 16));
    line[length + i] = static_cast<uint32_t>(state * r.input);
  }
  for (size_t i = length + static_cast<size_t>(r.radius); i-- > 0;) {
    state = rounded(state * r.feedback + line[i]);
    if (i < length) {
      samples[i * stride] = static_cast<uint8_t>(std::min<uint64_t>(state * r.input >> 16, 255));
    }
  }
}

void SoftFocus(const Work& work, Picture* target) {
  constexpr double kReferenceSide = 2503;
  const auto width = static_cast<size_t>(target->width());
  const auto height = static_cast<size_t>(target->height());
  const double shorter = static_cast<double>(std::min(width, height));
  const int radius = static_cast<int>(kFocusRadius * shorter / kReferenceSide + 0.5);
  std::copy_n(work.source->data(), target->bytes(), target->data());
  if (radius == 0) return;
  const double decay = std::pow(kFocusDecay, 1.0 / radius);
  const auto feedback = static_cast<uint32_t>(decay * 65536 + 0.5);
  const Recursion recursion = {feedback, 65536 - feedback,
                               static_cast<uint32_t>(1 / (1 - decay) + 0.5), radius};
  std::vector<uint32_t> line(std::max(width, height) + static_cast<size_t>(radius));
  for (size_t y = 0; y < height; ++y) {
    for (size_t c = 0; c < 3; ++c) {
      FilterLine(recursion, target->data() + 3 * width * y + c, 3, width, line.data());
    }
  }
  for (size_t x = 0; x < 3 * width; ++x) {
    FilterLine(recursion, target->data() + x, 3 * width, height, line.data());
  }
  const auto share = static_cast<uint32_t>(kFocusMix * 65536);
  for (size_t i = 0; i < target->bytes(); ++i) {
    const uint32_t sum = work.source->data()[i] * (65536 - share) + target->data()[i] * share;
    target->data()[i] = static_cast<uint8_t>(sum >> 16);
  }
}

}  // namespace

void AddPlainFilters(std::vector<Maker>* makers) {
  makers->insert(makers->end(),
                 {PlainLoop("luminance mask", LuminanceMask), PlainLoop("double mask", DoubleMask),
                  PlainLoop("edge filter", EdgeFilter), PlainLoop("soft focus", SoftFocus)});
}

}  // namespace compare
