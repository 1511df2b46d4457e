// SPDX-License-Identifier: MIT
// Worked examples and properties of colour cubes, tables, polynomials and matrices.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <functional>
#include <limits>
#include <tuple>
#include <vector>

#include "ovra/color.h"
#include "support/random.h"

namespace {

using Bytes = std::vector<uint8_t>;
using Words = std::vector<uint16_t>;

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

// A three-channel format of two-byte samples, or of bytes.
OvraPixelFormatCode Format(uint32_t depth_bits, OvraColorModel model = OVRA_MODEL_RGB) {
  return OvraMakePixelFormat(depth_bits, 3, model, 1, OVRA_ROWS_TOP_DOWN);
}

Bytes Packed(const Words& samples, uint32_t depth_bits) {
  if (depth_bits == 8) return {samples.begin(), samples.end()};
  const auto* bytes = reinterpret_cast<const uint8_t*>(samples.data());
  return {bytes, bytes + 2 * samples.size()};
}

Words Unpacked(const Bytes& bytes, uint32_t depth_bits) {
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
  const Bytes source = Packed(samples, in_depth);
  Bytes destination(pixels * ((out >> 4 & 15) + 1) * (out_depth == 8 ? 1 : 2));
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

// Output = input at every node.
Cube IdentityCube(const Words& grid) {
  Cube cube = {{grid, grid, grid}, {}};
  for (const uint16_t a : grid) {
    for (const uint16_t b : grid) {
      for (const uint16_t c : grid) cube.lattice.insert(cube.lattice.end(), {a, b, c});
    }
  }
  return cube;
}

Words ThroughCube(Cube cube, const Words& samples, OvraPixelFormatCode in = Format(8),
                  OvraPixelFormatCode out = Format(8)) {
  const OvraColorCube record = cube.Record();
  return Converted(OvraConvColorCubeSingleStep, samples, in, out, &record);
}

TEST(ColorCube, IdentityChangesNothing) {
  Words source;
  for (uint16_t value = 0; value < 256; ++value) {
    for (const uint16_t other : {0, 7, 128, 255}) {
      source.insert(source.end(), {value, other, static_cast<uint16_t>(255 - value)});
    }
  }
  for (const uint32_t points : {2U, 18U, 52U}) {  // 255 is a multiple of points - 1
    for (const OvraColorModel model : {OVRA_MODEL_RGB, OVRA_MODEL_BGR, OVRA_MODEL_YCC}) {
      EXPECT_EQ(ThroughCube(IdentityCube(EvenGrid(points, 255)), source, Format(8, model)), source)
          << points;
    }
  }
}

// Component 0 follows axis 0 alone: the first channel of RGB, the last one of BGR, and of YCC where
// input is deeper than 8 bits.
TEST(ColorCube, ModelsReverseTheAxes) {
  Cube first = {{Words{0, 100}, Words{0, 100}, Words{0, 100}}, Words(24)};
  for (size_t node = 4; node < 8; ++node) first.lattice[3 * node] = 100;
  const std::tuple<OvraColorModel, uint32_t, Words> cases[] = {{OVRA_MODEL_RGB, 8, {10, 0, 0}},
                                                               {OVRA_MODEL_BGR, 8, {0, 0, 30}},
                                                               {OVRA_MODEL_YCC, 8, {10, 0, 0}},
                                                               {OVRA_MODEL_YCC, 10, {0, 0, 30}}};
  for (const auto& [model, depth, expected] : cases) {
    EXPECT_EQ(ThroughCube(first, {10, 20, 30}, Format(depth, model)), expected);
  }
}

// Random nodes against trilinear interpolation in real numbers: rounding takes half a code,
// truncated fractions and products each less than 255 / 4096.
TEST(ColorCube, IsTrilinearInterpolation) {
  ovra_test::Random random(52);
  const Words grid = {0, 37, 100, 255};
  Cube cube = {{grid, grid, grid}, Words(4 * 4 * 4 * 3)};
  Words pixels(3 * 500);
  for (Words* const samples : {&cube.lattice, &pixels}) {
    for (uint16_t& sample : *samples) sample = static_cast<uint16_t>(random() % 256);
  }
  const Words result = ThroughCube(cube, pixels);
  for (size_t i = 0; i < pixels.size(); ++i) {
    double sum = 0;
    for (size_t corner = 0; corner < 8; ++corner) {
      double weight = 1;
      size_t node = 0;
      for (size_t axis = 0; axis < 3; ++axis) {
        const uint16_t code = pixels[i / 3 * 3 + axis];
        const size_t cell = code < 37 ? 0 : code < 100 ? 1 : 2;
        const double fraction = double{1} * (code - grid[cell]) / (grid[cell + 1] - grid[cell]);
        const size_t far = corner >> axis & 1;
        weight *= far != 0 ? fraction : 1 - fraction;
        node = node * 4 + cell + far;
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
  const Words result = ThroughCube(cube, source, Format(depth), Format(12));
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

// Positions of a grid that no power of two divides are exact at the nodes.
TEST(Cascade, IdentityLeavesTheNodes) {
  Words uneven = EvenGrid(17, 4096);
  uneven.back() = 4095;
  for (const Words& grid : {EvenGrid(16, 4095), uneven}) {
    Cube second = IdentityCube(grid);
    Cube first = {{EvenGrid(4096, 4095), Words{0, 1}, Words{7}}, {}};
    for (uint16_t a = 0; a < 4096; ++a) {
      const auto fall = static_cast<uint16_t>(4095 - a);
      first.lattice.insert(first.lattice.end(), {a, fall, 17, a, fall, 18});
    }
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

OvraColorMatrix Diagonal(double gain, double constant = 0) {
  return {{{gain, 0, 0, constant}, {0, gain, 0, constant}, {0, 0, gain, constant}}, 0};
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
      OvraColorMatrix matrix = Diagonal(1, 0.7);
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
    OvraColorMatrix matrix = Diagonal(c.weight, c.constant);
    for (int k = 0; k < 3; ++k) matrix.rows[k][4 + k] = c.square;
    EXPECT_EQ(ConvertedPixel(matrix, {100, 100, 100}), Words(3, c.expected)) << &c - cases;
  }
}

// --- Handles ---------------------------------------------------------------------------------

// Two runs of each handle make all samples 5, after what it was made of is gone.
TEST(ColorHandle, OfAnotherFamilyAndWordsThatAreNoAddressAreRefused) {
  struct Family {
    OvraStatus null;
    decltype(&OvraConvColorCube) convert;
    decltype(&OvraConvColorCube_Free) release;
    uintptr_t handle;
  };
  const auto made = [](OvraStatus null, auto* init, const auto* parameters, auto* convert,
                       auto* release) {
    Family family = {null, convert, release, 0};
    EXPECT_EQ(init(Format(8), Format(8), parameters, &family.handle), OVRA_OK);
    return family;
  };
  std::vector<Family> families;
  {
    Cube cube = {{Words{0, 255}, Words{0, 255}, Words{0, 255}}, Words(24, 5)};
    const OvraColorCube record = cube.Record();
    const OvraChannelPolynomial polynomials[] = {{5, 0, 0, 0}, {5, 0, 0, 0}, {5, 0, 0, 0}};
    const OvraColorMatrix matrix = {{{0, 0, 0, 5}, {0, 0, 0, 5}, {0, 0, 0, 5}}, 0};
    families = {made(OVRA_ERROR_CUBE_NULL, OvraConvColorCube_Init, &record, OvraConvColorCube,
                     OvraConvColorCube_Free),
                made(OVRA_ERROR_TABLE_NULL, OvraConvColorCoef_Init, polynomials, OvraConvColor1DTbl,
                     OvraConvColorCoef_Free),
                made(OVRA_ERROR_MATRIX_NULL, OvraConvColorMtx_Init, &matrix, OvraConvColorMtx,
                     OvraConvColorMtx_Free)};
  }
  const auto expect = [](const Family& family, uintptr_t word, OvraStatus status, uint8_t sample) {
    const uint8_t source[] = {1, 2, 3};
    Bytes pixel(3, 7);
    EXPECT_EQ(family.convert(source, pixel.data(), 1, 1, Format(8), Format(8), word), status);
    EXPECT_EQ(pixel, Bytes(3, sample));
  };
  for (const Family& family : families) {
    for (const Family& owner : families) {
      for (uintptr_t word :
           {owner.handle, owner.handle + 1, owner.handle + 4, uintptr_t{1}, uintptr_t{0xFFF0}}) {
        if (word == family.handle) continue;
        const uintptr_t before = word;
        expect(family, word, family.null, 7);
        EXPECT_EQ(family.release(&word), family.null);
        EXPECT_EQ(word, before);
      }
    }
  }
  for (Family& family : families) {
    for (int run = 0; run < 2; ++run) expect(family, family.handle, OVRA_OK, 5);
    EXPECT_EQ(family.release(&family.handle), OVRA_OK);
    EXPECT_EQ(family.handle, 0U);
  }
}

}  // namespace
