// SPDX-License-Identifier: MIT
// What trimming at any angle must hold: it agrees with rotation, with itself at other angles, places
// and row orders, and with its kernel in double precision.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <complex>
#include <cstring>
#include <numeric>
#include <vector>

#include "ovra/ovra.h"
#include "support/random.h"

namespace ovra_test {
namespace {

using Bytes = std::vector<uint8_t>;

constexpr OvraPixelFormatCode kFormats[] = {0x0000, 0x0120, 0x1030, 0x0004, 0x0128, 0x1038};
constexpr double kPi = 3.14159265358979323846;
constexpr OvraPixelFormatCode kBottomUp = 0x1000000;

// A picture without padding.
struct Picture {
  int32_t width;
  int32_t height;
  OvraPixelFormatCode format;
  int32_t channels = static_cast<int32_t>(format >> 4 & 15) + 1;
  int32_t max = (256 << (format & 15)) - 1;
  int32_t sample_bytes = max == 255 ? 1 : 2;
  Bytes bytes = Bytes(static_cast<size_t>(width * height * channels * sample_bytes));

  uint8_t* Pixel(int32_t x, int32_t y) {
    return bytes.data() + (y * width + x) * channels * sample_bytes;
  }
  int32_t At(int32_t x, int32_t y, int32_t c) {
    const uint8_t* const sample = Pixel(x, y) + c * sample_bytes;
    return sample_bytes == 1 ? *sample : sample[0] | sample[1] << 8;
  }
  void Set(int32_t x, int32_t y, int32_t c, int32_t value) {
    std::memcpy(Pixel(x, y) + c * sample_bytes, &value, static_cast<size_t>(sample_bytes));
  }
  bool operator==(const Picture&) const = default;
};

// Each sample from `draw`, which gets its column, row and channel.
Picture Drawn(int32_t width, int32_t height, OvraPixelFormatCode format, const auto& draw) {
  Picture picture{width, height, format};
  for (int32_t i = 0; i < width * height * picture.channels; ++i) {
    const int32_t pixel = i / picture.channels;
    picture.Set(0, 0, i, draw(pixel % width, pixel / width, i % picture.channels));
  }
  return picture;
}

Picture Flat(int32_t width, int32_t height, OvraPixelFormatCode format, int32_t level) {
  return Drawn(width, height, format, [level](int32_t, int32_t, int32_t) { return level; });
}

// Extremes of the range among it, or nothing else.
Picture Noise(Random& random, int32_t width, int32_t height, OvraPixelFormatCode format,
              bool is_extreme = false) {
  const int32_t max = Picture{1, 1, format}.max;
  return Drawn(width, height, format, [&](int32_t, int32_t, int32_t) {
    const int32_t kind = RandomInt(random, 0, is_extreme ? 1 : 3);
    return kind == 0 ? 0 : kind == 1 ? max : RandomInt(random, 0, max);
  });
}

struct Cut {
  int32_t x, y, width, height, angle;
};

Picture Trim(const Picture& source, const Cut& cut, const uint16_t* fill = nullptr) {
  Picture result{cut.width, cut.height, source.format};
  EXPECT_EQ(OvraFreeTrimming(source.bytes.data(), source.width, source.height, result.bytes.data(),
                             cut.width, cut.height, source.format, cut.x, cut.y, cut.angle, fill),
            OVRA_OK);
  return result;
}

Picture Rotate(const Picture& source, int32_t mode) {
  Picture result = source;
  if (mode % 2 != 0) std::swap(result.width, result.height);
  EXPECT_EQ(OvraRotateImage(source.bytes.data(), result.bytes.data(), source.width, source.height,
                            source.format, mode),
            OVRA_OK);
  return result;
}

// Pixel by pixel, with edges repeated or a fill colour around.
Picture CutOut(Picture source, int32_t x, int32_t y, int32_t width, int32_t height,
               const uint16_t* fill = nullptr) {
  return Drawn(width, height, source.format, [&](int32_t i, int32_t j, int32_t c) {
    const int32_t u = std::clamp(x + i, 0, source.width - 1);
    const int32_t v = std::clamp(y + j, 0, source.height - 1);
    const bool is_filled = fill != nullptr && (u != x + i || v != y + j);
    return is_filled ? std::min<int32_t>(fill[c], source.max) : source.At(u, v, c);
  });
}

Cut RandomCut(Random& random, const Picture& source) {
  return {RandomInt(random, -40, source.width + 10), RandomInt(random, -40, source.height + 10),
          RandomInt(random, 8, 140), RandomInt(random, 8, 140), RandomInt(random, -3600, 7200)};
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
      Cut turned = cut;  // about its middle, half pixels rounded down
      if (mode % 2 != 0) {
        turned = {cut.x + ((cut.width - cut.height) >> 1), cut.y + ((cut.height - cut.width) >> 1),
                  cut.height, cut.width, 0};
      }
      const Picture region = CutOut(source, turned.x, turned.y, turned.width, turned.height, fill);
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
    EXPECT_TRUE(Trim(source, inner, fill) == CutOut(result, a, b, inner.width, inner.height))
        << trial;
    Picture flipped = Rotate(source, OVRA_ROTATE_FLIP);
    flipped.format |= kBottomUp;
    EXPECT_EQ(Trim(flipped, cut, fill).bytes, Rotate(result, OVRA_ROTATE_FLIP).bytes) << trial;
  }
}

// Of six places; L(d) = sinc(d) sinc(d / 3), normalised.
std::array<double, 6> Weights(int32_t phase) {
  const auto sinc = [](double d) { return d == 0 ? 1.0 : std::sin(kPi * d) / (kPi * d); };
  std::array<double, 6> weights;
  for (int t = 0; t < 6; ++t) {
    const double d = t - 2 - phase / 256.0;
    weights[static_cast<size_t>(t)] = sinc(d) * sinc(d / 3);
  }
  const double sum = std::accumulate(weights.begin(), weights.end(), 0.0);
  for (double& weight : weights) weight /= sum;
  return weights;
}

// The kernel in double precision at the positions rounded to 1/256: within one code at 8 bits and
// within 16 codes at 16 bits.
TEST(FreeTrimming, IsCloseToItsKernelInDoublePrecision) {
  Random random(3);
  for (int trial = 0; trial < 60; ++trial) {
    Picture source = Noise(random, 90, 70, kFormats[trial % 6], trial % 2 == 0);
    const Cut cut = RandomCut(random, source);
    Picture result = Trim(source, cut);
    if (cut.angle % 900 == 0) continue;
    using Point = std::complex<double>;
    const Point middle((cut.width - 1) * 0.5, (cut.height - 1) * 0.5);
    const Point turn = std::polar(1.0, cut.angle * kPi / 1800);
    for (int32_t j = 0; j < cut.height; ++j) {
      for (int32_t i = 0; i < cut.width; ++i) {
        const Point position = Point(cut.x, cut.y) + middle + (Point(i, j) - middle) * turn;
        // Near a tie the position may be rounded otherwise than here.
        const auto is_tie = [](double p) {
          return std::abs(p * 256 - std::floor(p * 256) - 0.5) < 0.01;
        };
        if (is_tie(position.real()) || is_tie(position.imag())) continue;
        const auto pu = static_cast<int32_t>(std::floor(position.real() * 256 + 0.5));
        const auto pv = static_cast<int32_t>(std::floor(position.imag() * 256 + 0.5));
        const auto across = Weights(pu & 255);
        const auto down = Weights(pv & 255);
        const int32_t c = (i + j) % source.channels;
        double sum = 0;
        for (int32_t n = 0; n < 36; ++n) {
          const int32_t x = std::clamp((pu >> 8) - 2 + n % 6, 0, source.width - 1);
          const int32_t y = std::clamp((pv >> 8) - 2 + n / 6, 0, source.height - 1);
          sum += across[static_cast<size_t>(n % 6)] * down[static_cast<size_t>(n / 6)] *
                 source.At(x, y, c);
        }
        const double expected = std::clamp(sum, 0.0, static_cast<double>(source.max));
        const double tolerance = source.max == 255 ? 1.1 : 16.5;
        ASSERT_NEAR(result.At(i, j, c), expected, tolerance) << trial << " " << i << " " << j;
      }
    }
  }
}

// Far outside all is the nearest edge, or the fill; one colour stays that colour; angles are taken
// modulo a whole turn.
TEST(FreeTrimming, HoldsAtTheExtremes) {
  constexpr int32_t kMax = 0x7FFFFFFF;
  const Picture source = Flat(30, 20, 0x0124, 3000);
  for (const int32_t angle : {0, 1, 450, 899, 900, -1, 3599, -kMax - 1, kMax}) {
    for (const int32_t x : {-kMax - 1, -70000, 0, kMax - 7, kMax}) {
      for (const int32_t y : {-kMax - 1, 5, kMax}) {
        const Cut cut = {x, y, 20, 17, angle};
        ASSERT_EQ(Trim(source, cut), Flat(20, 17, 0x0124, 3000));
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
  const Picture source = Flat(40, 40, 0x0002, 5000);
  EXPECT_EQ(Trim(source, {0, 0, 41, 41, 7}), Flat(41, 41, 0x0002, 1023));
  EXPECT_EQ(Trim(source, {0, 0, 41, 41, 2700}), Flat(41, 41, 0x0002, 5000));
}

}  // namespace
}  // namespace ovra_test
