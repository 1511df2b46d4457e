// SPDX-License-Identifier: MIT
// Colour cubes for tests.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <set>
#include <vector>

#include "ovra/color.h"
#include "support/random.h"

namespace ovra_test {

struct TestCube {
  std::array<std::vector<uint16_t>, 3> grids;
  uint32_t components = 3;
  std::vector<uint16_t> lattice;

  uint32_t Count(size_t axis) const { return static_cast<uint32_t>(grids[axis].size()); }
  size_t Nodes() const { return grids[0].size() * grids[1].size() * grids[2].size(); }

  // Refers to this object's memory.
  OvraColorCube Record() {
    return {Count(0), grids[0].data(), Count(1),      grids[1].data(),
            Count(2), grids[2].data(), lattice.data()};
  }
};

// `count` positions from 0 to `last`, as even as integers allow.
inline std::vector<uint16_t> EvenGrid(uint32_t count, uint32_t last) {
  std::vector<uint16_t> grid(count);
  for (uint32_t i = 0; i < count; ++i) grid[i] = static_cast<uint16_t>(i * last / (count - 1));
  return grid;
}

// `count` different positions in [0, last], increasing.
inline std::vector<uint16_t> RandomGrid(Random& random, uint32_t count, int32_t last) {
  std::set<uint16_t> positions;
  while (positions.size() < count) {
    positions.insert(static_cast<uint16_t>(RandomInt(random, 0, last)));
  }
  return {positions.begin(), positions.end()};
}

// Uneven grids within [0, last_code], nodes of up to `max_node`.
inline TestCube RandomCube(Random& random, std::array<uint32_t, 3> counts, uint32_t components,
                           int32_t last_code, uint32_t max_node) {
  TestCube cube;
  cube.components = components;
  for (size_t axis = 0; axis < 3; ++axis) {
    cube.grids[axis] = RandomGrid(random, counts[axis], last_code);
  }
  cube.lattice.resize(cube.Nodes() * components);
  FillSamples(random, cube.lattice.data(), cube.lattice.data() + cube.lattice.size(), max_node);
  return cube;
}

// Every node's components are its own positions.
inline TestCube IdentityCube(uint32_t points, uint32_t last) {
  TestCube cube;
  cube.grids.fill(EvenGrid(points, last));
  for (const uint16_t a : cube.grids[0]) {
    for (const uint16_t b : cube.grids[1]) {
      for (const uint16_t c : cube.grids[2]) cube.lattice.insert(cube.lattice.end(), {a, b, c});
    }
  }
  return cube;
}

}  // namespace ovra_test
