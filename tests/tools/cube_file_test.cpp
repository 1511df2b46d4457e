// SPDX-License-Identifier: MIT
// .cube files, and what the library gets of them.
#include "cube_file.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "color_tables.h"
#include "error.h"
#include "support/random.h"
#include "tools/temporary_folder.h"

namespace ovra_host {
namespace {

// Eight rows of a table of two points an axis: output = input, red varying fastest.
const std::string kIdentityRows = "0 0 0\n1 0 0\n0 1 0\n1 1 0\n0 0 1\n1 0 1\n0 1 1\n1 1 1\n";

// Whatever bytes a file holds, it is refused or read as what it says.
TEST(CubeFile, SurvivesDamage) {
  const std::string whole = "TITLE \"T\"\nDOMAIN_MAX 1 2 3\nLUT_3D_SIZE 2\n" + kIdentityRows;
  ovra_test::Random random(71);
  int accepted = 0;
  for (int i = 0; i < 3000; ++i) {
    std::string text = whole;
    for (int k = ovra_test::RandomInt(random, 1, 3); k > 0; --k) {
      const auto place = static_cast<size_t>(random() % text.size());
      if (random() % 3 == 0) {
        text.erase(place, 1 + random() % 5);
      } else {
        text[place] =
            random() % 2 == 0 ? whole[random() % whole.size()] : static_cast<char>(random());
      }
    }
    try {
      const CubeFile cube = ParseCubeFile(text, "x.cube");
      EXPECT_EQ(cube.rows.size(), cube.dimensions == 3 ? 8U : static_cast<size_t>(cube.points));
      const CubeLattice lattice(cube, 255, 255);
      ++accepted;
    } catch (const Error& error) {
      EXPECT_EQ(std::string(error.what()).rfind("x.cube:", 0), 0U) << error.what();
    }
  }
  EXPECT_GT(accepted, 50);  // most damage shows
}

TEST(CubeFile, WrittenFilesReadBack) {
  const ovra_test::TemporaryFolder folder;
  CubeFile cube =
      ParseCubeFile("TITLE \"T\"\nDOMAIN_MAX 1 2 3\nLUT_3D_SIZE 2\n" + kIdentityRows, "x.cube");
  cube.rows[3] = {0.125, -1.5, 1e-7};
  WriteCubeFile(cube, folder.File("a.cube"));
  const CubeFile back = ReadCubeFile(folder.File("a.cube"));
  EXPECT_EQ(back.title, cube.title);
  EXPECT_EQ(back.domain_max, cube.domain_max);
  EXPECT_EQ(back.rows, cube.rows);
}

TEST(CubeFile, InterpolatesBetweenPointsAndEndsAtTheDomain) {
  CubeFile cube = ParseCubeFile("DOMAIN_MAX 1 1 2\nLUT_3D_SIZE 2\n" + kIdentityRows, "x.cube");
  cube.rows[7] = {1, 1, 3};
  const Triple between = cube.Evaluate({0.25, 0.5, 1.5});
  EXPECT_DOUBLE_EQ(between[0], 0.25);
  EXPECT_DOUBLE_EQ(between[1], 0.5);
  EXPECT_DOUBLE_EQ(between[2], 0.75 + 2 * 0.25 * 0.5 * 0.75);
  EXPECT_EQ(cube.Evaluate({-1, 7, 9}), (Triple{0, 1, 1}));

  const CubeFile curve = ParseCubeFile("LUT_1D_SIZE 3\n0 1 0\n.5 .5 0\n1 0 1\n", "x.cube");
  EXPECT_EQ(curve.Evaluate({0.25, 0.25, 0.75}), (Triple{0.25, 0.75, 0.5}));
}

// The library's axis 0 is red and varies slowest.
TEST(CubeLattice, ReordersAxes) {
  CubeFile file = ParseCubeFile("LUT_3D_SIZE 2\n" + kIdentityRows, "x.cube");
  CubeLattice lattice(file, 255, 100);
  const OvraColorCube record = lattice.Record();
  const std::vector<uint16_t> nodes(record.lattice, record.lattice + 8 * 3);
  EXPECT_EQ(nodes, (std::vector<uint16_t>{0,   0, 0, 0,   0, 100, 0,   100, 0, 0,   100, 100,
                                          100, 0, 0, 100, 0, 100, 100, 100, 0, 100, 100, 100}));
  EXPECT_EQ(record.count0, 2U);
  EXPECT_EQ(record.grid0[1], 255);
}

TEST(CubeLattice, GridsStandAtWholeCodesInsideTheRange) {
  struct Case {
    const char* domain;
    std::vector<uint16_t> red_grid;
  };
  const Case cases[] = {
      {"DOMAIN_MIN 0 0 0\n", {0, 128, 255}},
      {"DOMAIN_MIN -1 0 0\n", {0, 255}},
      {"DOMAIN_MIN -2 0 0\nDOMAIN_MAX 4 1 1\n", {0, 255}},
      {"DOMAIN_MIN 0.2 0 0\nDOMAIN_MAX 0.4 1 1\n", {51, 77, 102}},
      {"DOMAIN_MIN 0.2 0 0\nDOMAIN_MAX 0.2001 1 1\n", {50, 51}},
      {"DOMAIN_MIN -2 0 0\nDOMAIN_MAX -1 1 1\n", {0, 1}},
      {"DOMAIN_MIN 8 0 0\nDOMAIN_MAX 9 1 1\n", {254, 255}},
  };
  std::string rows;
  for (int i = 0; i < 27; ++i) rows += std::to_string(i % 3 / 2.0) + " 0 0\n";
  for (const Case& c : cases) {
    const CubeFile file = ParseCubeFile(c.domain + ("LUT_3D_SIZE 3\n" + rows), "x.cube");
    CubeLattice lattice(file, 255, 4095);
    const OvraColorCube record = lattice.Record();
    EXPECT_EQ(std::vector<uint16_t>(record.grid0, record.grid0 + record.count0), c.red_grid)
        << c.domain;
    // The first node is the table's value at the first grid position.
    const double first = file.Evaluate({c.red_grid[0] / 255.0, 0, 0})[0];
    EXPECT_EQ(record.lattice[0], ToSample(first, 4095)) << c.domain;
  }
}

TEST(ChannelTables, HoldEveryCode) {
  const CubeFile curve = ParseCubeFile("LUT_1D_SIZE 2\n0 1 0\n1 0 2\n", "x.cube");
  const ChannelTables tables = MakeChannelTables(curve, 255, 65535);
  ASSERT_EQ(tables.tables[0].size(), 256U);
  EXPECT_EQ(tables.tables[0][1], 257);
  EXPECT_EQ(tables.tables[1][1], 65535 - 257);
  EXPECT_EQ(tables.tables[2][200], 65535);
  EXPECT_EQ(MakeScalingTables(4095, 65535).tables[1][2048], 32776);
}

}  // namespace
}  // namespace ovra_host
