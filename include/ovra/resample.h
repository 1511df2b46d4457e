// SPDX-License-Identifier: MIT
// Resampling: interpolation kernels and resizing.
#ifndef OVRA_RESAMPLE_H
#define OVRA_RESAMPLE_H

#include <stdint.h>

#include "ovra/pixel_format.h"
#include "ovra/platform.h"
#include "ovra/status.h"

#ifdef __cplusplus
extern "C" {
#endif

// A kernel table holds an interpolation kernel at the distances i / 4096 from its centre, for
// i = 0 .. 16383. The kernel is symmetric, of support 2: entries from 8192 on are 0, so that a
// kernel stretched to twice its width is still inside the table. The caller owns the table.
enum { OVRA_KERNEL_TABLE_STEPS = 4096, OVRA_KERNEL_TABLE_ENTRIES = 16384 };

// OvraCalcCubicSpline and OvraCalcBSpline fill all OVRA_KERNEL_TABLE_ENTRIES of `table`. Any
// parameter is used as given. Values are computed in extended precision and rounded once; they are
// the same on every platform and whatever precision the host has set. Calls on different tables may
// run in parallel. OVRA_ERROR_RESIZE_NULL_TABLE: table is null, nothing is written.

// The cubic-convolution kernel (R. G. Keys, Cubic convolution interpolation for digital image
// processing, 1981) with its free parameter a, the slope at distance 1:
//
//   0 <= x < 1   (a + 2) x^3 - (a + 3) x^2 + 1
//   1 <= x < 2   a x^3 - 5a x^2 + 8a x - 4a
//
// a = -0.5 is the usual kernel; smaller values are sharper. The resize functions use -0.75.
OVRA_API OvraStatus OVRA_CALL OvraCalcCubicSpline(float a, float* table);

// A cubic B-spline kernel with a free parameter b; b = 0 is the B-spline itself, b = 1
// interpolates:
//
//   0 <= x < 1              ((6b + 3) x^3 - (9b + 6) x^2 + 2b + 4) / 6
//   1 <= x < 2, u = x - 1   -((2b + 1) u^3 - (3b + 3) u^2 + 3u + b - 1) / 6
//
// The weights at integer distances sum to 1 for every b. No function of the library uses this
// kernel; it is for callers of OvraResizeImageCore and OvraResizeImageCoreVAR.
OVRA_API OvraStatus OVRA_CALL OvraCalcBSpline(float b, float* table);

#ifdef __cplusplus
}
#endif

#endif  // OVRA_RESAMPLE_H
