// SPDX-License-Identifier: MIT
// Worked examples and properties of colour cubes, tables, polynomials and matrices.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <functional>
#include <limits>
#include <vector>

#include "ovra/color.h"
#include "support/random.h"

namespace {

using Words = std::vector<uint16_t>;

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

// A three-channel format of two-byte samples, or of bytes.
OvraPixelFormatCode Format(uint32_t depth_bits, OvraColorModel model = OVRA_MODEL_RGB) {
  return OvraMakePixelFormat(depth_bits, 3, model, 1, OVRA_ROWS_TOP_DOWN);
}

std::vector<uint8_t> Packed(const Words& samples, uint32_t depth_bits) {
  if (depth_bits == 8) return {samples.begin(), samples.end()};
  const auto* bytes = reinterpret_cast<const uint8_t*>(samples.data());
  return {bytes, bytes + 2 * samples.size()};
}

Words Unpacked(const std::vector<uint8_t>& bytes, uint32_t depth_bits) {
  if (depth_bits == 8) return {bytes.begin(), bytes.end()};
  Words samples(bytes.size() / 2);
  std::memcpy(samples.data(), bytes.data(), bytes.size());
  return samples;
}

// One row of pixels through a conversion in one step.
template <class Convert, class Parameters>
Words Converted(Convert* convert, const Words& samples, OvraPixelFormatCode in,
                OvraPixelFormatCode out, const Parameters* parameters) {
  const uint32_t in_depth = 8 + (in & 15);
  const uint32_t out_depth = 8 + (out & 15);
  const size_t pixels = samples.size() / 3;
  const std::vector<uint8_t> source = Packed(samples, in_depth);
  std::vector<uint8_t> destination(pixels * ((out >> 4 & 15) + 1) * (out_depth == 8 ? 1 : 2));
  EXPECT_EQ(convert(source.data(), destination.data(), static_cast<int32_t>(pixels), 1, in, out,
                    parameters),
            OVRA_OK);
  return Unpacked(destination, out_depth);
}

// --- Cubes -----------------------------------------------------------------------------------

struct Cube {
  std::array<Words, 3> grids;
  Words lattice;

  OvraColorCube Record() {
    const auto count = [this](size_t axis) { return static_cast<uint32_t>(grids[axis].size()); };
    return {count(0), grids[0].data(), count(1),      grids[1].data(),
            count(2), grids[2].data(), lattice.data()};
  }
};

Words EvenGrid(uint32_t count, uint32_t last) {
  Words grid(count);
  for (uint32_t i = 0; i < count; ++i) grid[i] = static_cast<uint16_t>(i * last / (count - 1));
  return grid;
}

// Nodes whose components are what `value` makes of the positions.
Cube MakeCube(const std::array<Words, 3>& grids,
              const std::function<std::array<uint16_t, 3>(uint16_t, uint16_t, uint16_t)>& value) {
  Cube cube = {grids, {}};
  for (const uint16_t a : grids[0]) {
    for (const uint16_t b : grids[1]) {
      for (const uint16_t c : grids[2]) {
        const auto node = value(a, b, c);
        cube.lattice.insert(cube.lattice.end(), node.begin(), node.end());
      }
    }
  }
  return cube;
}

std::array<uint16_t, 3> Identity(uint16_t a, uint16_t b, uint16_t c) {
  return {a, b, c};
}

TEST(ColorCube, IdentityChangesNothing) {
  Words source;
  for (int value = 0; value < 256; ++value) {
    for (const int other : {0, 7, 128, 255}) {
      for (const int sample : {value, other, 255 - value}) {
        source.push_back(static_cast<uint16_t>(sample));
      }
    }
  }
  for (const uint32_t points : {2U, 18U, 52U}) {  // 255 is a multiple of points - 1
    const Words grid = EvenGrid(points, 255);
    Cube cube = MakeCube({grid, grid, grid}, Identity);
    const OvraColorCube record = cube.Record();
    for (const OvraColorModel model : {OVRA_MODEL_RGB, OVRA_MODEL_BGR, OVRA_MODEL_YCC}) {
      EXPECT_EQ(Converted(OvraConvColorCubeSingleStep, source, Format(8, model), 0x120, &record),
                source)
          << points;
    }
  }
}

TEST(ColorCube, ModelsReverseTheAxes) {
  const Words pixel = {10, 20, 30};
  // Component 0 follows axis 0 alone: the first channel of RGB, the last one of BGR, and of YCC
  // where input is deeper than 8 bits.
  Cube first =
      MakeCube({Words{0, 100}, Words{0, 100}, Words{0, 100}}, [](uint16_t a, uint16_t, uint16_t) {
        return std::array<uint16_t, 3>{a, 0, 0};
      });
  const OvraColorCube first_record = first.Record();
  const auto convert = [&](OvraColorModel model, uint32_t depth) {
    return Converted(OvraConvColorCubeSingleStep, pixel, Format(depth, model), 0x120,
                     &first_record);
  };
  EXPECT_EQ(convert(OVRA_MODEL_RGB, 8), (Words{10, 0, 0}));
  EXPECT_EQ(convert(OVRA_MODEL_BGR, 8), (Words{0, 0, 30}));
  EXPECT_EQ(convert(OVRA_MODEL_YCC, 8), (Words{10, 0, 0}));
  EXPECT_EQ(convert(OVRA_MODEL_YCC, 10), (Words{0, 0, 30}));
}

// Random nodes against trilinear interpolation in real numbers: rounding takes half a code,
// truncated fractions and products each less than 255 / 4096.
TEST(ColorCube, IsTrilinearInterpolation) {
  ovra_test::Random random(52);
  const Words grid = {0, 37, 100, 255};
  Cube cube = {{grid, grid, grid}, Words(4 * 4 * 4 * 3)};
  ovra_test::FillSamples(random, cube.lattice.data(), cube.lattice.data() + cube.lattice.size(),
                         255);
  const OvraColorCube record = cube.Record();
  Words pixels(3 * 500);
  for (uint16_t& sample : pixels) {
    sample = static_cast<uint16_t>(ovra_test::RandomInt(random, 0, 255));
  }
  const Words result = Converted(OvraConvColorCubeSingleStep, pixels, Format(8), 0x120, &record);
  for (size_t i = 0; i < pixels.size(); ++i) {
    size_t cells[3];
    double fractions[3];
    for (size_t axis = 0; axis < 3; ++axis) {
      const uint16_t code = pixels[i / 3 * 3 + axis];
      size_t& cell = cells[axis] = 0;
      while (cell + 2 < grid.size() && code >= grid[cell + 1]) ++cell;
      fractions[axis] = double{1} * (code - grid[cell]) / (grid[cell + 1] - grid[cell]);
    }
    double sum = 0;
    for (size_t corner = 0; corner < 8; ++corner) {
      double weight = 1;
      size_t node = 0;
      for (size_t axis = 0; axis < 3; ++axis) {
        const bool far = (corner >> axis & 1) != 0;
        weight *= far ? fractions[axis] : 1 - fractions[axis];
        node = node * 4 + cells[axis] + (far ? 1 : 0);
      }
      sum += weight * cube.lattice[3 * node + i % 3];
    }
    ASSERT_NEAR(result[i], sum, 0.99);
  }
}

// All codes of one axis through a cube that is flat along the others.
Words AlongAxis0(const Words& grid, const Words& nodes, uint32_t depth) {
  Cube cube = {{grid, {0, 1}, {0, 1}}, {}};
  for (const uint16_t node : nodes) {
    for (int i = 0; i < 4; ++i) cube.lattice.insert(cube.lattice.end(), {node, 0, 0});
  }
  Words source;
  for (uint32_t code = 0; code < 1U << depth; ++code) {
    source.insert(source.end(), {static_cast<uint16_t>(code), 0, 0});
  }
  const OvraColorCube record = cube.Record();
  const Words result =
      Converted(OvraConvColorCubeSingleStep, source, Format(depth), Format(12), &record);
  Words values;
  for (size_t i = 0; i < result.size(); i += 3) values.push_back(result[i]);
  return values;
}

TEST(ColorCube, UnusualGrids) {
  struct Case {
    Words grid;
    Words nodes;
    std::vector<std::pair<size_t, uint16_t>> expected;
  };
  const Case cases[] = {
      // Codes outside the grid take the end nodes.
      {{100, 150, 200},
       {10, 110, 60},
       {{0, 10}, {100, 10}, {125, 60}, {150, 110}, {200, 60}, {255, 60}}},
      // Grids may lie beyond the codes, and the rise through the last code is cut there.
      {{3000, 4000}, {10, 110}, {{0, 10}, {255, 10}}},
      {{0, 510, 65535}, {0, 510, 0}, {{1, 1}, {128, 128}, {255, 255}}},
      // Intervals that do not increase are left out.
      {{0, 100, 100, 200}, {0, 100, 500, 600}, {{99, 99}, {100, 500}, {255, 600}}},
      {{100, 200, 0, 50}, {1, 2, 300, 400}, {{25, 350}, {50, 400}, {150, 400}}},
      {{200, 100, 50}, {1, 2, 3}, {{199, 1}, {200, 3}}},
  };
  for (const Case& c : cases) {
    const Words values = AlongAxis0(c.grid, c.nodes, 8);
    for (const auto& [code, value] : c.expected) EXPECT_EQ(values[code], value) << &c - cases;
  }
  const Words grid = EvenGrid(1024, 1023);
  EXPECT_EQ(AlongAxis0(grid, grid, 10), grid);
}

TEST(ColorCube, HandleOutlivesTheCube) {
  Cube cube = MakeCube({Words{0, 255}, Words{0, 255}, Words{0, 255}}, Identity);
  OvraColorCube record = cube.Record();
  uintptr_t handle = 0;
  ASSERT_EQ(OvraConvColorCube_Init(0x120, 0x120, &record, &handle), OVRA_OK);
  record = {};
  std::fill(cube.lattice.begin(), cube.lattice.end(), uint16_t{0});
  const uint8_t source[] = {1, 2, 3, 4, 5, 6};
  for (int run = 0; run < 2; ++run) {
    uint8_t destination[6] = {};
    ASSERT_EQ(OvraConvColorCube(source, destination, 2, 1, 0x120, 0x120, handle), OVRA_OK);
    EXPECT_EQ(std::memcmp(source, destination, sizeof source), 0);
  }
  EXPECT_EQ(OvraConvColorCube_Free(&handle), OVRA_OK);
}

// Positions of a grid that no power of two divides are exact at the nodes.
TEST(Cascade, IdentityLeavesTheNodes) {
  Words uneven = EvenGrid(17, 4096);
  uneven.back() = 4095;
  for (const Words& grid : {EvenGrid(16, 4095), uneven}) {
    Cube second = MakeCube({grid, grid, grid}, Identity);
    Cube first = MakeCube({EvenGrid(4096, 4095), Words{0, 1}, Words{7}},
                          [](uint16_t a, uint16_t b, uint16_t) {
                            return std::array<uint16_t, 3>{a, static_cast<uint16_t>(4095 - a),
                                                           static_cast<uint16_t>(17 + b)};
                          });
    const Words nodes = first.lattice;
    const OvraColorCube records[] = {first.Record(), second.Record()};
    ASSERT_EQ(OvraCascade3D(&records[0], &records[1]), OVRA_OK);
    EXPECT_EQ(first.lattice, nodes);
  }
}

// --- Tables and polynomials ------------------------------------------------------------------

TEST(ChannelTables, ServeTheirChannelsAndLimit) {
  Words tables[3];
  for (uint16_t k = 0; k < 3; ++k) tables[k].assign(1024, static_cast<uint16_t>(300 * k + 1));
  tables[0][1023] = 77;
  const OvraChannelTableSet set = {{tables[0].data(), tables[1].data(), tables[2].data()}};
  const Words pixel = {5, 5, 5, 0xFFFF, 0xFFFF, 0xFFFF};  // the second beyond 10 bits
  const auto convert = [&](OvraColorModel model, uint32_t depth) {
    return Converted(OvraConvColor1DTblSingleStep, pixel, Format(10, model), Format(depth), &set);
  };
  EXPECT_EQ(convert(OVRA_MODEL_RGB, 16), (Words{1, 301, 601, 77, 301, 601}));
  EXPECT_EQ(convert(OVRA_MODEL_YCC, 9), (Words{1, 301, 511, 77, 301, 511}));
  EXPECT_EQ(convert(OVRA_MODEL_BGR, 8), (Words{255, 255, 1, 255, 255, 77}));
}

TEST(ChannelPolynomials, RoundHalfUpAndLimit) {
  const double two53 = 9007199254740992.0;
  struct Case {
    OvraChannelPolynomial polynomial;
    uint32_t in_depth;
    uint32_t out_depth;
    std::function<int64_t(int64_t)> expected;  // before the limits
  };
  const Case cases[] = {
      {{0, 1, 0, kNan}, 8, 8, [](int64_t v) { return v; }},
      {{0, 0.5, 0, kNan}, 8, 8, [](int64_t v) { return (v + 1) / 2; }},
      {{100, -1, 0, kNan}, 8, 8, [](int64_t v) { return 100 - v; }},
      {{-0.5, 1, 0, kNan}, 8, 12, [](int64_t v) { return v; }},
      {{0, 255.0 / 65535, 0, kNan}, 16, 8, [](int64_t v) { return (2 * v + 257) / 514; }},
      {{0, 0, 1.0 / 65535, kNan}, 16, 16, [](int64_t v) { return (2 * v * v + 65535) / 131070; }},
      {{0, 0, 1, kNan}, 16, 13, [](int64_t v) { return v * v; }},
      {{kNan, 1, 0, kNan}, 8, 8, [](int64_t) { return 0; }},
      {{kInfinity, 1, 0, kNan}, 8, 8, [](int64_t) { return 255; }},
      {{-kInfinity, 1, 0, kNan}, 8, 8, [](int64_t) { return 0; }},
      // The constant joins before the quadratic term, and swallows the linear one.
      {{two53, 1, -two53, kNan}, 8, 8, [](int64_t v) { return v == 0 ? 255 : 0; }},
  };
  for (const Case& c : cases) {
    const OvraChannelPolynomial set[] = {c.polynomial, {7, 0, 0, 0}, c.polynomial};
    Words source;
    for (uint32_t v = 0; v < 1U << c.in_depth; ++v) {
      source.insert(source.end(), 3, static_cast<uint16_t>(v));
    }
    const Words values = Converted(OvraConvColorCoefSingleStep, source, Format(c.in_depth),
                                   Format(c.out_depth), set);
    const int64_t max = (int64_t{1} << c.out_depth) - 1;
    for (size_t i = 0; i < values.size(); ++i) {
      const int64_t expected = i % 3 == 1 ? 7 : c.expected(static_cast<int64_t>(i / 3));
      ASSERT_EQ(values[i], std::clamp<int64_t>(expected, 0, max)) << &c - cases << ", " << i;
    }
  }
}

// --- Matrices --------------------------------------------------------------------------------

OvraColorMatrix Diagonal(double gain) {
  OvraColorMatrix matrix = {};
  for (int k = 0; k < 3; ++k) matrix.rows[k][k] = gain;
  return matrix;
}

Words ConvertedPixel(const OvraColorMatrix& matrix, const Words& pixel, uint32_t depth_bits = 8) {
  return Converted(OvraConvColorMtxSingleStep, pixel, Format(depth_bits), Format(depth_bits),
                   &matrix);
}

TEST(ColorMatrix, IdentityKeepsAndZeroBlackens) {
  for (uint32_t depth = 8; depth <= 16; ++depth) {
    const auto max = static_cast<uint16_t>((1U << depth) - 1);
    const Words pixel = {0, static_cast<uint16_t>(max / 2), max};
    EXPECT_EQ(ConvertedPixel(Diagonal(1), pixel, depth), pixel);
    EXPECT_EQ(ConvertedPixel(Diagonal(0), pixel, depth), Words(3, 0));
  }
}

// Each term alone on samples 2, 3, 5, with a weight of 1; the constant is 7.
TEST(ColorMatrix, TermsInTheirOrder) {
  const uint16_t terms[] = {2, 3, 5, 7, 4, 9, 25, 6, 15, 10};
  for (int t = 0; t < 10; ++t) {
    OvraColorMatrix matrix = {};
    matrix.rows[t % 3][t] = t == 3 ? 7 : 1;
    Words expected(3, 0);
    expected[static_cast<size_t>(t % 3)] = terms[t];
    EXPECT_EQ(ConvertedPixel(matrix, {2, 3, 5}), expected) << t;
  }
}

// A constant of 0.7 counts in double precision only, and so tells the arithmetic that was chosen.
TEST(ColorMatrix, ChoosesTheArithmeticOnceByTheSecondOrderTerms) {
  constexpr double kDenormal = std::numeric_limits<double>::denorm_min();
  const std::pair<double, bool> cases[] = {
      {0.0, false},        {-0.0, false},     {kNan, false},      {kInfinity, false},
      {-kInfinity, false}, {kDenormal, true}, {-kDenormal, true}, {1e-300, true}};
  for (const auto& [weight, asks] : cases) {
    for (int t = 4; t < 10; ++t) {
      OvraColorMatrix matrix = Diagonal(1);
      for (auto& row : matrix.rows) row[3] = 0.7;
      matrix.rows[t % 3][t] = weight;
      EXPECT_EQ(ConvertedPixel(matrix, {10, 20, 30}),
                asks ? (Words{11, 21, 31}) : (Words{10, 20, 30}))
          << weight << ", term " << t;
    }
  }
}

TEST(ColorMatrix, DefinesNumbersBeyondRange) {
  struct Case {
    double weight;  // of the pixel's own sample
    double constant;
    double square;  // one that matters, or 0
    uint16_t expected;
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
    EXPECT_EQ(ConvertedPixel(matrix, {100, 100, 100}), Words(3, c.expected)) << &c - cases;
  }
}

// --- Handles ---------------------------------------------------------------------------------

// The three kinds of handles. Each of them makes black.
struct Family {
  const char* name;
  OvraStatus null_status;
  std::function<OvraStatus(uintptr_t* handle)> init;
  decltype(&OvraConvColorCube) convert;
  decltype(&OvraConvColorCube_Free) release;

  OvraStatus Convert(uintptr_t handle, uint8_t* pixel) const {
    const uint8_t source[3] = {1, 2, 3};
    return convert(source, pixel, 1, 1, Format(8), Format(8), handle);
  }
};

const Family kFamilies[] = {
    {"cube", OVRA_ERROR_CUBE_NULL,
     [](uintptr_t* handle) {
       Cube cube = {{EvenGrid(2, 255), EvenGrid(2, 255), EvenGrid(2, 255)}, Words(24)};
       const OvraColorCube record = cube.Record();
       return OvraConvColorCube_Init(Format(8), Format(8), &record, handle);
     },
     OvraConvColorCube, OvraConvColorCube_Free},
    {"polynomials", OVRA_ERROR_TABLE_NULL,
     [](uintptr_t* handle) {
       const OvraChannelPolynomial polynomials[3] = {};
       return OvraConvColorCoef_Init(Format(8), Format(8), polynomials, handle);
     },
     OvraConvColor1DTbl, OvraConvColorCoef_Free},
    {"matrix", OVRA_ERROR_MATRIX_NULL,
     [](uintptr_t* handle) {
       const OvraColorMatrix matrix = {};
       return OvraConvColorMtx_Init(Format(8), Format(8), &matrix, handle);
     },
     OvraConvColorMtx, OvraConvColorMtx_Free},
};

// `word` given to a family that did not make it.
void ExpectRefused(const Family& family, uintptr_t word) {
  uint8_t pixel[3] = {7, 7, 7};
  uintptr_t handle = word;
  EXPECT_EQ(family.Convert(word, pixel), family.null_status) << family.name;
  EXPECT_EQ(pixel[0], 7) << family.name;
  EXPECT_EQ(family.release(&handle), family.null_status) << family.name;
  EXPECT_EQ(handle, word) << family.name;
}

TEST(ColorHandle, OfAnotherFamilyAndWordsThatAreNoAddressAreRefused) {
  for (const Family& owner : kFamilies) {
    uintptr_t handle = 0;
    ASSERT_EQ(owner.init(&handle), OVRA_OK);
    for (const Family& other : kFamilies) {
      if (&other != &owner) ExpectRefused(other, handle);
      for (const uintptr_t word : {uintptr_t{1}, uintptr_t{0xFFF0}, handle + 1, handle + 4}) {
        ExpectRefused(other, word);
      }
    }
    uint8_t pixel[3] = {7, 7, 7};
    EXPECT_EQ(owner.Convert(handle, pixel), OVRA_OK) << owner.name;
    EXPECT_EQ(pixel[0], 0) << owner.name;
    EXPECT_EQ(owner.release(&handle), OVRA_OK) << owner.name;
    EXPECT_EQ(handle, 0U) << owner.name;
  }
}

}  // namespace
