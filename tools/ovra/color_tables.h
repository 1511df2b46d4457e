// SPDX-License-Identifier: MIT
// The tables of a .cube file in the units and the order of the library.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "cube_file.h"
#include "ovra/color.h"

namespace ovra_host {

// Full scale as a sample, rounded: 0..1 becomes 0..max, everything else its nearer end.
uint16_t ToSample(double value, uint32_t max);

// A three-dimensional table for the library.
class CubeLattice {
 public:
  // For input samples of 0..max_input and nodes of 0..max_output. Grid points stand at whole codes;
  // nodes are the table's values exactly there, also where a point of the table lies between codes
  // or outside 0..1.
  CubeLattice(const CubeFile& file, uint32_t max_input, uint32_t max_output);

  // Refers to this object's memory.
  OvraColorCube Record();

 private:
  std::array<std::vector<uint16_t>, 3> grids_;
  std::vector<uint16_t> nodes_;
};

// Channel tables for all codes of 0..max_input. The pointers lead into this object.
struct ChannelTables {
  std::array<std::vector<uint16_t>, 3> tables;

  OvraChannelTableSet Record() const {
    return {{tables[0].data(), tables[1].data(), tables[2].data()}};
  }
};

// The channels of a table of one dimension.
ChannelTables MakeChannelTables(const CubeFile& file, uint32_t max_input, uint32_t max_output);

// Brings samples from 0..max_input to 0..max_output.
ChannelTables MakeScalingTables(uint32_t max_input, uint32_t max_output);

}  // namespace ovra_host
