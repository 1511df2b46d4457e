// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "ovra/color.h"
#include "support/color_images.h"
#include "support/guarded_buffer.h"
#include "support/random.h"

namespace {

using ovra_test::ColorFormat;
using ovra_test::GuardedBuffer;
using ovra_test::RandomInt;
using ovra_test::RowLayout;
using Bytes = std::vector<uint8_t>;
using Words = std::vector<uint32_t>;

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kDenormal = 4.9406564584124654e-324;

OvraColorMatrix Diagonal(double gain) {
  OvraColorMatrix matrix = {};
  for (int k = 0; k < 3; ++k) matrix.rows[k][k] = gain;
  return matrix;
}

// A sum of fixed-point terms in 64 bits, brought into the range of 32 bits as wrapping sums are.
int64_t Wrapped(int64_t sum) {
  constexpr int64_t kRange = int64_t{1} << 32;
  const int64_t residue = (sum % kRange + kRange) % kRange;
  return residue < kRange / 2 ? residue : residue - kRange;
}

int64_t Truncated(double value) {
  if (std::isnan(value)) return 0;
  return static_cast<int64_t>(std::clamp(std::trunc(value), -2147483648.0, 2147483647.0));
}

// What output channel `row` of a pixel must be.
uint32_t Expected(const double* row, const uint32_t* x, uint32_t input_depth, uint32_t output_depth,
                  bool second_order) {
  const int64_t max = (int64_t{1} << output_depth) - 1;
  if (second_order) {
    const uint64_t u[3] = {x[0], x[1], x[2]};
    double sum = 0;
    const uint64_t terms[] = {u[0],        u[1],        u[2],        1,           u[0] * u[0],
                              u[1] * u[1], u[2] * u[2], u[0] * u[1], u[1] * u[2], u[2] * u[0]};
    for (int t = 0; t < 10; ++t) {
      const volatile double product = row[t] * static_cast<double>(terms[t]);
      sum += product;
    }
    sum += 0.5;
    return std::isnan(sum) ? 0 : static_cast<uint32_t>(std::clamp<double>(sum, 0, double(max)));
  }
  const int shift = static_cast<int>(input_depth <= 12 ? input_depth + 1 : 25 - input_depth);
  int64_t sum = int64_t{1} << (shift - 1);
  for (int j = 0; j < 3; ++j)
    sum = Wrapped(sum + Wrapped(Truncated(std::ldexp(row[j], shift)) * x[j]));
  const int64_t floored =
      static_cast<int64_t>(std::floor(static_cast<double>(sum) / static_cast<double>(1 << shift)));
  return static_cast<uint32_t>(std::clamp<int64_t>(Wrapped(floored + Truncated(row[3])), 0, max));
}

// Weights about what photographs need; some of them too great for sums of 32 bits.
double RandomWeight(ovra_test::Random& random, double scale) {
  static constexpr double kSpecial[] = {0, 1, -1, 0.7, 3.999, 70000, -1e30, 1e300};
  if (random() % 8 == 0) return kSpecial[random() % 8] * scale;
  return RandomInt(random, -1000000, 1000000) * 3e-6 * scale;
}

OvraColorMatrix RandomMatrix(ovra_test::Random& random, uint32_t input_depth, bool second_order) {
  OvraColorMatrix matrix = {};
  for (auto& row : matrix.rows) {
    for (int j = 0; j < 3; ++j) row[j] = RandomWeight(random, 1);
    row[3] = RandomWeight(random, 100);
    if (!second_order) continue;
    for (int t = 4; t < 10; ++t) row[t] = std::ldexp(RandomWeight(random, 1), -int(input_depth));
  }
  if (second_order) matrix.rows[RandomInt(random, 0, 2)][RandomInt(random, 4, 9)] = 1e-9;
  return matrix;
}

TEST(ColorMatrix, ComputesEverySample) {
  ovra_test::Random random(3);
  for (int round = 0; round < 800; ++round) {
    ovra_test::RandomColorImages images(random, round);
    const bool second_order = round % 8 < 4;
    const OvraColorMatrix matrix = RandomMatrix(random, images.in.depth_bits, second_order);
    ASSERT_EQ(
        OvraConvColorMtxSingleStep(images.source.data(), images.destination.data(), images.width,
                                   images.height, images.in_format, images.out_format, &matrix),
        OVRA_OK);
    Bytes expected(images.destination.size(), GuardedBuffer::kFill);
    for (size_t y = 0; y < images.in.height; ++y) {
      for (size_t i = 0; i < images.in.samples; i += 3) {
        const uint32_t x[] = {images.SourceSample(y, i), images.SourceSample(y, i + 1),
                              images.SourceSample(y, i + 2)};
        for (size_t k = 0; k < 3; ++k) {
          double row[10];
          for (int t = 0; t < 10; ++t) row[t] = matrix.rows[k][t];
          images.out.Set(
              expected.data(), y, i + k,
              Expected(row, x, images.in.depth_bits, images.out.depth_bits, second_order));
        }
      }
    }
    ASSERT_TRUE(std::equal(expected.begin(), expected.end(), images.destination.begin()))
        << "round " << round << ", " << images.in.depth_bits << " to " << images.out.depth_bits
        << " bits";
  }
}

Words ConvertPixel(const OvraColorMatrix& matrix, const Words& pixel, uint32_t depth_bits) {
  const RowLayout layout = {3, 1, depth_bits, 1};
  Bytes source(layout.Size());
  Bytes destination(layout.Size());
  for (size_t i = 0; i < 3; ++i) layout.Set(source.data(), 0, i, pixel[i]);
  EXPECT_EQ(OvraConvColorMtxSingleStep(source.data(), destination.data(), 1, 1,
                                       ColorFormat(depth_bits), ColorFormat(depth_bits), &matrix),
            OVRA_OK);
  Words out;
  for (size_t i = 0; i < 3; ++i) out.push_back(layout.At(destination.data(), 0, i));
  return out;
}

// A constant of 0.7 counts in double precision only, and so tells the arithmetic that was chosen.
TEST(ColorMatrix, ChoosesTheArithmeticOnceByTheSecondOrderTerms) {
  struct Case {
    double weight;
    bool asks;
  };
  const Case cases[] = {{0.0, false},       {-0.0, false},       {kNan, false},
                        {kInfinity, false}, {-kInfinity, false}, {kDenormal, true},
                        {-kDenormal, true}, {1e-300, true}};
  for (const Case& c : cases) {
    for (int t = 4; t < 10; ++t) {
      OvraColorMatrix matrix = Diagonal(1);
      for (auto& row : matrix.rows) row[3] = 0.7;
      matrix.rows[t % 3][t] = c.weight;
      const Words expected = c.asks ? Words{11, 21, 31} : Words{10, 20, 30};
      EXPECT_EQ(ConvertPixel(matrix, {10, 20, 30}, 8), expected) << c.weight << ", term " << t;
    }
  }
}

TEST(ColorMatrix, DefinesNumbersBeyondRange) {
  struct Case {
    double weight;  // of the pixel's own sample
    double constant;
    double square;  // one that matters, or 0
    uint32_t expected;
  };
  const Case cases[] = {
      {kNan, 9, 0, 9},         // no number: weight 0
      {1, kNan, 0, 100},       // likewise
      {0, kInfinity, 0, 255},  // the greatest integer
      {0, -kInfinity, 0, 0},     {0, 1e10, 0, 255},        {2, -1e10, 0, 0},
      {1, kNan, 1e-9, 0},  // a sum that is no number
      {1, kInfinity, 1e-9, 255}, {1, -kInfinity, 1e-9, 0}, {kInfinity, -kInfinity, 1e-9, 0},
      {1e308, 1, 1e-9, 255},
  };
  for (const Case& c : cases) {
    OvraColorMatrix matrix = Diagonal(c.weight);
    for (int k = 0; k < 3; ++k) {
      matrix.rows[k][3] = c.constant;
      matrix.rows[k][4 + k] = c.square;
    }
    EXPECT_EQ(ConvertPixel(matrix, {100, 100, 100}, 8), Words(3, c.expected))
        << c.weight << " " << c.constant << " " << c.square;
  }
}

TEST(ColorMatrix, IdentityKeepsAndZeroBlackens) {
  for (uint32_t depth = 8; depth <= 16; ++depth) {
    const uint32_t max = (1U << depth) - 1;
    EXPECT_EQ(ConvertPixel(Diagonal(1), {0, max / 2, max}, depth), (Words{0, max / 2, max}));
    EXPECT_EQ(ConvertPixel(Diagonal(0), {0, max / 2, max}, depth), (Words{0, 0, 0}));
  }
}

TEST(ColorMatrix, JudgesFormatsInOrder) {
  struct Case {
    OvraPixelFormatCode input;
    OvraPixelFormatCode output;
    OvraStatus status;
  };
  const Case cases[] = {
      {0x110, 0x12F, OVRA_ERROR_FORMAT_DEPTH},  // decoding both comes before judging
      {0x10239, 0x110, OVRA_ERROR_MATRIX_CHANNELS},
      {0x10429, 0x110, OVRA_ERROR_MATRIX_DEPTH},
      {0x10420, 0x110, OVRA_ERROR_MATRIX_COLOR_MODEL},
      {0x10120, 0x110, OVRA_ERROR_MATRIX_ARRANGEMENT},
      {0x120, 0x10239, OVRA_ERROR_MATRIX_CHANNELS},
      {0x120, 0x10429, OVRA_ERROR_MATRIX_DEPTH},
      {0x120, 0x10420, OVRA_ERROR_MATRIX_COLOR_MODEL},
      {0x120, 0x10120, OVRA_ERROR_MATRIX_ARRANGEMENT},
  };
  const OvraColorMatrix matrix = Diagonal(1);
  uintptr_t handle = 0;
  ASSERT_EQ(OvraConvColorMtx_Init(0x120, 0x120, &matrix, &handle), OVRA_OK);
  const Bytes source(6);
  Bytes destination(6, 77);
  for (const Case& c : cases) {
    uintptr_t word = 1;
    EXPECT_EQ(OvraConvColorMtx_Init(c.input, c.output, &matrix, &word), c.status);
    EXPECT_EQ(word, 0U);
    EXPECT_EQ(OvraConvColorMtx(source.data(), destination.data(), 2, 1, c.input, c.output, handle),
              c.status);
    EXPECT_EQ(OvraConvColorMtxSingleStep(source.data(), destination.data(), 2, 1, c.input, c.output,
                                         &matrix),
              c.status);
  }
  EXPECT_EQ(destination, Bytes(6, 77));
  EXPECT_EQ(OvraConvColorMtx_Free(&handle), OVRA_OK);
}

TEST(ColorMatrix, AnswersStatusesInOrder) {
  constexpr OvraPixelFormatCode kBad = 0x110;
  const OvraPixelFormatCode good = ColorFormat(8);
  OvraColorMatrix matrix = Diagonal(1);
  uintptr_t handle = 1;
  EXPECT_EQ(OvraConvColorMtx_Init(kBad, kBad, nullptr, &handle), OVRA_ERROR_MATRIX_NULL);
  EXPECT_EQ(handle, 1U);
  EXPECT_EQ(OvraConvColorMtx_Init(kBad, kBad, &matrix, nullptr), OVRA_ERROR_MATRIX_NULL);
  ASSERT_EQ(OvraConvColorMtx_Init(good, good, &matrix, &handle), OVRA_OK);
  matrix = Diagonal(0);  // the handle has its own

  const Bytes source = {1, 2, 3, 4, 5, 6};
  Bytes destination(6, 77);
  const auto run = [&](const uint8_t* src, uint8_t* dst, int32_t width, int32_t height,
                       OvraPixelFormatCode input, OvraPixelFormatCode output, uintptr_t word) {
    return OvraConvColorMtx(src, dst, width, height, input, output, word);
  };
  const uint8_t* const src = source.data();
  uint8_t* const dst = destination.data();
  EXPECT_EQ(run(nullptr, dst, 0, 0, kBad, kBad, handle), OVRA_ERROR_MATRIX_NULL);
  EXPECT_EQ(run(src, nullptr, 0, 0, kBad, kBad, handle), OVRA_ERROR_MATRIX_NULL);
  EXPECT_EQ(run(src, dst, 0, 0, kBad, kBad, 0), OVRA_ERROR_MATRIX_NULL);
  EXPECT_EQ(run(src, dst, 0, 1, kBad, kBad, handle), OVRA_ERROR_MATRIX_ZERO_SIZE);
  EXPECT_EQ(run(src, dst, 1, 0, kBad, kBad, handle), OVRA_ERROR_MATRIX_ZERO_SIZE);
  EXPECT_EQ(run(src, dst, 2, 1, good | 1U << 31, good, handle), OVRA_ERROR_FORMAT_CHANGED);
  EXPECT_EQ(run(src, dst, 2, 1, good, ColorFormat(9), handle), OVRA_ERROR_FORMAT_CHANGED);
  EXPECT_EQ(run(src, dst, 2, -1, good, good, handle), OVRA_OK);
  EXPECT_EQ(run(src, dst, INT32_MIN, 1, good, good, handle), OVRA_OK);
  EXPECT_EQ(destination, Bytes(6, 77));
  EXPECT_EQ(run(src, dst, 2, 1, good, good, handle), OVRA_OK);
  EXPECT_EQ(destination, source);

  EXPECT_EQ(OvraConvColorMtxSingleStep(nullptr, dst, 0, 0, kBad, kBad, &matrix),
            OVRA_ERROR_MATRIX_NULL);
  EXPECT_EQ(OvraConvColorMtxSingleStep(src, nullptr, 0, 0, kBad, kBad, &matrix),
            OVRA_ERROR_MATRIX_NULL);
  EXPECT_EQ(OvraConvColorMtxSingleStep(src, dst, 0, 0, kBad, kBad, nullptr),
            OVRA_ERROR_MATRIX_NULL);
  EXPECT_EQ(OvraConvColorMtxSingleStep(src, dst, 1, 0, kBad, kBad, &matrix),
            OVRA_ERROR_MATRIX_ZERO_SIZE);
  EXPECT_EQ(OvraConvColorMtxSingleStep(src, dst, -1, 1, good, good, &matrix), OVRA_OK);
  EXPECT_EQ(destination, source);

  EXPECT_EQ(OvraConvColorMtx_Free(nullptr), OVRA_ERROR_MATRIX_NULL);
  EXPECT_EQ(OvraConvColorMtx_Free(&handle), OVRA_OK);
  EXPECT_EQ(handle, 0U);
  EXPECT_EQ(OvraConvColorMtx_Free(&handle), OVRA_OK);
}

}  // namespace
