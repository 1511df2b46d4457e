// SPDX-License-Identifier: MIT
// The tables of a colour cube: interpolation coefficients of every cell, positions of every code.
#pragma once

#include <cstdint>

#include "color/cube/kernels.h"
#include "core/status.h"
#include "core/work_memory.h"
#include "ovra/color.h"

namespace ovra {

// What is to be built from a cube.
struct CubeLayout {
  uint32_t input_depth_bits;
  int node_components;    // 3 or 4
  bool wide_if_needed;    // coefficients that do not fit 16 bits are kept, not taken modulo 2^16
  bool reversed_tables;   // x goes along axis 2, z along axis 0, output channels are reversed
  bool reversed_samples;  // the third sample of a pixel is the code along axis 0
};

// The built tables, and their owner.
class CubeMemory {
 public:
  // Checks the cube and builds its tables. On failure the object is good for destruction only.
  Status Build(const OvraColorCube& cube, const CubeLayout& layout);

  bool HasWideCoefficients() const { return wide_.data() != nullptr; }

  // For kernels; valid as long as this object.
  CubeTables Tables(int32_t max_output) const;

 private:
  Status BuildCoefficients(const OvraColorCube& cube, const CubeLayout& layout);
  Status BuildAxes(const OvraColorCube& cube, const CubeLayout& layout);

  WorkMemory<int16_t> narrow_;
  WorkMemory<int32_t> wide_;  // in place of narrow_
  WorkMemory<CubePosition> positions_[3];
  const CubePosition* positions_of_[3] = {};  // which of them each coordinate uses
  uint32_t cell_strides_[3] = {};
  uint32_t samples_[3] = {};
  uint32_t max_input_ = 0;
};

}  // namespace ovra
