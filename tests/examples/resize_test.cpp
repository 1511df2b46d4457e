// SPDX-License-Identifier: MIT
// What a resized picture must hold: levels, signs, positions, symmetry, no aliasing.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <vector>

#include "ovra/resample.h"
#include "support/random.h"

namespace {

constexpr double kPi = 3.14159265358979323846;

// A grey picture of 16 bits.
struct Picture {
  int32_t width;
  int32_t height;
  std::vector<uint16_t> samples = std::vector<uint16_t>(static_cast<size_t>(width * height));

  uint16_t At(int32_t x, int32_t y) const { return samples[static_cast<size_t>(y * width + x)]; }
  uint8_t* Bytes() { return reinterpret_cast<uint8_t*>(samples.data()); }
};
constexpr OvraPixelFormatCode kFormat = 8;

Picture Drawn(int32_t width, int32_t height, const std::function<double(double, double)>& level) {
  Picture picture{width, height};
  for (int32_t y = 0; y < height; ++y) {
    for (int32_t x = 0; x < width; ++x) {
      picture.samples[static_cast<size_t>(y * width + x)] =
          static_cast<uint16_t>(std::lround(level(x, y)));
    }
  }
  return picture;
}

Picture Noise(int32_t width, int32_t height) {
  Picture picture{width, height};
  ovra_test::Random random(5);
  ovra_test::FillSamples(random, picture.samples.data(),
                         picture.samples.data() + picture.samples.size(), 0xFFFF);
  return picture;
}

Picture Resized(Picture source, int32_t width, int32_t height) {
  Picture result{width, height};
  EXPECT_EQ(OvraResizeImage(source.Bytes(), source.width, source.height, result.Bytes(), width,
                            height, kFormat),
            OVRA_OK);
  return result;
}

Picture Scaled(Picture source, int32_t width, int32_t height, double horizontal, double vertical) {
  Picture result{width, height};
  EXPECT_EQ(OvraResizeImageVAR(source.Bytes(), source.width, source.height, result.Bytes(), width,
                               height, kFormat, horizontal, vertical),
            OVRA_OK);
  return result;
}

std::vector<float> CubicTable() {
  std::vector<float> table(OVRA_KERNEL_TABLE_ENTRIES);
  EXPECT_EQ(OvraCalcCubicSpline(-0.75F, table.data()), OVRA_OK);
  return table;
}

int32_t GreatestDifference(const Picture& a, const Picture& b) {
  int32_t greatest = 0;
  for (size_t i = 0; i < a.samples.size(); ++i) {
    greatest = std::max(greatest, std::abs(a.samples[i] - b.samples[i]));
  }
  return greatest;
}

double Mean(const Picture& picture) {
  double sum = 0;
  for (const uint16_t sample : picture.samples) sum += sample;
  return sum / static_cast<double>(picture.samples.size());
}

// Scale 1 without the copy: 50 of 100 columns, from the middle, exactly.
TEST(Resize, OneScaleCutsTheRegionSymmetrically) {
  const Picture cut = Resized(Drawn(100, 50, [](double x, double y) { return x + y; }), 50, 50);
  for (int32_t y = 0; y < 50; ++y) {
    for (int32_t x = 0; x < 50; ++x) ASSERT_EQ(cut.At(x, y), 25 + x + y);
  }
}

// At factors of exactly one, rows are copied from the first one on, wherever the region lies.
TEST(Resize, FactorsOfOneCopyRowsFromTheStart) {
  Picture source = Noise(20, 20);
  Picture result{20, 20};
  EXPECT_EQ(OvraResizeImageCoreVAR(source.Bytes(), 20, 20, result.Bytes(), 20, 20, kFormat, 5, 8,
                                   10, 12, 1.0, 1.0, CubicTable().data(), 1.0F, 1.0F, 4, 4),
            OVRA_OK);
  std::fill(source.samples.begin() + 12 * 20, source.samples.end(), uint16_t{0});
  EXPECT_EQ(result.samples, source.samples);
}

// A dark line on white, three pixels wide: inside it the kernel undershoots below black, whatever the
// phase. Where the line lies the result must be dark, never wrapped round to white.
TEST(Resize, ADarkLineOnWhiteStaysDark) {
  constexpr int32_t kTarget = 401;
  constexpr double kFactor = 20.05;
  for (const bool vertical : {false, true}) {
    const Picture line = Drawn(20, 20, [vertical](double x, double y) {
      return std::abs((vertical ? x : y) - 10) <= 1 ? 0 : 65535;
    });
    const Picture result =
        vertical ? Scaled(line, kTarget, 20, kFactor, 1) : Scaled(line, 20, kTarget, 1, kFactor);
    for (int32_t i = 0; i < kTarget; ++i) {
      const double distance = std::abs((i - kTarget / 2) / kFactor + 9.5 - 10);
      const int level = vertical ? result.At(i, 0) : result.At(0, i);
      ASSERT_LE(level, distance < 1.25 ? 16400 : 65535) << distance;
      ASSERT_GE(level, distance > 1.75 ? 41000 : 0) << distance;
    }
  }
}

// The weights sum to one: at a factor of 2 the phases are quarters, whose kernel values are whole
// 1/256; strong reductions make up for what rounding takes.
TEST(Resize, ConstantPicturesStayConstant) {
  for (const int32_t level : {0, 1, 32769, 65535}) {
    const Picture flat = Drawn(60, 50, [level](double, double) { return level; });
    for (const Picture& result : {Scaled(flat, 40, 30, 2, 2), Resized(flat, 9, 7),
                                  Resized(flat, 1, 1), Resized(flat, 17, 14)}) {
      EXPECT_EQ(std::count(result.samples.begin(), result.samples.end(), level),
                static_cast<std::ptrdiff_t>(result.samples.size()))
          << level << ", " << result.width;
    }
  }
}

// Centres beyond 16 bits: a ramp of 60000 columns or rows, reduced and enlarged.
TEST(Resize, LongImagesKeepTheirPositions) {
  for (const auto& [from, to] : {std::pair(60000, 40000), {40000, 60000}, {60000, 30000}}) {
    const double factor = static_cast<double>(to) / from;
    const Picture wide =
        Scaled(Drawn(from, 8, [](double x, double) { return x; }), to, 8, factor, 1);
    const Picture high =
        Scaled(Drawn(8, from, [](double, double y) { return y; }), 8, to, 1, factor);
    for (int32_t i = 10; i < to - 10; ++i) {
      const double position = (i + 0.5) / factor - 0.5;
      const double tolerance = 1 + position * 8 / 1024;  // truncated weights
      ASSERT_NEAR(wide.At(i, 3), position, tolerance);
      ASSERT_NEAR(high.At(3, i), position, tolerance);
    }
  }
}

// Below a ratio of 0.33 on both axes, and only there, the reduction without taps does the work.
TEST(Resize, StrongReductionsHaveTheirOwnKernel) {
  Picture source = Noise(1000, 100);
  const std::vector<float> table = CubicTable();
  for (const auto& [width, height, is_small] :
       {std::tuple(300, 30, true), {329, 32, true}, {329, 33, false}, {330, 32, false}}) {
    Picture small{width, height};
    ASSERT_EQ(OvraSmallResizeImage(source.Bytes(), 1000, 100, small.Bytes(), width, height, kFormat,
                                   0, 0, 1000, 100, table.data()),
              OVRA_OK);
    EXPECT_EQ(Resized(source, width, height).samples == small.samples, is_small) << width;
  }
}

TEST(SmallResize, MirroredInputGivesMirroredOutput) {
  const Picture source = Noise(200, 150);
  Picture mirrored = source;
  std::reverse(mirrored.samples.begin(), mirrored.samples.end());  // both axes at once
  for (const int32_t size : {7, 12, 33}) {
    Picture result = Resized(mirrored, size, size);
    std::reverse(result.samples.begin(), result.samples.end());
    EXPECT_LE(GreatestDifference(result, Resized(source, size, size)), 1);
  }
}

// Frequencies grow with the distance from the centre and reach the source's Nyquist limit at the
// edges. What lies beyond the destination's limit in either direction must be gone: its energy, as
// the variance about the mean, is compared with that of the source.
TEST(SmallResize, ZonePlateShowsNoMoire) {
  constexpr int32_t kSize = 1600;
  constexpr double kMiddle = (kSize - 1) / 2.0;
  const Picture plate = Drawn(kSize, kSize, [](double x, double y) {
    const double squares = (x - kMiddle) * (x - kMiddle) + (y - kMiddle) * (y - kMiddle);
    return 32767.5 * (1 + std::cos(kPi / kSize * squares));
  });
  for (const int32_t factor : {8, 10, 16}) {
    const int32_t size = kSize / factor;
    const Picture result = Resized(plate, size, size);
    const int32_t passed = size / factor;  // destination pixels across the part below the limit
    double energy = 0;
    int count = 0;
    for (int32_t y = 0; y < size; ++y) {
      for (int32_t x = 0; x < size; ++x) {
        if (std::abs(2 * x + 1 - size) <= passed && std::abs(2 * y + 1 - size) <= passed) continue;
        const double level = result.At(x, y) / 65535.0 - 0.5;
        energy += level * level;
        ++count;
      }
    }
    constexpr double kCosineEnergy = 0.125;  // of amplitude one half
    EXPECT_LT(10 * std::log10(energy / count / kCosineEnergy), -30) << factor;
  }
}

TEST(SmallResize, KeepsTheMean) {
  const Picture source = Drawn(400, 300, [](double x, double y) {
    return 30000 + 20000 * std::sin(x * 0.11) * std::cos(y * 0.07);
  });
  for (const int32_t factor : {4, 10, 25}) {
    EXPECT_NEAR(Mean(Resized(source, 400 / factor, 300 / factor)), Mean(source), 130) << factor;
  }
}

// The centroid of a blurred spot, read back in source pixels, stays where the spot is.
TEST(SmallResize, DoesNotShiftThePicture) {
  constexpr int32_t kSize = 480;
  constexpr double kX = 251.3;
  constexpr double kY = 222.8;
  const Picture spot = Drawn(kSize, kSize, [](double x, double y) {
    return 60000 * std::exp(-((x - kX) * (x - kX) + (y - kY) * (y - kY)) / 1800);
  });
  for (const int32_t size : {48, 60, 133}) {
    const Picture result = Resized(spot, size, size);
    double sum = 0;
    double sum_x = 0;
    double sum_y = 0;
    for (int32_t y = 0; y < size; ++y) {
      for (int32_t x = 0; x < size; ++x) {
        sum += result.At(x, y);
        sum_x += double{1} * x * result.At(x, y);
        sum_y += double{1} * y * result.At(x, y);
      }
    }
    const double scale = static_cast<double>(kSize) / size;
    EXPECT_NEAR((sum_x / sum + 0.5) * scale - 0.5, kX, 0.02) << size;
    EXPECT_NEAR((sum_y / sum + 0.5) * scale - 0.5, kY, 0.02) << size;
  }
}

TEST(SmallResize, TablesThatAreNoKernelGiveBlack) {
  Picture source = Drawn(20, 20, [](double, double) { return 40000; });
  const float tables[][2] = {{NAN, NAN}, {0, 0}, {INFINITY, 1}, {1e38F, -1e38F}, {3, -1}};
  for (const auto& values : tables) {
    std::vector<float> table(OVRA_KERNEL_TABLE_ENTRIES, values[1]);
    std::fill(table.begin(), table.begin() + 4096, values[0]);
    Picture result{2, 2, {9, 9, 9, 9}};
    EXPECT_EQ(OvraSmallResizeImage(source.Bytes(), 20, 20, result.Bytes(), 2, 2, kFormat, 0, 0, 20,
                                   20, table.data()),
              OVRA_OK);
    EXPECT_EQ(result.samples, std::vector<uint16_t>(4, 0)) << values[0];
  }
}

}  // namespace
