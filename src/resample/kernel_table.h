// SPDX-License-Identifier: MIT
// Interpolation kernels as tables, and how far a kernel is widened for a reduction.
#pragma once

#include <cstdint>

#include "core/status.h"
#include "ovra/resample.h"

namespace ovra {

// Entry i is the kernel's value at distance i / kKernelTableSteps from its centre.
inline constexpr int32_t kKernelTableSteps = OVRA_KERNEL_TABLE_STEPS;
inline constexpr int32_t kKernelTableEntries = OVRA_KERNEL_TABLE_ENTRIES;

// The parameter of the cubic-convolution kernel that the resize functions use.
inline constexpr float kResizeKernelParameter = -0.75F;

Status CalcCubicSpline(float a, float* table);
Status CalcBSpline(float b, float* table);

// What CalcCubicSpline gives for that parameter, made when the library was compiled.
const float* ResizeKernelTable();

// Taps and stretch of the kernel for a size ratio (output by input; below 1 reduces).
void SelectKernelSupport(float ratio, uint32_t* taps, float* stretch);

}  // namespace ovra
