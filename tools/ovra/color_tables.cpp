// SPDX-License-Identifier: MIT
#include "color_tables.h"

#include <algorithm>
#include <cmath>

namespace ovra_host {
namespace {

// The input codes nearest to the points of one axis, increasing, at least two.
std::vector<uint16_t> GridCodes(const CubeFile& file, size_t channel, uint32_t max_input) {
  std::vector<uint16_t> codes;
  const double min = file.domain_min[channel];
  const double step = (file.domain_max[channel] - min) / (file.points - 1);
  for (int i = 0; i < file.points; ++i) {
    const uint16_t code = ToSample(min + step * i, max_input);
    if (codes.empty() || code > codes.back()) codes.push_back(code);
  }
  if (codes.size() == 1) {  // the whole domain is within one code
    const uint16_t only = codes[0];
    codes = {static_cast<uint16_t>(only - (only > 0)), static_cast<uint16_t>(only + (only == 0))};
  }
  return codes;
}

}  // namespace

uint16_t ToSample(double value, uint32_t max) {
  return static_cast<uint16_t>(std::lround(std::clamp(value, 0.0, 1.0) * max));
}

CubeLattice::CubeLattice(const CubeFile& file, uint32_t max_input, uint32_t max_output) {
  for (size_t k = 0; k < 3; ++k) grids_[k] = GridCodes(file, k, max_input);
  const double scale = max_input;
  for (const uint16_t red : grids_[0]) {
    for (const uint16_t green : grids_[1]) {
      for (const uint16_t blue : grids_[2]) {
        const Triple node = file.Evaluate({red / scale, green / scale, blue / scale});
        for (const double value : node) nodes_.push_back(ToSample(value, max_output));
      }
    }
  }
}

OvraColorCube CubeLattice::Record() {
  const auto count = [this](size_t axis) { return static_cast<uint32_t>(grids_[axis].size()); };
  return {count(0), grids_[0].data(), count(1),     grids_[1].data(),
          count(2), grids_[2].data(), nodes_.data()};
}

ChannelTables MakeChannelTables(const CubeFile& file, uint32_t max_input, uint32_t max_output) {
  return TabulateChannels(max_input, max_output, [&](double input) {
    return file.Evaluate({input, input, input});
  });
}

ChannelTables MakeScalingTables(uint32_t max_input, uint32_t max_output) {
  return TabulateChannels(max_input, max_output, [](double input) {
    return Triple{input, input, input};
  });
}

}  // namespace ovra_host
