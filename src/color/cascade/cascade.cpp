// SPDX-License-Identifier: MIT
#include "color/cascade/cascade.h"

#include <limits>

#include "color/cube/cube.h"

namespace ovra {
namespace {

// Nodes are read as 16-bit and written as 12-bit pixels of the normal channel order.
constexpr FormatPair kNodeFormats = {
    OvraMakePixelFormat(16, 3, OVRA_MODEL_RGB, 1, OVRA_ROWS_TOP_DOWN),
    OvraMakePixelFormat(12, 3, OVRA_MODEL_RGB, 1, OVRA_ROWS_TOP_DOWN)};

Status CheckAxis(uint32_t count, const uint16_t* grid) {
  if (count == 0) return OVRA_ERROR_CASCADE_GRID_COUNT;
  return grid == nullptr ? OVRA_ERROR_CASCADE_NULL_GRID : OVRA_OK;
}

Status CheckAxes(const OvraColorCube& cube) {
  Status status = CheckAxis(cube.count0, cube.grid0);
  if (status == OVRA_OK) status = CheckAxis(cube.count1, cube.grid1);
  if (status == OVRA_OK) status = CheckAxis(cube.count2, cube.grid2);
  return status;
}

// The nodes of a cube as the width of an image, or 0 when they are more than that can be.
int32_t NodesAsWidth(const OvraColorCube& cube) {
  constexpr uint64_t kMaxWidth = std::numeric_limits<int32_t>::max();
  const uint64_t plane = uint64_t{cube.count1} * cube.count2;
  if (plane > kMaxWidth || plane * cube.count0 > kMaxWidth) return 0;
  return static_cast<int32_t>(plane * cube.count0);
}

}  // namespace

Status Cascade3D(const OvraColorCube* first, const OvraColorCube* second, KernelTier tier) {
  if (first == nullptr || second == nullptr || first->lattice == nullptr) {
    return OVRA_ERROR_CASCADE_NULL;
  }
  Status status = CheckAxes(*first);
  if (status != OVRA_OK) return status;
  if (second->lattice == nullptr) return OVRA_ERROR_CASCADE_NULL;
  status = CheckAxes(*second);
  if (status != OVRA_OK) return status;
  // Pixels keep their size, so the row is converted in place; a width of 0 is refused.
  auto* const nodes = reinterpret_cast<uint8_t*>(first->lattice);
  status =
      ConvColorCubeSingleStep({nodes, nodes, NodesAsWidth(*first), 1}, kNodeFormats, second, tier);
  return status == OVRA_OK ? OVRA_OK : OVRA_ERROR_CASCADE_CONVERSION;
}

}  // namespace ovra

OVRA_API OvraStatus OVRA_CALL OvraCascade3D(const OvraColorCube* first,
                                            const OvraColorCube* second) {
  return ovra::Cascade3D(first, second, ovra::DetectedTier());
}
