// SPDX-License-Identifier: MIT
// Composition of two colour cubes, with the tier of kernels as an argument.
#pragma once

#include "core/cpu.h"
#include "core/status.h"
#include "ovra/color.h"

namespace ovra {

Status Cascade3D(const OvraColorCube* first, const OvraColorCube* second, KernelTier tier);

}  // namespace ovra
