// SPDX-License-Identifier: MIT
// Tables and cubes in the units and the order of the library.
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

// Tables of `curve`: Triple curve(double), which answers the outputs of all three channels for one
// input of 0..1.
template <class Curve>
ChannelTables TabulateChannels(uint32_t max_input, uint32_t max_output, const Curve& curve) {
  ChannelTables result;
  for (uint32_t code = 0; code <= max_input; ++code) {
    const Triple values = curve(double{1} * code / max_input);
    for (size_t k = 0; k < 3; ++k) result.tables[k].push_back(ToSample(values[k], max_output));
  }
  return result;
}

// The channels of a table of one dimension.
ChannelTables MakeChannelTables(const CubeFile& file, uint32_t max_input, uint32_t max_output);

// Brings samples from 0..max_input to 0..max_output.
ChannelTables MakeScalingTables(uint32_t max_input, uint32_t max_output);

}  // namespace ovra_host
