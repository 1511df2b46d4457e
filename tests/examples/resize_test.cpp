// SPDX-License-Identifier: MIT
// What a resized picture must hold: levels, signs, positions, symmetry, no aliasing.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>
#include <tuple>
#include <vector>

#include "ovra/resample.h"
#include "support/tone_pictures.h"

namespace {

using ovra_test::Noise;
using ovra_test::Picture16;

constexpr OvraPixelFormatCode kFormat = 8;  // grey of 16 bits
constexpr uint16_t kUntouched = 9;

// A grey picture of 16 bits.
Picture16 Drawn(uint32_t width, uint32_t height, const auto& level) {
  return Picture16(width, height, 16, 1, OVRA_MODEL_GREY).FillGrey([&level](double x, double y) {
    return std::lround(level(x, y));
  });
}

// By `resize`, whose last arguments are `more`.
Picture16 ResizedBy(auto* resize, const Picture16& source, int32_t width, int32_t height,
                    auto... more) {
  Picture16 result = Drawn(static_cast<uint32_t>(width), static_cast<uint32_t>(height),
                           [](double, double) { return kUntouched; });
  EXPECT_EQ(
      resize(source.Bytes(), static_cast<int32_t>(source.width),
             static_cast<int32_t>(source.height), result.Bytes(), width, height, kFormat, more...),
      OVRA_OK);
  return result;
}

Picture16 Resized(const Picture16& source, int32_t width, int32_t height) {
  return ResizedBy(OvraResizeImage, source, width, height);
}

// Of the upper 8 bits, whose levels are multiples of kByteStep again.
constexpr int kByteStep = 257;
Picture16 ResizedBytes(const Picture16& source, int32_t width, int32_t height) {
  constexpr OvraPixelFormatCode kByteFormat = 0;
  const auto high = [](uint16_t sample) { return static_cast<uint8_t>(sample >> 8); };
  std::vector<uint8_t> from(source.samples.size());
  std::transform(source.samples.begin(), source.samples.end(), from.begin(), high);
  Picture16 result(static_cast<uint32_t>(width), static_cast<uint32_t>(height), 16, 1,
                   OVRA_MODEL_GREY);
  std::vector<uint8_t> to(result.samples.size());
  EXPECT_EQ(
      OvraResizeImage(from.data(), static_cast<int32_t>(source.width),
                      static_cast<int32_t>(source.height), to.data(), width, height, kByteFormat),
      OVRA_OK);
  std::transform(to.begin(), to.end(), result.samples.begin(),
                 [](uint8_t sample) { return static_cast<uint16_t>(sample * kByteStep); });
  return result;
}

Picture16 Scaled(const Picture16& source, int32_t width, int32_t height, double horizontal,
                 double vertical) {
  return ResizedBy(OvraResizeImageVAR, source, width, height, horizontal, vertical);
}

std::vector<float> CubicTable() {
  std::vector<float> table(OVRA_KERNEL_TABLE_ENTRIES);
  EXPECT_EQ(OvraCalcCubicSpline(-0.75F, table.data()), OVRA_OK);
  return table;
}

// Scale 1 without the copy: 50 of 100 columns, from the middle, exactly.
TEST(Resize, OneScaleCutsTheRegionSymmetrically) {
  const auto sum = [](double x, double y) { return x + y; };
  EXPECT_EQ(Resized(Drawn(100, 50, sum), 50, 50),
            Drawn(50, 50, [](double x, double y) { return 25 + x + y; }));
}

// At factors of exactly one, rows are copied from the first one on, wherever the region lies.
TEST(Resize, FactorsOfOneCopyRowsFromTheStart) {
  Picture16 source = Noise(20, 20, 16);
  const Picture16 result = ResizedBy(OvraResizeImageCoreVAR, source, 20, 20, 5, 8, 10, 12, 1.0, 1.0,
                                     CubicTable().data(), 1.0F, 1.0F, 4, 4);
  std::fill(source.samples.begin() + 12 * 20, source.samples.end(), kUntouched);
  EXPECT_EQ(result, source);
}

// A dark line on white, three pixels wide: inside it the kernel undershoots below black, whatever the
// phase. Where the line lies the result must be dark, never wrapped round to white.
TEST(Resize, ADarkLineOnWhiteStaysDark) {
  constexpr int32_t kTarget = 401;
  constexpr double kFactor = 20.05;
  for (const bool vertical : {false, true}) {
    const Picture16 line = Drawn(20, 20, [vertical](double x, double y) {
      return std::abs((vertical ? x : y) - 10) <= 1 ? 0 : 65535;
    });
    const Picture16 result =
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
  for (const uint16_t level : {0, 1, 32769, 65535}) {
    const Picture16 flat = Drawn(60, 50, [level](double, double) { return level; });
    for (const Picture16& result : {Scaled(flat, 40, 30, 2, 2), Resized(flat, 9, 7),
                                    Resized(flat, 1, 1), Resized(flat, 17, 14)}) {
      EXPECT_EQ(result.samples, std::vector<uint16_t>(result.samples.size(), level))
          << level << ", " << result.width;
    }
    for (const Picture16& result : {ResizedBytes(flat, 9, 7), ResizedBytes(flat, 1, 1)}) {
      EXPECT_EQ(result.samples,
                std::vector<uint16_t>(result.samples.size(), (level >> 8) * kByteStep));
    }
  }
}

// Centres beyond 16 bits: a ramp of 60000 columns or rows, reduced and enlarged.
TEST(Resize, LongImagesKeepTheirPositions) {
  for (const auto& [from, to] : {std::pair(60000, 40000), {40000, 60000}, {60000, 30000}}) {
    const double factor = static_cast<double>(to) / from;
    const Picture16 wide =
        Scaled(Drawn(from, 8, [](double x, double) { return x; }), to, 8, factor, 1);
    const Picture16 high =
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
  const Picture16 source = Noise(1000, 100, 16);
  const std::vector<float> table = CubicTable();
  for (const auto& [width, height, is_small] :
       {std::tuple(300, 30, true), {329, 32, true}, {329, 33, false}, {330, 32, false}}) {
    const Picture16 small =
        ResizedBy(OvraSmallResizeImage, source, width, height, 0, 0, 1000, 100, table.data());
    EXPECT_EQ(Resized(source, width, height) == small, is_small) << width;
  }
}

// tw / w is 0.33 and th / h 0.32: the ratio is that of the upright size, and for the engine. A
// destination too small for the taps tells the engine from the reduction.
TEST(ResizeRotate, TheUprightSizeGivesTheRatio) {
  const Picture16 source = Noise(1000, 500, 16);
  for (const auto& [width, height, status] : {std::tuple(160, 330, OVRA_OK),
                                              {7, 330, OVRA_ERROR_RESIZE_DESTINATION_SMALL},
                                              {7, 329, OVRA_OK}}) {
    Picture16 result = source;
    EXPECT_EQ(OvraResizeRotateImageROI(source.Bytes(), 1000, 500, result.Bytes(), width, height,
                                       kFormat, 0, 0, 1000, 500, 1),
              status)
        << width << " x " << height;
  }
}

TEST(BandResize, ContextsHaveTheirOwnCopyOfTheTable) {
  const Picture16 source = Noise(50, 60, 16);
  std::vector<float> table = CubicTable();
  const Picture16 whole =
      ResizedBy(OvraResizeImageCore, source, 45, 25, 0, 0, 50, 60, table.data(), 1.5F, 6);
  OvraBandResizeContext* context = nullptr;
  ASSERT_EQ(OvraBandResizeCore_Init(50, 60, 45, 25, kFormat, 0, 0, 50, 60, table.data(), 1.5F, 6,
                                    &context),
            OVRA_OK);
  std::fill(table.begin(), table.end(), 0.0F);
  Picture16 joined = Drawn(45, 25, [](double, double) { return kUntouched; });
  int32_t taken = 0;
  int32_t written = 0;
  EXPECT_EQ(OvraBandResize(source.Bytes(), 50, 60, joined.Bytes(), 45, 25, kFormat, 0, &taken,
                           &written, context),
            OVRA_OK);
  EXPECT_EQ(joined, whole);
  EXPECT_EQ(OvraBandResize_Free(&context), OVRA_OK);
}

TEST(SmallResize, MirroredInputGivesMirroredOutput) {
  const Picture16 source = Noise(200, 150, 16);
  Picture16 mirrored = source;
  std::reverse(mirrored.samples.begin(), mirrored.samples.end());  // both axes at once
  for (const int32_t size : {7, 12, 33}) {
    for (const auto& [resized, step] : {std::pair(&Resized, 1), {&ResizedBytes, kByteStep}}) {
      const Picture16 result = resized(source, size, size);
      const Picture16 back = resized(mirrored, size, size);
      for (size_t i = 0; i < result.samples.size(); ++i) {
        ASSERT_NEAR(back.samples[i], result.samples.rbegin()[static_cast<int>(i)], step) << size;
      }
    }
  }
}

// Frequencies grow with the distance from the centre and reach the source's Nyquist limit at the
// edges. What lies beyond the destination's limit in either direction must be gone: its energy, as
// the variance about the mean, is compared with that of the source.
TEST(SmallResize, ZonePlateShowsNoMoire) {
  constexpr int32_t kSize = 1600;
  constexpr double kMiddle = (kSize - 1) / 2.0;
  const Picture16 plate = Drawn(kSize, kSize, [](double x, double y) {
    const double squares = (x - kMiddle) * (x - kMiddle) + (y - kMiddle) * (y - kMiddle);
    return 32767.5 * (1 + std::cos(std::numbers::pi / kSize * squares));
  });
  for (const auto& [resized, factor] : {std::pair(&Resized, 8),
                                        {&Resized, 10},
                                        {&Resized, 16},
                                        {&ResizedBytes, 8},
                                        {&ResizedBytes, 10},
                                        {&ResizedBytes, 16},
                                        {&ResizedBytes, 25},
                                        {&ResizedBytes, 100}}) {
    const int32_t size = kSize / factor;
    const Picture16 result = resized(plate, size, size);
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

double Mean(const Picture16& picture) {
  const std::vector<uint16_t>& samples = picture.samples;
  return std::accumulate(samples.begin(), samples.end(), 0.0) / static_cast<double>(samples.size());
}

TEST(SmallResize, KeepsTheMean) {
  const Picture16 source = Drawn(400, 300, [](double x, double y) {
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
  const Picture16 spot = Drawn(kSize, kSize, [](double x, double y) {
    return 60000 * std::exp(-((x - kX) * (x - kX) + (y - kY) * (y - kY)) / 1800);
  });
  for (const auto& [resized, size] : {std::pair(&Resized, 48),
                                      {&Resized, 60},
                                      {&Resized, 133},
                                      {&ResizedBytes, 48},
                                      {&ResizedBytes, 60}}) {
    const Picture16 result = resized(spot, size, size);
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
  const Picture16 source = Drawn(20, 20, [](double, double) { return 40000; });
  const float tables[][2] = {{NAN, NAN}, {0, 0}, {INFINITY, 1}, {1e38F, -1e38F}, {3, -1}};
  for (const auto& values : tables) {
    std::vector<float> table(OVRA_KERNEL_TABLE_ENTRIES, values[1]);
    std::fill(table.begin(), table.begin() + 4096, values[0]);
    const Picture16 result =
        ResizedBy(OvraSmallResizeImage, source, 2, 2, 0, 0, 20, 20, table.data());
    EXPECT_EQ(result.samples, std::vector<uint16_t>(4, 0)) << values[0];
  }
}

}  // namespace
