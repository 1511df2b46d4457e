// SPDX-License-Identifier: MIT
// What a strong reduction must hold as a picture: levels, symmetry, position, no aliasing.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <vector>

#include "ovra/resample.h"
#include "support/random.h"

namespace {

using Samples = std::vector<uint16_t>;

// A picture of one to four channels in 8 to 16 bits; samples are held in 16 bits here and packed for
// the call.
struct Picture {
  int32_t width;
  int32_t height;
  uint32_t depth;
  uint32_t channels;
  Samples samples = Samples(static_cast<size_t>(width) * static_cast<size_t>(height) * channels);

  uint16_t& At(int32_t x, int32_t y, uint32_t c = 0) {
    return samples[(static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x)) *
                       channels +
                   c];
  }
  uint32_t Max() const { return (1U << depth) - 1; }
  OvraPixelFormatCode Format(OvraRowOrder order = OVRA_ROWS_TOP_DOWN) const {
    const OvraColorModel model = channels == 1   ? OVRA_MODEL_GREY
                                 : channels == 3 ? OVRA_MODEL_RGB
                                                 : OVRA_MODEL_RGBA;
    return OvraMakePixelFormat(depth, channels, model, 1, order);
  }
};

std::vector<uint8_t> Pack(const Picture& picture) {
  if (picture.depth == 8) return {picture.samples.begin(), picture.samples.end()};
  const auto* bytes = reinterpret_cast<const uint8_t*>(picture.samples.data());
  return {bytes, bytes + picture.samples.size() * 2};
}

std::vector<float> KernelTable() {
  std::vector<float> table(OVRA_KERNEL_TABLE_ENTRIES);
  EXPECT_EQ(OvraCalcCubicSpline(-0.75F, table.data()), OVRA_OK);
  return table;
}

// The whole picture reduced to width x height.
Picture Reduce(const Picture& source, int32_t width, int32_t height,
               OvraRowOrder order = OVRA_ROWS_TOP_DOWN) {
  Picture result{width, height, source.depth, source.channels};
  const std::vector<uint8_t> in = Pack(source);
  std::vector<uint8_t> out = Pack(result);
  EXPECT_EQ(OvraSmallResizeImage(in.data(), source.width, source.height, out.data(), width, height,
                                 source.Format(order), 0, 0, source.width, source.height,
                                 KernelTable().data()),
            OVRA_OK);
  if (source.depth == 8) {
    std::copy(out.begin(), out.end(), result.samples.begin());
  } else {
    const auto* wide = reinterpret_cast<const uint16_t*>(out.data());
    std::copy(wide, wide + result.samples.size(), result.samples.begin());
  }
  return result;
}

Picture Noise(int32_t width, int32_t height, uint32_t depth, uint32_t channels, uint32_t seed) {
  Picture picture{width, height, depth, channels};
  ovra_test::Random random(seed);
  ovra_test::FillSamples(random, picture.samples.data(),
                         picture.samples.data() + picture.samples.size(), picture.Max());
  return picture;
}

int32_t GreatestDifference(const Samples& a, const Samples& b) {
  int32_t greatest = 0;
  for (size_t i = 0; i < a.size(); ++i) greatest = std::max(greatest, std::abs(a[i] - b[i]));
  return greatest;
}

double Mean(const Picture& picture) {
  double sum = 0;
  for (const uint16_t sample : picture.samples) sum += sample;
  return sum / static_cast<double>(picture.samples.size());
}

TEST(SmallResize, ConstantPicturesStayExactlyConstant) {
  struct Case {
    uint32_t depth, channels, level;
    int32_t width, height, to_width, to_height;
  };
  const Case cases[] = {
      {8, 1, 255, 100, 80, 9, 7},    {8, 3, 77, 301, 199, 10, 19},   {8, 4, 1, 640, 3, 5, 1},
      {12, 3, 4095, 97, 97, 31, 31}, {16, 1, 65535, 1000, 50, 1, 1}, {16, 4, 32769, 64, 64, 3, 3},
      {16, 1, 40000, 2500, 2, 4, 1}, {8, 1, 200, 3, 3, 9, 9},        {8, 3, 200, 700, 600, 2, 2},
  };
  for (const Case& c : cases) {
    Picture source{c.width, c.height, c.depth, c.channels};
    std::fill(source.samples.begin(), source.samples.end(), static_cast<uint16_t>(c.level));
    const Picture result = Reduce(source, c.to_width, c.to_height);
    EXPECT_EQ(result.samples, Samples(result.samples.size(), static_cast<uint16_t>(c.level)))
        << c.width << "x" << c.height << " depth " << c.depth;
  }
}

TEST(SmallResize, MirroredInputGivesMirroredOutput) {
  for (const uint32_t depth : {8U, 16U}) {
    for (const int32_t size : {7, 12, 33}) {
      const Picture source = Noise(200, 150, depth, 1, depth);
      Picture mirrored = source;
      std::reverse(mirrored.samples.begin(), mirrored.samples.end());  // both axes at once
      Picture result = Reduce(mirrored, size, size);
      std::reverse(result.samples.begin(), result.samples.end());
      EXPECT_LE(GreatestDifference(result.samples, Reduce(source, size, size).samples), 1);
    }
  }
}

TEST(SmallResize, OnePixelCheckerboardBecomesFlatGrey) {
  Picture board{240, 180, 8, 1};
  for (int32_t y = 0; y < board.height; ++y) {
    for (int32_t x = 0; x < board.width; ++x) board.At(x, y) = (x + y) % 2 == 0 ? 255 : 0;
  }
  for (const int32_t factor : {4, 5, 10, 30}) {
    const Picture result = Reduce(board, board.width / factor, board.height / factor);
    for (const uint16_t sample : result.samples) EXPECT_NEAR(sample, 127.5, 3) << factor;
  }
}

// Frequencies grow with the distance from the centre and reach the source's Nyquist limit at the
// edges. What lies beyond the destination's limit in either direction must be gone: its energy, as
// the variance about the mean, is compared with that of the source.
TEST(SmallResize, ZonePlateShowsNoMoire) {
  constexpr double kPi = 3.14159265358979323846;
  constexpr int32_t kSize = 1600;
  Picture plate{kSize, kSize, 16, 1};
  for (int32_t y = 0; y < kSize; ++y) {
    for (int32_t x = 0; x < kSize; ++x) {
      const double dx = x - (kSize - 1) / 2.0;
      const double dy = y - (kSize - 1) / 2.0;
      const double phase = kPi / kSize * (dx * dx + dy * dy);
      plate.At(x, y) = static_cast<uint16_t>(std::lround(32767.5 * (1 + std::cos(phase))));
    }
  }
  for (const int32_t factor : {8, 10, 16}) {
    const int32_t size = kSize / factor;
    Picture result = Reduce(plate, size, size);
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
  Picture source{400, 300, 8, 1};
  for (int32_t y = 0; y < source.height; ++y) {
    for (int32_t x = 0; x < source.width; ++x) {
      const double wave = std::sin(x * 0.11) * std::cos(y * 0.07);
      source.At(x, y) = static_cast<uint16_t>(std::lround(120 + 80 * wave));
    }
  }
  for (const int32_t factor : {4, 10, 25}) {
    const Picture result = Reduce(source, source.width / factor, source.height / factor);
    EXPECT_NEAR(Mean(result), Mean(source), 0.5) << factor;
  }
}

// The centroid of a blurred spot, read back in source pixels, stays where the spot is.
TEST(SmallResize, DoesNotShiftThePicture) {
  constexpr int32_t kSize = 480;
  constexpr double kSigma = 30;
  for (const int32_t size : {48, 60, 133}) {
    const double spot_x = 251.3;
    const double spot_y = 222.8;
    Picture source{kSize, kSize, 16, 1};
    for (int32_t y = 0; y < kSize; ++y) {
      for (int32_t x = 0; x < kSize; ++x) {
        const double distance = std::pow(x - spot_x, 2) + std::pow(y - spot_y, 2);
        source.At(x, y) =
            static_cast<uint16_t>(std::lround(60000 * std::exp(-distance / (2 * kSigma * kSigma))));
      }
    }
    Picture result = Reduce(source, size, size);
    double sum = 0;
    double sum_x = 0;
    double sum_y = 0;
    for (int32_t y = 0; y < size; ++y) {
      for (int32_t x = 0; x < size; ++x) {
        sum += result.At(x, y);
        sum_x += result.At(x, y) * static_cast<double>(x);
        sum_y += result.At(x, y) * static_cast<double>(y);
      }
    }
    const double scale = static_cast<double>(kSize) / size;
    EXPECT_NEAR((sum_x / sum + 0.5) * scale - 0.5, spot_x, 0.02) << size;
    EXPECT_NEAR((sum_y / sum + 0.5) * scale - 0.5, spot_y, 0.02) << size;
  }
}

// The cubic-convolution kernel with a = -0.75.
double Kernel(double distance) {
  constexpr double kA = -0.75;
  const double x = std::abs(distance);
  if (x < 1) return ((kA + 2) * x - (kA + 3)) * x * x + 1;
  return x < 2 ? ((x - 5) * x + 8) * x * kA - 4 * kA : 0;
}

// The definition itself, in two dimensions and double precision: one sample of a region's reduction.
double DirectSum(Picture& source, double px, double py, double scale, uint32_t channel) {
  double weights = 0;
  double sum = 0;
  const auto reach = static_cast<int32_t>(2 / scale) + 1;
  for (auto y = static_cast<int32_t>(py) - reach; y <= py + reach; ++y) {
    for (auto x = static_cast<int32_t>(px) - reach; x <= px + reach; ++x) {
      const double weight = Kernel((x - px) * scale) * Kernel((y - py) * scale);
      weights += weight;
      sum += weight * source.At(std::clamp(x, 0, source.width - 1),
                                std::clamp(y, 0, source.height - 1), channel);
    }
  }
  return std::clamp(sum / weights, 0.0, 65535.0);
}

// A region near the corner of the picture, a destination that cuts the region, both row orders.
TEST(SmallResize, AgreesWithTheDirectSum) {
  Picture source = Noise(90, 70, 16, 3, 5);
  constexpr int32_t kX = 1, kY = 3, kWidth = 80, kHeight = 40, kToWidth = 11, kToHeight = 12;
  constexpr double kScale = std::max(kToWidth / 80.0, kToHeight / 40.0);
  for (const OvraRowOrder order : {OVRA_ROWS_TOP_DOWN, OVRA_ROWS_BOTTOM_UP}) {
    const int32_t first_row = order == OVRA_ROWS_TOP_DOWN ? kY : source.height - kY - kHeight;
    const auto in = Pack(source);
    std::vector<uint16_t> out(size_t{kToWidth} * kToHeight * 3);
    ASSERT_EQ(
        OvraSmallResizeImage(in.data(), source.width, source.height,
                             reinterpret_cast<uint8_t*>(out.data()), kToWidth, kToHeight,
                             source.Format(order), kX, kY, kWidth, kHeight, KernelTable().data()),
        OVRA_OK);
    for (int32_t i = 0; i < kToWidth * kToHeight * 3; ++i) {
      const int32_t column = i / 3 % kToWidth;
      const int32_t row = i / 3 / kToWidth;
      const double px = kX + (kWidth - 1) / 2.0 + (column - (kToWidth - 1) / 2.0) / kScale;
      const double py = first_row + (kHeight - 1) / 2.0 + (row - (kToHeight - 1) / 2.0) / kScale;
      // One code for rounding, one for what full-contrast noise makes of table and weights.
      EXPECT_NEAR(out[static_cast<size_t>(i)],
                  DirectSum(source, px, py, kScale, static_cast<uint32_t>(i % 3)), 2);
    }
  }
}

TEST(SmallResize, AnswersTheFirstFailingCheck) {
  std::vector<uint8_t> source(100);
  const std::vector<float> table = KernelTable();
  constexpr OvraPixelFormatCode kGrey = 0;
  constexpr OvraPixelFormatCode kBad = 0xF0;
  struct Case {
    OvraStatus status;
    bool null_source, null_table;
    OvraPixelFormatCode format;
    int32_t source_width, source_height, width, height, x, y, w, h;
  };
  const Case cases[] = {
      {OVRA_ERROR_RESIZE_NULL_IMAGE, true, true, kBad, 0, 0, 0, 0, 0, 0, 0, 0},
      {OVRA_ERROR_RESIZE_NULL_TABLE, false, true, kBad, 0, 0, 0, 0, 0, 0, 0, 0},
      {OVRA_ERROR_FORMAT_CHANNELS, false, false, kBad, 0, 0, 0, 0, 0, 0, 0, 0},
      {OVRA_ERROR_RESIZE_DEPTH, false, false, 0x9, 0, 0, 0, 0, 0, 0, 0, 0},
      {OVRA_ERROR_RESIZE_COLOR_MODEL, false, false, 0x10, 0, 0, 0, 0, 0, 0, 0, 0},
      {OVRA_ERROR_RESIZE_ARRANGEMENT, false, false, 0x10000, 0, 0, 0, 0, 0, 0, 0, 0},
      {OVRA_ERROR_RESIZE_ZERO_SIZE, false, false, kGrey, 10, 10, 0, 0, 0, 0, 10, 0},
      {OVRA_ERROR_RESIZE_DESTINATION_SMALL, false, false, kGrey, 10, 10, 0, 1, 0, 0, 11, 10},
      {OVRA_ERROR_RESIZE_DESTINATION_SMALL, false, false, kGrey, 10, 10, 1, -1, 0, 0, 10, 10},
      {OVRA_ERROR_RESIZE_REGION_SIZE, false, false, kGrey, 10, 10, 1, 1, 1, 0, 11, 10},
      {OVRA_ERROR_RESIZE_REGION_SIZE, false, false, kGrey, 10, 10, 1, 1, 0, 0, 10, -1},
      {OVRA_ERROR_RESIZE_REGION_SIZE, false, false, kGrey, 10, -10, 1, 1, 0, 0, 10, 10},
      {OVRA_ERROR_RESIZE_REGION_OUTSIDE, false, false, kGrey, 10, 10, 1, 1, 1, 0, 10, 10},
      {OVRA_ERROR_RESIZE_REGION_OUTSIDE, false, false, kGrey, 10, 10, 1, 1, 0, -1, 10, 10},
      {OVRA_ERROR_RESIZE_REGION_OUTSIDE, false, false, kGrey, 10, 10, 1, 1, 0, 0x7FFFFFFF, 5, 5},
  };
  for (const Case& c : cases) {
    uint8_t destination[4] = {9, 9, 9, 9};
    EXPECT_EQ(OvraSmallResizeImage(c.null_source ? nullptr : source.data(), c.source_width,
                                   c.source_height, destination, c.width, c.height, c.format, c.x,
                                   c.y, c.w, c.h, c.null_table ? nullptr : table.data()),
              c.status);
    EXPECT_EQ(destination[0], 9);
  }
}

TEST(SmallResize, TablesThatAreNoKernelGiveBlack) {
  const std::vector<uint8_t> source(400, 200);
  const float tables[][2] = {{NAN, NAN}, {0, 0}, {INFINITY, 1}, {1e38F, -1e38F}, {3, -1}};
  for (const auto& values : tables) {
    std::vector<float> table(OVRA_KERNEL_TABLE_ENTRIES, values[1]);
    std::fill(table.begin(), table.begin() + 4096, values[0]);
    uint8_t destination[4] = {9, 9, 9, 9};
    EXPECT_EQ(OvraSmallResizeImage(source.data(), 20, 20, destination, 2, 2, 0, 0, 0, 20, 20,
                                   table.data()),
              OVRA_OK);
    for (const uint8_t sample : destination) EXPECT_EQ(sample, 0) << values[0];
  }
}

}  // namespace
