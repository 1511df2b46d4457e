// SPDX-License-Identifier: MIT
// What trimming at any angle must hold: it agrees with rotation, with itself at other angles, places
// and row orders, and with its kernel in double precision.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "ovra/ovra.h"
#include "support/random.h"

namespace {

using ovra_test::Random;
using ovra_test::RandomInt;

constexpr OvraPixelFormatCode kFormats[] = {0x0000, 0x0120, 0x1030, 0x0004, 0x0128, 0x1038};
constexpr double kPi = 3.14159265358979323846;
constexpr OvraPixelFormatCode kBottomUp = 0x1000000;

// A picture without padding; samples are held in 16 bits.
struct Picture {
  int32_t width;
  int32_t height;
  OvraPixelFormatCode format;
  std::vector<uint16_t> samples = std::vector<uint16_t>(
      static_cast<size_t>(width) * static_cast<size_t>(height) * ((format >> 4 & 15) + 1));

  int32_t Channels() const { return static_cast<int32_t>(format >> 4 & 15) + 1; }
  int32_t Max() const { return (1 << ((format & 15) + 8)) - 1; }
  uint16_t& At(int32_t x, int32_t y, int32_t c) {
    return samples[static_cast<size_t>((y * width + x) * Channels() + c)];
  }
  std::vector<uint8_t> Pack() const {
    if ((format & 15) == 0) return {samples.begin(), samples.end()};
    const auto* bytes = reinterpret_cast<const uint8_t*>(samples.data());
    return {bytes, bytes + 2 * samples.size()};
  }
  void Unpack(const std::vector<uint8_t>& bytes) {
    for (size_t i = 0; i < samples.size(); ++i) {
      samples[i] = (format & 15) == 0 ? bytes[i]
                                      : static_cast<uint16_t>(bytes[2 * i] | bytes[2 * i + 1] << 8);
    }
  }
  bool operator==(const Picture& other) const {
    return width == other.width && height == other.height && samples == other.samples;
  }
};

Picture Noise(Random& random, int32_t width, int32_t height, OvraPixelFormatCode format) {
  Picture picture{width, height, format};
  ovra_test::FillSamples(random, picture.samples.data(),
                         picture.samples.data() + picture.samples.size(),
                         static_cast<uint32_t>(picture.Max()));
  return picture;
}

struct Cut {
  int32_t x, y, width, height, angle;
};

Picture Trim(const Picture& source, const Cut& cut, const uint16_t* fill = nullptr) {
  Picture result{cut.width, cut.height, source.format};
  std::vector<uint8_t> out = result.Pack();
  EXPECT_EQ(OvraFreeTrimming(source.Pack().data(), source.width, source.height, out.data(),
                             cut.width, cut.height, source.format, cut.x, cut.y, cut.angle, fill),
            OVRA_OK);
  result.Unpack(out);
  return result;
}

Picture Rotate(const Picture& source, int32_t mode) {
  Picture result = mode % 2 == 0 ? Picture{source.width, source.height, source.format}
                                 : Picture{source.height, source.width, source.format};
  std::vector<uint8_t> out = result.Pack();
  EXPECT_EQ(OvraRotateImage(source.Pack().data(), out.data(), source.width, source.height,
                            source.format, mode),
            OVRA_OK);
  result.Unpack(out);
  return result;
}

// Pixel by pixel, with edges repeated or a fill colour around.
Picture CutOut(Picture source, int32_t x, int32_t y, int32_t width, int32_t height,
               const uint16_t* fill) {
  Picture region{width, height, source.format};
  for (int32_t j = 0; j < height; ++j) {
    for (int32_t i = 0; i < width; ++i) {
      const int32_t u = std::clamp(x + i, 0, source.width - 1);
      const int32_t v = std::clamp(y + j, 0, source.height - 1);
      const bool inside = u == x + i && v == y + j;
      for (int32_t c = 0; c < source.Channels(); ++c) {
        region.At(i, j, c) = inside || fill == nullptr
                                 ? source.At(u, v, c)
                                 : static_cast<uint16_t>(std::min<int>(fill[c], source.Max()));
      }
    }
  }
  return region;
}

Cut RandomCut(Random& random, const Picture& source) {
  return {RandomInt(random, -40, source.width + 10), RandomInt(random, -40, source.height + 10),
          RandomInt(random, 8, 140), RandomInt(random, 8, 140), RandomInt(random, -3600, 7200)};
}

int32_t FloorHalf(int32_t value) {
  return value >> 1;
}

constexpr uint16_t kFill[] = {200, 7, 60000, 90};

TEST(FreeTrimming, QuarterTurnsAreRotations) {
  Random random(1);
  for (int32_t angle = -4500; angle <= 4500; angle += 900) {
    for (const OvraPixelFormatCode format : kFormats) {
      Picture source = Noise(random, RandomInt(random, 1, 150), RandomInt(random, 1, 150), format);
      const Cut cut = {RandomInt(random, -90, 90), RandomInt(random, -90, 90),
                       RandomInt(random, 8, 150), RandomInt(random, 8, 150), angle};
      const int32_t mode = ((angle / 900) % 4 + 4) % 4;
      const uint16_t* const fill = RandomInt(random, 0, 1) == 0 ? nullptr : kFill;
      const bool odd = mode % 2 != 0;
      const Picture region =
          odd ? CutOut(source, cut.x + FloorHalf(cut.width - cut.height),
                       cut.y + FloorHalf(cut.height - cut.width), cut.height, cut.width, fill)
              : CutOut(source, cut.x, cut.y, cut.width, cut.height, fill);
      EXPECT_TRUE(Trim(source, cut, fill) == Rotate(region, mode)) << angle << " " << format;
    }
  }
}

TEST(FreeTrimming, AgreesWithItselfTurnedMovedAndFlipped) {
  Random random(2);
  for (int trial = 0; trial < 200; ++trial) {
    const Picture source =
        Noise(random, RandomInt(random, 1, 200), RandomInt(random, 1, 200), kFormats[trial % 6]);
    const uint16_t* const fill = trial % 3 == 0 ? kFill : nullptr;
    const Cut cut = RandomCut(random, source);
    const Picture result = Trim(source, cut, fill);

    Cut turned = cut;
    turned.angle += 1800;
    if (cut.angle % 900 != 0) {
      EXPECT_TRUE(Trim(source, turned, fill) == Rotate(result, OVRA_ROTATE_HALF)) << trial;
    }
    if ((cut.width + cut.height) % 2 == 0) {
      const int32_t shift = (cut.width - cut.height) / 2;
      const Cut quarter = {cut.x + shift, cut.y - shift, cut.height, cut.width, cut.angle + 900};
      EXPECT_TRUE(Trim(source, quarter, fill) == Rotate(result, OVRA_ROTATE_QUARTER_LEFT)) << trial;
    }
    const int32_t a = RandomInt(random, 0, (cut.width - 8) / 2);
    const int32_t b = RandomInt(random, 0, (cut.height - 8) / 2);
    const Cut inner = {cut.x + a, cut.y + b, cut.width - 2 * a, cut.height - 2 * b, cut.angle};
    EXPECT_TRUE(Trim(source, inner, fill) ==
                CutOut(result, a, b, inner.width, inner.height, nullptr))
        << trial;
    Picture flipped = Rotate(source, OVRA_ROTATE_FLIP);
    flipped.format |= kBottomUp;
    const Picture seen = Trim(flipped, cut, fill);
    EXPECT_TRUE(seen.samples == Rotate(result, OVRA_ROTATE_FLIP).samples) << trial;
  }
}

// L(d) = sinc(d) sinc(d / 3), normalised.
std::vector<double> Weights(int32_t phase) {
  const auto sinc = [](double d) { return d == 0 ? 1.0 : std::sin(kPi * d) / (kPi * d); };
  std::vector<double> weights;
  double sum = 0;
  for (int t = 0; t < 6; ++t) {
    const double d = t - 2 - phase / 256.0;
    weights.push_back(sinc(d) * sinc(d / 3));
    sum += weights.back();
  }
  for (double& weight : weights) weight /= sum;
  return weights;
}

// The kernel in double precision at the positions rounded to 1/256: within one code at 8 bits and
// within 16 codes at 16 bits. Extremes of the range among the noise.
TEST(FreeTrimming, IsCloseToItsKernelInDoublePrecision) {
  Random random(3);
  for (int trial = 0; trial < 60; ++trial) {
    Picture source = Noise(random, 90, 70, kFormats[trial % 6]);
    if (trial % 2 == 0) {
      for (uint16_t& sample : source.samples) {
        sample = static_cast<uint16_t>(RandomInt(random, 0, 1) * source.Max());
      }
    }
    const Cut cut = RandomCut(random, source);
    Picture result = Trim(source, cut);
    const double radians = cut.angle * kPi / 1800;
    const bool moves = cut.angle % 900 == 0;
    for (int32_t j = 0; j < cut.height && !moves; ++j) {
      for (int32_t i = 0; i < cut.width; ++i) {
        const double a = i - (cut.width - 1) * 0.5;
        const double b = j - (cut.height - 1) * 0.5;
        const double u =
            cut.x + (cut.width - 1) * 0.5 + a * std::cos(radians) - b * std::sin(radians);
        const double v =
            cut.y + (cut.height - 1) * 0.5 + a * std::sin(radians) + b * std::cos(radians);
        // Near a tie the position may be rounded otherwise than here.
        const auto is_tie = [](double p) {
          return std::abs(p * 256 - std::floor(p * 256) - 0.5) < 0.01;
        };
        if (is_tie(u) || is_tie(v)) continue;
        const auto pu = static_cast<int32_t>(std::floor(u * 256 + 0.5));
        const auto pv = static_cast<int32_t>(std::floor(v * 256 + 0.5));
        const std::vector<double> across = Weights(pu & 255);
        const std::vector<double> down = Weights(pv & 255);
        const int32_t c = (i + j) % source.Channels();
        double sum = 0;
        for (int m = 0; m < 6; ++m) {
          for (int n = 0; n < 6; ++n) {
            sum += across[static_cast<size_t>(m)] * down[static_cast<size_t>(n)] *
                   source.At(std::clamp((pu >> 8) - 2 + m, 0, source.width - 1),
                             std::clamp((pv >> 8) - 2 + n, 0, source.height - 1), c);
          }
        }
        const double expected = std::clamp(sum, 0.0, static_cast<double>(source.Max()));
        const double tolerance = source.Max() == 255 ? 1.1 : 16.5;
        ASSERT_NEAR(result.At(i, j, c), expected, tolerance) << trial << " " << i << " " << j;
      }
    }
  }
}

// Far outside all is the nearest edge, or the fill; one colour stays that colour; angles are taken
// modulo a whole turn.
TEST(FreeTrimming, HoldsAtTheExtremes) {
  constexpr int32_t kMax = 0x7FFFFFFF;
  Picture source{30, 20, 0x0124};
  for (uint16_t& sample : source.samples) sample = 3000;
  for (const int32_t angle : {0, 1, 450, 899, 900, -1, 3599, -kMax - 1, kMax}) {
    for (const int32_t x : {-kMax - 1, -70000, 0, kMax - 7, kMax}) {
      for (const int32_t y : {-kMax - 1, 5, kMax}) {
        const Cut cut = {x, y, 20, 17, angle};
        for (const uint16_t sample : Trim(source, cut).samples) ASSERT_EQ(sample, 3000);
        if (x == 0 && y == 5) continue;
        Picture filled = Trim(source, cut, kFill);
        ASSERT_EQ(filled.At(3, 4, 0), 200);
        ASSERT_EQ(filled.At(3, 4, 2), 4095);
      }
    }
  }
  Random random(4);
  const Picture noise = Noise(random, 60, 60, 0x0120);
  EXPECT_TRUE(Trim(noise, {5, 5, 40, 40, -1}) == Trim(noise, {5, 5, 40, 40, 3599}));
  EXPECT_TRUE(Trim(noise, {5, 5, 40, 40, 0}) == Trim(noise, {5, 5, 40, 40, 3600}));
}

// At an angle samples beyond their depth are limited, also at the exact centre; a quarter turn moves
// them as they are.
TEST(FreeTrimming, LimitsSamplesOnlyWhereItFilters) {
  Picture source{40, 40, 0x0002};
  for (uint16_t& sample : source.samples) sample = 5000;
  for (const uint16_t sample : Trim(source, {0, 0, 41, 41, 7}).samples) ASSERT_EQ(sample, 1023);
  for (const uint16_t sample : Trim(source, {0, 0, 41, 41, 2700}).samples) ASSERT_EQ(sample, 5000);
}

}  // namespace
