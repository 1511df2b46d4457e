// SPDX-License-Identifier: MIT
#include "color/cube/tables.h"

#include <algorithm>
#include <limits>

namespace ovra {
namespace {

// Strictly increasing 16-bit positions cannot be more, and a cell's number fits a CubePosition.
constexpr uint32_t kMaxGridCount = 65536;

// Cell numbers fit 32-bit arithmetic.
constexpr uint64_t kMaxCells = std::numeric_limits<int32_t>::max();

struct Axes {
  uint32_t counts[3];
  const uint16_t* grids[3];
};

Axes AxesOf(const OvraColorCube& cube) {
  return {{cube.count0, cube.count1, cube.count2}, {cube.grid0, cube.grid1, cube.grid2}};
}

// The axis that x (0), y (1) or z (2) goes along.
int AxisOf(int coordinate, const CubeLayout& layout) {
  return layout.reversed_tables ? 2 - coordinate : coordinate;
}

// A cube whose pointers are there and whose every axis has a cell; not yet whether all fits memory.
Status CheckCube(const OvraColorCube& cube) {
  const Axes axes = AxesOf(cube);
  for (const uint32_t count : axes.counts) {
    if (count < 2) return OVRA_ERROR_CUBE_GRID_COUNT;
  }
  for (const uint16_t* grid : axes.grids) {
    if (grid == nullptr) return OVRA_ERROR_CUBE_NULL_GRID;
  }
  return cube.lattice == nullptr ? OVRA_ERROR_CUBE_NULL : OVRA_OK;
}

// Cells of the cube; more than kMaxCells when they are too many.
uint64_t CountCells(const Axes& axes) {
  uint64_t cells = 1;
  for (const uint32_t count : axes.counts) {
    cells *= count - 1;
    if (cells > kMaxCells) break;  // so that the next product stays within 64 bits
  }
  return cells;
}

// The lattice as the interpolation sees it: distances between nodes, in elements.
struct NodeSteps {
  size_t x;
  size_t y;
  size_t z;
};

// Coefficients of one component in the cell whose lower corner is at `corner`.
void CellCoefficients(const uint16_t* corner, const NodeSteps& step,
                      int32_t (&coefficients)[kCubeSlots]) {
  const int32_t n000 = corner[0];
  const int32_t n100 = corner[step.x];
  const int32_t n010 = corner[step.y];
  const int32_t n001 = corner[step.z];
  const int32_t n110 = corner[step.x + step.y];
  const int32_t n101 = corner[step.x + step.z];
  const int32_t n011 = corner[step.y + step.z];
  const int32_t n111 = corner[step.x + step.y + step.z];
  coefficients[0] = n000;
  coefficients[1] = n111 - n110 - n101 - n011 + n100 + n010 + n001 - n000;
  coefficients[2] = n110 - n100 - n010 + n000;
  coefficients[3] = n011 - n010 - n001 + n000;
  coefficients[4] = n101 - n100 - n001 + n000;
  coefficients[5] = n100 - n000;
  coefficients[6] = n010 - n000;
  coefficients[7] = n001 - n000;
}

// Fills one cell. True when every coefficient fits its type; one that does not is stored modulo
// 2^16.
template <class Coefficient>
bool FillCell(const uint16_t* corner, const NodeSteps& step, const CubeLayout& layout,
              Coefficient* cell) {
  bool fits = true;
  std::fill(cell, cell + kCubeCellEntries, Coefficient{0});
  for (int channel = 0; channel < layout.node_components; ++channel) {
    const int component = layout.reversed_tables ? layout.node_components - 1 - channel : channel;
    int32_t coefficients[kCubeSlots];
    CellCoefficients(corner + component, step, coefficients);
    for (int slot = 0; slot < kCubeSlots; ++slot) {
      const auto stored = static_cast<Coefficient>(coefficients[slot]);
      cell[CubeEntry(stored, slot, channel)] = stored;
      fits &= stored == coefficients[slot];
    }
  }
  return fits;
}

// Fills all cells, in the lattice's own order. True when every coefficient fits its type.
template <class Coefficient>
bool FillCells(const OvraColorCube& cube, const CubeLayout& layout, Coefficient* cells) {
  const auto components = static_cast<size_t>(layout.node_components);
  const size_t steps[3] = {components * cube.count2 * cube.count1, components * cube.count2,
                           components};
  const NodeSteps step = {steps[AxisOf(0, layout)], steps[AxisOf(1, layout)],
                          steps[AxisOf(2, layout)]};
  bool fits = true;
  for (uint32_t i = 0; i + 1 < cube.count0; ++i) {
    for (uint32_t j = 0; j + 1 < cube.count1; ++j) {
      for (uint32_t l = 0; l + 1 < cube.count2; ++l) {
        const uint16_t* corner = cube.lattice + i * steps[0] + j * steps[1] + l * steps[2];
        fits &= FillCell(corner, step, layout, cells);
        cells += kCubeCellEntries;
      }
    }
  }
  return fits;
}

// Fills the positions of all `codes` codes on one axis. Whatever the grid is, every code gets a
// position on the axis: each rise of the grid is an interval of its own, so what lies below its
// greatest value is covered, and what lies beyond the last interval follows at the end.
void FillPositions(const uint16_t* grid, uint32_t count, uint32_t codes, CubePosition* positions) {
  constexpr uint32_t kOne = 1 << kCubeFractionBits;
  const auto position = [](uint32_t cell, uint32_t fraction) {
    return cell << kCubeCellShift | fraction;
  };
  uint32_t code = grid[0];
  std::fill(positions, positions + std::min(code, codes), position(0, 0));
  for (uint32_t cell = 0; cell + 1 < count; ++cell) {
    const uint32_t low = grid[cell];
    const uint32_t high = grid[cell + 1];
    if (low >= high) continue;
    for (code = low; code < high && code < codes; ++code) {
      positions[code] = position(cell, (code - low) * kOne / (high - low));
    }
  }
  for (; code < codes; ++code) positions[code] = position(count - 2, kOne);
}

// The first coordinate whose axis has the same grid. Axes share positions where they can: those of
// 16-bit codes take a quarter of a megabyte, which competes for the cache.
int FirstAlike(const Axes& axes, const CubeLayout& layout, int coordinate) {
  const int axis = AxisOf(coordinate, layout);
  for (int k = 0; k < coordinate; ++k) {
    const int other = AxisOf(k, layout);
    const bool same_count = axes.counts[other] == axes.counts[axis];
    if (same_count &&
        std::equal(axes.grids[axis], axes.grids[axis] + axes.counts[axis], axes.grids[other])) {
      return k;
    }
  }
  return coordinate;
}

}  // namespace

Status CubeMemory::BuildCoefficients(const OvraColorCube& cube, const CubeLayout& layout) {
  const Axes axes = AxesOf(cube);
  const uint64_t cells = CountCells(axes);
  if (cells > kMaxCells) return OVRA_ERROR_NO_MEMORY;
  if (*std::max_element(axes.counts, axes.counts + 3) > kMaxGridCount) {
    return OVRA_ERROR_CUBE_GRID_COUNT;
  }
  const uint64_t entries = cells * kCubeCellEntries;
  if (!narrow_.Allocate(entries)) return OVRA_ERROR_NO_MEMORY;
  if (FillCells(cube, layout, narrow_.data()) || !layout.wide_if_needed) return OVRA_OK;
  narrow_ = {};
  if (!wide_.Allocate(entries)) return OVRA_ERROR_NO_MEMORY;
  FillCells(cube, layout, wide_.data());
  return OVRA_OK;
}

Status CubeMemory::BuildAxes(const OvraColorCube& cube, const CubeLayout& layout) {
  const Axes axes = AxesOf(cube);
  const uint32_t codes = uint32_t{1} << layout.input_depth_bits;
  const uint32_t cell_strides[3] = {(cube.count1 - 1) * (cube.count2 - 1), cube.count2 - 1, 1};
  for (int k = 0; k < 3; ++k) {
    const int axis = AxisOf(k, layout);
    const int like = FirstAlike(axes, layout, k);
    if (like == k) {
      if (!positions_[k].Allocate(codes)) return OVRA_ERROR_NO_MEMORY;
      FillPositions(axes.grids[axis], axes.counts[axis], codes, positions_[k].data());
    }
    positions_of_[k] = positions_[like].data();
    cell_strides_[k] = cell_strides[axis];
    samples_[k] = static_cast<uint32_t>(layout.reversed_samples ? 2 - k : k);
  }
  max_input_ = codes - 1;
  return OVRA_OK;
}

Status CubeMemory::Build(const OvraColorCube& cube, const CubeLayout& layout) {
  Status status = CheckCube(cube);
  if (status == OVRA_OK) status = BuildCoefficients(cube, layout);
  if (status == OVRA_OK) status = BuildAxes(cube, layout);
  return status;
}

CubeTables CubeMemory::Tables(int32_t max_output) const {
  CubeTables tables;
  for (int k = 0; k < 3; ++k) {
    tables.axes[k] = {positions_of_[k], cell_strides_[k], samples_[k]};
  }
  tables.coefficients = narrow_.data();
  if (HasWideCoefficients()) tables.coefficients = wide_.data();
  tables.max_input = max_input_;
  tables.max_output = max_output;
  return tables;
}

}  // namespace ovra
