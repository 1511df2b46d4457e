// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>
#ifndef _WIN32
#include <thread>
#endif

#include "ovra/color.h"
#include "support/color_cube.h"
#include "support/guarded_buffer.h"
#include "support/random.h"

namespace {

using ovra_test::TestCube;
using Bytes = std::vector<uint8_t>;

OvraPixelFormatCode Format(uint32_t depth_bits, uint32_t channels, OvraColorModel model,
                           uint32_t alignment = 1) {
  return OvraMakePixelFormat(depth_bits, channels, model, alignment, OVRA_ROWS_TOP_DOWN);
}

// --- The definition, pixel by pixel ----------------------------------------------------------

struct Conversion {
  uint32_t input_depth;
  OvraColorModel input_model;
  uint32_t output_depth;
  uint32_t channels;

  OvraPixelFormatCode Input(uint32_t alignment = 1) const {
    return Format(input_depth, 3, input_model, alignment);
  }
  OvraPixelFormatCode Output() const {
    return Format(output_depth, channels, channels == 4 ? OVRA_MODEL_CMYK : OVRA_MODEL_RGB);
  }
  bool Reversed() const {
    const bool ycc_reversed = input_depth > 8 || channels == 4;
    return input_model == OVRA_MODEL_BGR || (input_model == OVRA_MODEL_YCC && ycc_reversed);
  }
  size_t InputBytes() const { return input_depth > 8 ? 2 : 1; }
  size_t OutputBytes() const { return output_depth > 8 ? 2 : 1; }
};

std::string Describe(const Conversion& c) {
  return std::to_string(c.input_depth) + " bits, model " + std::to_string(c.input_model >> 8) +
         " to " + std::to_string(c.channels) + " x " + std::to_string(c.output_depth);
}

std::vector<Conversion> AllConversions() {
  std::vector<Conversion> all;
  for (const uint32_t input_depth : {8U, 10U, 16U}) {
    for (const OvraColorModel model : {OVRA_MODEL_RGB, OVRA_MODEL_BGR, OVRA_MODEL_YCC}) {
      for (const uint32_t output_depth : {8U, 12U}) {
        for (const uint32_t channels : {3U, 4U}) {
          all.push_back({input_depth, model, output_depth, channels});
        }
      }
    }
  }
  return all;
}

struct Coordinate {
  size_t cell;
  uint32_t numerator;  // of the position inside the cell
  uint32_t denominator;
};

Coordinate Locate(const std::vector<uint16_t>& grid, uint32_t code) {
  if (code < grid.front()) return {0, 0, 1};
  if (code >= grid.back()) return {grid.size() - 2, 1, 1};
  size_t cell = 0;
  while (code >= grid[cell + 1]) ++cell;
  return {cell, code - grid[cell], uint32_t{grid[cell + 1]} - grid[cell]};
}

// A pixel's place in the lattice. A corner of its cell is a set of axes: bit a is axis a's far side.
struct Place {
  Coordinate axes[3];

  Place(const TestCube& cube, const Conversion& c, const uint32_t* pixel) {
    for (size_t axis = 0; axis < 3; ++axis) {
      const uint32_t code = pixel[c.Reversed() ? 2 - axis : axis];
      axes[axis] = Locate(cube.grids[axis], code);
    }
  }
  int64_t Node(const TestCube& cube, unsigned corner, size_t component) const {
    size_t node = 0;
    for (size_t axis = 0; axis < 3; ++axis) {
      node = node * cube.Count(axis) + axes[axis].cell + (corner >> axis & 1);
    }
    return cube.lattice[node * cube.components + component];
  }
};

size_t ComponentOf(const Conversion& c, size_t channel) {
  return c.Reversed() && c.channels == 3 ? 2 - channel : channel;
}

// Trilinear interpolation in real numbers.
double Exact(const TestCube& cube, const Conversion& c, const uint32_t* pixel, size_t channel) {
  const Place place(cube, c, pixel);
  double sum = 0;
  for (unsigned corner = 0; corner < 8; ++corner) {
    double weight = 1;
    for (unsigned axis = 0; axis < 3; ++axis) {
      const Coordinate& at = place.axes[axis];
      const double fraction = double{1} * at.numerator / at.denominator;
      weight *= corner >> axis & 1 ? fraction : 1 - fraction;
    }
    sum += weight * static_cast<double>(place.Node(cube, corner, ComponentOf(c, channel)));
  }
  return sum;
}

// The same in fixed point: a sum over sets of axes, each with the alternating sum of the nodes
// below it and the truncated product of its fractions.
uint32_t FixedPoint(const TestCube& cube, const Conversion& c, const uint32_t* pixel,
                    size_t channel) {
  const Place place(cube, c, pixel);
  // Which set bit x, y and z stand for.
  const bool tables_reversed = c.Reversed() && c.channels == 3;
  const unsigned x_axis = tables_reversed ? 2 : 0;
  const unsigned z_axis = 2 - x_axis;
  const auto fraction = [&](unsigned axis) {
    const Coordinate& at = place.axes[axis];
    return int64_t{at.numerator} * 4096 / at.denominator;
  };
  const int64_t x = fraction(x_axis);
  const int64_t y = fraction(1);
  const int64_t z = fraction(z_axis);
  const int64_t xy = y * x / 4096;
  int64_t weights[8];
  weights[0] = 4096;
  weights[1U << x_axis] = x;
  weights[2] = y;
  weights[1U << z_axis] = z;
  weights[1U << x_axis | 2] = xy;
  weights[1U << z_axis | 2] = z * y / 4096;
  weights[5] = z * x / 4096;
  weights[7] = xy * z / 4096;
  int64_t sum = 2048;
  for (unsigned set = 0; set < 8; ++set) {
    int64_t coefficient = 0;
    for (unsigned corner = 0; corner < 8; ++corner) {
      if ((corner & set) != corner) continue;
      const bool minus = __builtin_popcount(set ^ corner) % 2 != 0;
      const int64_t node = place.Node(cube, corner, ComponentOf(c, channel));
      coefficient += minus ? -node : node;
    }
    if (c.input_depth == 8) coefficient = static_cast<int16_t>(coefficient);
    sum += coefficient * weights[set];
  }
  const int64_t value = static_cast<int32_t>(sum) >> 12;
  return static_cast<uint32_t>(std::clamp<int64_t>(value, 0, (1 << c.output_depth) - 1));
}

// --- Running the library ---------------------------------------------------------------------

Bytes RandomSamples(ovra_test::Random& random, const Conversion& c, size_t samples, uint32_t max) {
  Bytes bytes(samples * c.InputBytes());
  if (c.InputBytes() == 1) {
    ovra_test::FillSamples(random, bytes.data(), bytes.data() + samples, max);
  } else {
    auto* words = reinterpret_cast<uint16_t*>(bytes.data());
    ovra_test::FillSamples(random, words, words + samples, max);
  }
  return bytes;
}

uint32_t SampleAt(const uint8_t* bytes, size_t sample_bytes, size_t index) {
  return sample_bytes == 1 ? bytes[index] : reinterpret_cast<const uint16_t*>(bytes)[index];
}

// One row of pixels through the cube, in one step.
Bytes ConvertRow(TestCube& cube, const Conversion& c, const Bytes& source) {
  const size_t pixels = source.size() / 3 / c.InputBytes();
  Bytes destination(pixels * c.channels * c.OutputBytes());
  const OvraColorCube record = cube.Record();
  EXPECT_EQ(
      OvraConvColorCubeSingleStep(source.data(), destination.data(), static_cast<int32_t>(pixels),
                                  1, c.Input(), c.Output(), &record),
      OVRA_OK);
  return destination;
}

// Compares a converted row with the fixed-point definition.
void ExpectRow(const TestCube& cube, const Conversion& c, const Bytes& source,
               const Bytes& destination) {
  const uint32_t max_code = (1U << c.input_depth) - 1;
  for (size_t i = 0; i < destination.size() / c.OutputBytes() / c.channels; ++i) {
    uint32_t pixel[3];
    for (size_t k = 0; k < 3; ++k) {
      pixel[k] = std::min(SampleAt(source.data(), c.InputBytes(), 3 * i + k), max_code);
    }
    for (size_t k = 0; k < c.channels; ++k) {
      ASSERT_EQ(SampleAt(destination.data(), c.OutputBytes(), c.channels * i + k),
                FixedPoint(cube, c, pixel, k))
          << Describe(c) << ": pixel " << i << " channel " << k;
    }
  }
}

TEST(ColorCube, FollowsTheDefinitionBitByBit) {
  ovra_test::Random random(51);
  for (const Conversion& c : AllConversions()) {
    const int32_t last_code = (1 << c.input_depth) - 1;
    // Nodes in range; nodes whose differences leave 16 bits; nodes whose sums leave 32.
    for (const uint32_t max_node : {(1U << c.output_depth) - 1, 40000U, 65535U}) {
      TestCube cube = ovra_test::RandomCube(random, {5, 2, 7}, c.channels, last_code, max_node);
      const Bytes source = RandomSamples(random, c, 3 * 200, static_cast<uint32_t>(last_code));
      ExpectRow(cube, c, source, ConvertRow(cube, c, source));
    }
  }
}

TEST(ColorCube, IsTrilinearInterpolation) {
  ovra_test::Random random(52);
  for (const Conversion& c : AllConversions()) {
    if (c.output_depth != 8) continue;
    const uint32_t max_code = (1U << c.input_depth) - 1;
    TestCube cube =
        ovra_test::RandomCube(random, {4, 6, 3}, c.channels, static_cast<int32_t>(max_code), 255);
    const Bytes source = RandomSamples(random, c, 3 * 200, max_code);
    const Bytes destination = ConvertRow(cube, c, source);
    for (size_t i = 0; i < destination.size(); ++i) {
      uint32_t pixel[3];
      for (size_t k = 0; k < 3; ++k) {
        pixel[k] = SampleAt(source.data(), c.InputBytes(), i / c.channels * 3 + k);
      }
      // Rounding takes half a code, truncated fractions and products each less than 255 / 4096.
      ASSERT_NEAR(destination[i], Exact(cube, c, pixel, i % c.channels), 0.99) << Describe(c);
    }
  }
}

TEST(ColorCube, IdentityChangesNothing) {
  Bytes source;
  for (int value = 0; value < 256; ++value) {
    for (const int other : {0, 7, 128, 255}) {
      for (const int sample : {value, other, 255 - value}) {
        source.push_back(static_cast<uint8_t>(sample));
      }
    }
  }
  for (const uint32_t points : {2U, 18U, 52U}) {  // 255 is a multiple of points - 1
    TestCube cube = ovra_test::IdentityCube(points, 255);
    for (const OvraColorModel model : {OVRA_MODEL_RGB, OVRA_MODEL_BGR, OVRA_MODEL_YCC}) {
      EXPECT_EQ(ConvertRow(cube, {8, model, 8, 3}, source), source) << points;
    }
  }
}

TEST(ColorCube, RowsKeepTheInputsAlignment) {
  ovra_test::Random random(53);
  TestCube cube = ovra_test::RandomCube(random, {3, 3, 3}, 3, 1023, 4095);
  const Conversion c = {10, OVRA_MODEL_RGB, 12, 3};
  const OvraColorCube record = cube.Record();
  constexpr size_t kWidth = 3;
  constexpr size_t kHeight = 3;
  constexpr size_t kStride = 20;  // 18 bytes rounded up to 4
  const size_t size = kStride * (kHeight - 1) + 2 * 3 * kWidth;
  ovra_test::GuardedBuffer source(size);
  for (size_t i = 0; i < size / 2; ++i) {
    source.as<uint16_t>()[i] = static_cast<uint16_t>(ovra_test::RandomInt(random, 0, 1023));
  }
  ovra_test::GuardedBuffer destination(size);
  const OvraPixelFormatCode bottom_up = OVRA_ROWS_BOTTOM_UP;  // of no consequence
  ASSERT_EQ(OvraConvColorCubeSingleStep(source.data(), destination.data(), kWidth, kHeight,
                                        c.Input(4) | bottom_up, c.Output() | 0x00100000, &record),
            OVRA_OK);
  for (size_t y = 0; y < kHeight; ++y) {
    const Bytes in(source.data() + y * kStride, source.data() + y * kStride + 6 * kWidth);
    const Bytes out(destination.data() + y * kStride,
                    destination.data() + y * kStride + 6 * kWidth);
    ExpectRow(cube, c, in, out);
    if (y + 1 < kHeight) {
      EXPECT_EQ(destination[y * kStride + 18], ovra_test::GuardedBuffer::kFill);
    }
  }
}

// --- Unusual cubes ---------------------------------------------------------------------------

// All codes of one axis through a cube that is flat along the others.
std::vector<uint32_t> AlongAxis0(const std::vector<uint16_t>& grid,
                                 const std::vector<uint16_t>& nodes, uint32_t depth) {
  TestCube cube;
  cube.grids = {grid, {0, 1}, {0, 1}};
  for (const uint16_t node : nodes) {
    for (int i = 0; i < 4; ++i) cube.lattice.insert(cube.lattice.end(), {node, 0, 0});
  }
  const Conversion c = {depth, OVRA_MODEL_RGB, 12, 3};
  Bytes source;
  for (uint32_t code = 0; code < 1U << depth; ++code) {
    const uint16_t pixel[] = {static_cast<uint16_t>(code), 0, 0};
    for (const uint16_t sample : pixel) {
      source.push_back(static_cast<uint8_t>(sample));
      if (depth > 8) source.push_back(static_cast<uint8_t>(sample >> 8));
    }
  }
  const Bytes destination = ConvertRow(cube, c, source);
  std::vector<uint32_t> values;
  for (size_t i = 0; i < destination.size() / 2; i += 3) {
    values.push_back(SampleAt(destination.data(), 2, i));
  }
  return values;
}

TEST(ColorCube, CodesOutsideTheGridTakeTheEndNodes) {
  const std::vector<uint32_t> values = AlongAxis0({100, 150, 200}, {10, 110, 60}, 8);
  EXPECT_EQ(values[0], 10U);
  EXPECT_EQ(values[100], 10U);
  EXPECT_EQ(values[125], 60U);
  EXPECT_EQ(values[150], 110U);
  EXPECT_EQ(values[200], 60U);
  EXPECT_EQ(values[255], 60U);
}

TEST(ColorCube, GridsBeyondTheCodesAreHarmless) {
  for (const uint32_t depth : {8U, 10U}) {
    for (const uint32_t value : AlongAxis0({3000, 4000}, {10, 110}, depth)) ASSERT_EQ(value, 10U);
  }
  // The rise through the last code is cut there.
  const std::vector<uint32_t> cut = AlongAxis0({0, 510, 65535}, {0, 510, 0}, 8);
  for (uint32_t code = 0; code < 256; ++code) ASSERT_EQ(cut[code], code);
}

TEST(ColorCube, IntervalsThatDoNotIncreaseAreLeftOut) {
  const std::vector<uint32_t> repeated = AlongAxis0({0, 100, 100, 200}, {0, 100, 500, 600}, 8);
  EXPECT_EQ(repeated[99], 99U);
  EXPECT_EQ(repeated[100], 500U);
  EXPECT_EQ(repeated[255], 600U);
  // 100..199 is left behind for 0..49, and all beyond is the last node.
  const std::vector<uint32_t> falling = AlongAxis0({100, 200, 0, 50}, {1, 2, 300, 400}, 8);
  EXPECT_EQ(falling[25], 350U);
  EXPECT_EQ(falling[50], 400U);
  EXPECT_EQ(falling[150], 400U);
  const std::vector<uint32_t> never = AlongAxis0({200, 100, 50}, {1, 2, 3}, 8);
  EXPECT_EQ(never[199], 1U);
  EXPECT_EQ(never[200], 3U);
}

TEST(ColorCube, TakesManyPointsAnAxis) {
  constexpr uint32_t kPoints = 1024;
  const std::vector<uint16_t> grid = ovra_test::EvenGrid(kPoints, kPoints - 1);
  for (const uint32_t depth : {8U, 10U}) {
    const std::vector<uint32_t> values = AlongAxis0(grid, grid, depth);
    for (uint32_t code = 0; code < values.size(); ++code) ASSERT_EQ(values[code], code);
  }
}

TEST(ColorCube, SamplesAboveTheirDepthCountAsItsMaximum) {
  ovra_test::Random random(54);
  const Conversion c = {10, OVRA_MODEL_RGB, 12, 4};
  TestCube cube = ovra_test::RandomCube(random, {3, 4, 5}, 4, 1500, 4095);
  const Bytes source = RandomSamples(random, c, 3 * 100, 0xFFFF);
  ExpectRow(cube, c, source, ConvertRow(cube, c, source));
}

// --- Statuses --------------------------------------------------------------------------------

struct FormatCase {
  OvraPixelFormatCode input;
  OvraPixelFormatCode output;
  OvraStatus expected;
};

TEST(ColorCube, RefusesFormatsInOrder) {
  const OvraPixelFormatCode rgb8 = Format(8, 3, OVRA_MODEL_RGB);
  const OvraPixelFormatCode rgb10 = Format(10, 3, OVRA_MODEL_RGB);
  const OvraPixelFormatCode cmyk8 = Format(8, 4, OVRA_MODEL_CMYK);
  const OvraPixelFormatCode bad_arrangement = 0x00010000;
  const FormatCase cases[] = {
      // Dispatch reads the input's depth, then the output's channels, before all else.
      {0x000000FF, 0x000000F0, OVRA_ERROR_FORMAT_DEPTH},
      {0x000000F0, 0x000000F0, OVRA_ERROR_FORMAT_CHANNELS},
      {0x000004F0, 0x00000020, OVRA_ERROR_FORMAT_CHANNELS},
      {0x00000820, 0x00000020, OVRA_ERROR_FORMAT_COLOR_MODEL},
      {rgb8 | 0x00030000, 0x0000082F, OVRA_ERROR_FORMAT_ARRANGEMENT},
      {rgb8 | 0x00300000, rgb8, OVRA_ERROR_FORMAT_ROW_ALIGNMENT},
      {rgb8, rgb8 | 0x02000000, OVRA_ERROR_FORMAT_ROW_ORDER},
      {rgb8, 0x0000012F, OVRA_ERROR_FORMAT_DEPTH},
      // Input.
      {Format(8, 1, OVRA_MODEL_GREY), rgb8, OVRA_ERROR_CUBE_CHANNELS},
      {Format(16, 4, OVRA_MODEL_RGBA), rgb8, OVRA_ERROR_CUBE_CHANNELS},
      {Format(32, 3, OVRA_MODEL_TRIPLE_4), rgb8, OVRA_ERROR_CUBE_INPUT_DEPTH},
      {Format(32, 3, OVRA_MODEL_RGB), cmyk8, OVRA_ERROR_CUBE_INPUT_DEPTH},
      {Format(8, 3, OVRA_MODEL_TRIPLE_4) | bad_arrangement, rgb8, OVRA_ERROR_CUBE_COLOR_MODEL},
      {Format(16, 3, OVRA_MODEL_GREY), cmyk8, OVRA_ERROR_CUBE_COLOR_MODEL},
      {rgb8 | bad_arrangement, Format(13, 1, OVRA_MODEL_GREY), OVRA_ERROR_CUBE_ARRANGEMENT},
      {rgb10 | 0x00020000, rgb8, OVRA_ERROR_CUBE_ARRANGEMENT},
      // Output.
      {rgb8, Format(13, 1, OVRA_MODEL_GREY), OVRA_ERROR_CUBE_CHANNELS},
      {rgb8, Format(8, 2, OVRA_MODEL_RGB), OVRA_ERROR_CUBE_CHANNELS},
      {rgb10, Format(13, 1, OVRA_MODEL_RGB), OVRA_ERROR_CUBE_COLOR_MODEL},
      {rgb10, Format(8, 2, OVRA_MODEL_RGB), OVRA_ERROR_CUBE_COLOR_MODEL},
      {rgb8, Format(13, 3, OVRA_MODEL_GREY), OVRA_ERROR_CUBE_DEPTH},
      {rgb10, Format(16, 3, OVRA_MODEL_RGB), OVRA_ERROR_CUBE_DEPTH},
      {rgb8, Format(32, 4, OVRA_MODEL_RGBA), OVRA_ERROR_CUBE_DEPTH},
      {rgb8, Format(8, 3, OVRA_MODEL_CMYK), OVRA_ERROR_CUBE_COLOR_MODEL},
      {rgb8, Format(8, 4, OVRA_MODEL_RGBA) | bad_arrangement, OVRA_ERROR_CUBE_COLOR_MODEL},
      {rgb10, Format(8, 4, OVRA_MODEL_RGB), OVRA_ERROR_CUBE_COLOR_MODEL},
      {rgb8, Format(12, 3, OVRA_MODEL_YCC) | bad_arrangement, OVRA_ERROR_CUBE_ARRANGEMENT},
      {rgb10, cmyk8 | bad_arrangement, OVRA_ERROR_CUBE_ARRANGEMENT},
      // Nothing is wrong here.
      {rgb8, Format(12, 3, OVRA_MODEL_BGR), OVRA_OK},
      {Format(16, 3, OVRA_MODEL_YCC), cmyk8, OVRA_OK},
  };
  ovra_test::Random random(55);
  TestCube cube = ovra_test::RandomCube(random, {2, 2, 2}, 4, 255, 255);
  const OvraColorCube record = cube.Record();
  for (const FormatCase& c : cases) {
    uintptr_t handle = 77;
    EXPECT_EQ(OvraConvColorCube_Init(c.input, c.output, &record, &handle), c.expected)
        << std::hex << c.input << " " << c.output;
    EXPECT_EQ(handle != 0, c.expected == OVRA_OK);
    if (handle != 0) {
      EXPECT_EQ(OvraConvColorCube_Free(&handle), OVRA_OK);
      EXPECT_EQ(handle, 0U);
    }
    alignas(2) const uint8_t source[6] = {};
    alignas(2) uint8_t destination[8] = {};
    EXPECT_EQ(OvraConvColorCubeSingleStep(source, destination, 1, 1, c.input, c.output, &record),
              c.expected);
  }
}

TEST(ColorCube, RefusesCubesInOrder) {
  ovra_test::Random random(56);
  TestCube cube = ovra_test::RandomCube(random, {2, 2, 2}, 3, 255, 255);
  const OvraColorCube good = cube.Record();
  struct Case {
    void (*spoil)(OvraColorCube* record);
    OvraStatus expected;
  };
  const Case cases[] = {
      {[](OvraColorCube* r) { r->lattice = nullptr; }, OVRA_ERROR_CUBE_NULL},
      {[](OvraColorCube* r) { r->grid2 = nullptr; }, OVRA_ERROR_CUBE_NULL_GRID},
      {[](OvraColorCube* r) { r->grid0 = nullptr; }, OVRA_ERROR_CUBE_NULL_GRID},
      {[](OvraColorCube* r) { r->count2 = 0; }, OVRA_ERROR_CUBE_GRID_COUNT},
      {[](OvraColorCube* r) { r->count1 = 0; }, OVRA_ERROR_CUBE_GRID_COUNT},
      {[](OvraColorCube* r) { r->count0 = 0; }, OVRA_ERROR_CUBE_GRID_COUNT},
  };
  OvraColorCube spoilt = good;  // each case adds a fault that is found earlier
  for (const Case& c : cases) {
    c.spoil(&spoilt);
    uintptr_t handle = 77;
    EXPECT_EQ(OvraConvColorCube_Init(0x0120, 0x0120, &spoilt, &handle), c.expected);
    EXPECT_EQ(handle, 0U);
  }
  for (uint32_t OvraColorCube::*const count :
       {&OvraColorCube::count0, &OvraColorCube::count1, &OvraColorCube::count2}) {
    for (const uint32_t unsupported : {1U, 65537U}) {
      spoilt = good;
      spoilt.*count = unsupported;
      uintptr_t handle = 77;
      EXPECT_EQ(OvraConvColorCube_Init(0x0120, 0x0120, &spoilt, &handle),
                OVRA_ERROR_CUBE_GRID_COUNT);
    }
  }
}

// Products of counts that are small, or 0, modulo 2^32 or 2^64.
TEST(ColorCube, HugeCountsAreOutOfMemory) {
  uint16_t few[8] = {};
  uintptr_t handle = 77;
  for (const uint32_t count : {65537U, 0x80000001U, 0xFFFFFFFFU}) {
    const OvraColorCube huge = {count, few, count, few, count, few, few};
    EXPECT_EQ(OvraConvColorCube_Init(0x0120, 0x0120, &huge, &handle), OVRA_ERROR_NO_MEMORY);
    EXPECT_EQ(handle, 0U);
  }
}

TEST(ColorCube, ChecksPointersAndSizes) {
  ovra_test::Random random(57);
  TestCube cube = ovra_test::RandomCube(random, {2, 2, 2}, 3, 255, 255);
  const OvraColorCube record = cube.Record();
  constexpr OvraPixelFormatCode kRgb = 0x0120;
  constexpr OvraPixelFormatCode kBad = 0x0F;
  uintptr_t handle = 77;
  EXPECT_EQ(OvraConvColorCube_Init(kBad, kRgb, &record, nullptr), OVRA_ERROR_CUBE_NULL);
  EXPECT_EQ(OvraConvColorCube_Init(kBad, kRgb, nullptr, &handle), OVRA_ERROR_FORMAT_DEPTH);
  EXPECT_EQ(handle, 0U);
  EXPECT_EQ(OvraConvColorCube_Init(0, kRgb, nullptr, &handle), OVRA_ERROR_CUBE_NULL);
  ASSERT_EQ(OvraConvColorCube_Init(kRgb, kRgb, &record, &handle), OVRA_OK);

  const uint8_t source[12] = {};
  uint8_t destination[12] = {};
  EXPECT_EQ(OvraConvColorCube(source, destination, 1, 1, kBad, kRgb, 0), OVRA_ERROR_CUBE_NULL);
  EXPECT_EQ(OvraConvColorCube(nullptr, destination, 1, 1, kBad, kRgb, handle),
            OVRA_ERROR_FORMAT_DEPTH);
  EXPECT_EQ(OvraConvColorCube(nullptr, destination, 0, 1, kRgb, kRgb, handle),
            OVRA_ERROR_CUBE_NULL);
  EXPECT_EQ(OvraConvColorCube(source, nullptr, 0, 1, kRgb, kRgb, handle), OVRA_ERROR_CUBE_NULL);
  EXPECT_EQ(OvraConvColorCube(source, destination, 0, 1, 0x0220, kRgb, handle),
            OVRA_ERROR_CUBE_ZERO_SIZE);
  EXPECT_EQ(OvraConvColorCube(source, destination, 1, 0, kRgb, kRgb, handle),
            OVRA_ERROR_CUBE_ZERO_SIZE);
  const uint8_t untouched[12] = {};
  EXPECT_EQ(OvraConvColorCube(source, destination, 2, -2, kRgb, kRgb, handle), OVRA_OK);
  EXPECT_EQ(OvraConvColorCube(source, destination, -2, 2, kRgb, kRgb, handle), OVRA_OK);
  EXPECT_EQ(std::memcmp(destination, untouched, sizeof(untouched)), 0);

  EXPECT_EQ(OvraConvColorCubeSingleStep(nullptr, nullptr, 0, 0, kBad, kBad, nullptr),
            OVRA_ERROR_CUBE_NULL);
  EXPECT_EQ(OvraConvColorCubeSingleStep(nullptr, nullptr, 0, 0, kBad, kRgb, &record),
            OVRA_ERROR_FORMAT_DEPTH);
  EXPECT_EQ(OvraConvColorCubeSingleStep(source, nullptr, 0, 0, kRgb, kRgb, &record),
            OVRA_ERROR_CUBE_NULL);
  EXPECT_EQ(OvraConvColorCubeSingleStep(source, destination, 1, 0, 0, 0, &record),
            OVRA_ERROR_CUBE_ZERO_SIZE);

  EXPECT_EQ(OvraConvColorCube_Free(nullptr), OVRA_ERROR_CUBE_NULL);
  EXPECT_EQ(OvraConvColorCube_Free(&handle), OVRA_OK);
  EXPECT_EQ(handle, 0U);
  EXPECT_EQ(OvraConvColorCube_Free(&handle), OVRA_ERROR_CUBE_NULL);
}

// A call names a variant by its own formats; that variant's rules judge the handle's.
TEST(ColorCube, JudgesTheHandlesFormatsByTheVariantOfTheCall) {
  ovra_test::Random random(58);
  TestCube cube = ovra_test::RandomCube(random, {2, 2, 2}, 4, 255, 255);
  const OvraColorCube record = cube.Record();
  const OvraPixelFormatCode rgb8 = Format(8, 3, OVRA_MODEL_RGB);
  const OvraPixelFormatCode rgb12 = Format(12, 3, OVRA_MODEL_RGB);
  const OvraPixelFormatCode rgb16 = Format(16, 3, OVRA_MODEL_RGB);
  const OvraPixelFormatCode cmyk8 = Format(8, 4, OVRA_MODEL_CMYK);
  struct Case {
    OvraPixelFormatCode made_in;
    OvraPixelFormatCode made_out;
    OvraPixelFormatCode call_in;
    OvraPixelFormatCode call_out;
    OvraStatus expected;
  };
  const Case cases[] = {
      {rgb8, rgb8, rgb8, rgb8, OVRA_OK},
      {rgb8, rgb8, Format(8, 3, OVRA_MODEL_BGR), rgb8, OVRA_ERROR_CUBE_FORMAT_CHANGED},
      {rgb8, rgb8, rgb8, rgb12, OVRA_ERROR_CUBE_FORMAT_CHANGED},
      {rgb8, rgb8, rgb8 | 0x80000000, rgb8, OVRA_ERROR_CUBE_FORMAT_CHANGED},
      {rgb8, rgb8, Format(8, 1, OVRA_MODEL_GREY), rgb8, OVRA_ERROR_CUBE_FORMAT_CHANGED},
      {rgb8, rgb8, rgb16, rgb8, OVRA_ERROR_CUBE_FORMAT_CHANGED},
      {rgb12, rgb8, rgb8, rgb8, OVRA_ERROR_CUBE_FORMAT_CHANGED},
      {rgb16, rgb8, rgb8, rgb8, OVRA_ERROR_CUBE_DEPTH},
      {rgb8, rgb8, rgb8, cmyk8, OVRA_ERROR_CUBE_COLOR_MODEL},
      {rgb8, cmyk8, rgb8, rgb8, OVRA_ERROR_CUBE_CHANNELS},
      {rgb16, cmyk8, rgb16, rgb8, OVRA_ERROR_CUBE_COLOR_MODEL},
  };
  for (const Case& c : cases) {
    uintptr_t handle = 0;
    ASSERT_EQ(OvraConvColorCube_Init(c.made_in, c.made_out, &record, &handle), OVRA_OK);
    alignas(2) const uint8_t source[6] = {};
    alignas(2) uint8_t destination[8] = {};
    EXPECT_EQ(OvraConvColorCube(source, destination, 1, 1, c.call_in, c.call_out, handle),
              c.expected)
        << std::hex << c.made_in << " " << c.made_out << " " << c.call_in << " " << c.call_out;
    OvraConvColorCube_Free(&handle);
  }
}

// --- Handles ---------------------------------------------------------------------------------

TEST(ColorCube, HandleOutlivesTheCube) {
  ovra_test::Random random(59);
  const Conversion c = {8, OVRA_MODEL_BGR, 8, 3};
  TestCube cube = ovra_test::RandomCube(random, {3, 4, 5}, 3, 255, 255);
  const Bytes source = RandomSamples(random, c, 3 * 50, 255);
  const Bytes expected = ConvertRow(cube, c, source);
  OvraColorCube record = cube.Record();
  uintptr_t handle = 0;
  ASSERT_EQ(OvraConvColorCube_Init(c.Input(), c.Output(), &record, &handle), OVRA_OK);
  record = {};
  cube = {};
  for (int run = 0; run < 2; ++run) {
    Bytes destination(expected.size());
    ASSERT_EQ(
        OvraConvColorCube(source.data(), destination.data(), 50, 1, c.Input(), c.Output(), handle),
        OVRA_OK);
    EXPECT_EQ(destination, expected);
  }
  OvraConvColorCube_Free(&handle);
}

#ifndef _WIN32
TEST(ColorCube, ThreadsShareAHandle) {
  ovra_test::Random random(60);
  const Conversion c = {16, OVRA_MODEL_RGB, 12, 4};
  TestCube cube = ovra_test::RandomCube(random, {5, 5, 5}, 4, 65535, 4095);
  const Bytes source = RandomSamples(random, c, 3 * 2000, 65535);
  const Bytes expected = ConvertRow(cube, c, source);
  const OvraColorCube record = cube.Record();
  uintptr_t handle = 0;
  ASSERT_EQ(OvraConvColorCube_Init(c.Input(), c.Output(), &record, &handle), OVRA_OK);
  std::vector<Bytes> results(4, Bytes(expected.size()));
  std::vector<std::thread> threads;
  for (Bytes& result : results) {
    threads.emplace_back([&] {
      OvraConvColorCube(source.data(), result.data(), 2000, 1, c.Input(), c.Output(), handle);
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (const Bytes& result : results) EXPECT_EQ(result, expected);
  OvraConvColorCube_Free(&handle);
}
#endif

// --- Cascade ---------------------------------------------------------------------------------

TEST(Cascade, IdentityLeavesTheNodes) {
  ovra_test::Random random(61);
  TestCube first = ovra_test::RandomCube(random, {4, 5, 6}, 3, 255, 4095);
  const std::vector<uint16_t> nodes = first.lattice;
  TestCube second = ovra_test::IdentityCube(16, 4095);  // steps of 273
  const OvraColorCube records[] = {first.Record(), second.Record()};
  ASSERT_EQ(OvraCascade3D(&records[0], &records[1]), OVRA_OK);
  EXPECT_EQ(first.lattice, nodes);
}

// Positions of a grid that no power of two divides are still exact at the nodes.
TEST(Cascade, IdentityOnAnUnevenGrid) {
  TestCube second = ovra_test::IdentityCube(17, 4095);
  for (std::vector<uint16_t>& grid : second.grids) {
    for (size_t i = 0; i < 16; ++i) grid[i] = static_cast<uint16_t>(256 * i);
  }
  second.lattice.clear();
  for (const uint16_t a : second.grids[0]) {
    for (const uint16_t b : second.grids[1]) {
      for (const uint16_t c : second.grids[2]) {
        second.lattice.insert(second.lattice.end(), {a, b, c});
      }
    }
  }
  TestCube first = ovra_test::IdentityCube(2, 4095);
  first.grids = {ovra_test::EvenGrid(4096, 4095), {0, 4095}, {0, 4095}};
  first.lattice.clear();
  for (uint32_t i = 0; i < 4096 * 4; ++i) {
    const auto value = static_cast<uint16_t>(i / 4);
    first.lattice.insert(first.lattice.end(), {value, static_cast<uint16_t>(4095 - value), 17});
  }
  const std::vector<uint16_t> nodes = first.lattice;
  const OvraColorCube records[] = {first.Record(), second.Record()};
  ASSERT_EQ(OvraCascade3D(&records[0], &records[1]), OVRA_OK);
  EXPECT_EQ(first.lattice, nodes);
}

TEST(Cascade, PassesEveryNodeThroughTheSecondCube) {
  ovra_test::Random random(62);
  const Conversion c = {16, OVRA_MODEL_RGB, 12, 3};
  for (const std::array<uint32_t, 3> counts :
       {std::array<uint32_t, 3>{1, 1, 1}, {2, 1, 3}, {9, 11, 13}}) {
    for (const uint32_t max_node : {4095U, 65535U}) {
      TestCube first = ovra_test::RandomCube(random, counts, 3, 255, 65535);
      TestCube second = ovra_test::RandomCube(random, {6, 4, 5}, 3, 50000, max_node);
      const auto* bytes = reinterpret_cast<const uint8_t*>(first.lattice.data());
      const Bytes source(bytes, bytes + first.lattice.size() * 2);
      const OvraColorCube records[] = {first.Record(), second.Record()};
      ASSERT_EQ(OvraCascade3D(&records[0], &records[1]), OVRA_OK);
      ExpectRow(second, c, source, Bytes(bytes, bytes + first.lattice.size() * 2));
    }
  }
}

TEST(Cascade, ValidatesInOrderAndLeavesTheFirstCubeOnFailure) {
  ovra_test::Random random(63);
  TestCube first_cube = ovra_test::RandomCube(random, {2, 3, 4}, 3, 255, 4095);
  TestCube second_cube = ovra_test::RandomCube(random, {2, 2, 2}, 3, 4095, 4095);
  const std::vector<uint16_t> nodes = first_cube.lattice;
  struct Case {
    void (*spoil)(OvraColorCube* first, OvraColorCube* second);
    OvraStatus expected;
  };
  const Case cases[] = {
      {[](auto*, auto* second) { second->count1 = 1; }, OVRA_ERROR_CASCADE_CONVERSION},
      {[](auto*, auto* second) { second->grid2 = nullptr; }, OVRA_ERROR_CASCADE_NULL_GRID},
      {[](auto*, auto* second) { second->count2 = 0; }, OVRA_ERROR_CASCADE_GRID_COUNT},
      {[](auto*, auto* second) { second->grid0 = nullptr; }, OVRA_ERROR_CASCADE_NULL_GRID},
      {[](auto*, auto* second) { second->count0 = 0; }, OVRA_ERROR_CASCADE_GRID_COUNT},
      {[](auto*, auto* second) { second->lattice = nullptr; }, OVRA_ERROR_CASCADE_NULL},
      {[](auto* first, auto*) { first->grid1 = nullptr; }, OVRA_ERROR_CASCADE_NULL_GRID},
      {[](auto* first, auto*) { first->count1 = 0; }, OVRA_ERROR_CASCADE_GRID_COUNT},
      {[](auto* first, auto*) { first->grid0 = nullptr; }, OVRA_ERROR_CASCADE_NULL_GRID},
      {[](auto* first, auto*) { first->lattice = nullptr; }, OVRA_ERROR_CASCADE_NULL},
  };
  OvraColorCube first = first_cube.Record();
  OvraColorCube second = second_cube.Record();
  for (const Case& c : cases) {  // each adds a fault that is found earlier
    c.spoil(&first, &second);
    EXPECT_EQ(OvraCascade3D(&first, &second), c.expected);
  }
  first = first_cube.Record();
  second = second_cube.Record();
  EXPECT_EQ(OvraCascade3D(nullptr, &second), OVRA_ERROR_CASCADE_NULL);
  EXPECT_EQ(OvraCascade3D(&first, nullptr), OVRA_ERROR_CASCADE_NULL);
  EXPECT_EQ(first_cube.lattice, nodes);
}

TEST(Cascade, NodesBeyondAnImagesWidthAreRefused) {
  uint16_t nodes[8 * 3] = {};
  const uint16_t grid[2] = {0, 4095};
  const OvraColorCube second = {2, grid, 2, grid, 2, grid, nodes};
  const uint32_t counts[][3] = {
      {0x80000000, 1, 1}, {65536, 65536, 1}, {65536, 65536, 65536}, {3, 0x55555556, 0xC0000000}};
  for (const auto& [count0, count1, count2] : counts) {
    const OvraColorCube first = {count0, grid, count1, grid, count2, grid, nodes};
    EXPECT_EQ(OvraCascade3D(&first, &second), OVRA_ERROR_CASCADE_CONVERSION);
  }
}

}  // namespace
