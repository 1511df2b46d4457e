// SPDX-License-Identifier: MIT
// Colour conversion: cubes, per-channel tables and polynomials, matrices.
#ifndef OVRA_COLOR_H
#define OVRA_COLOR_H

#include <stdint.h>

#include "ovra/pixel_format.h"
#include "ovra/platform.h"
#include "ovra/status.h"

#ifdef __cplusplus
extern "C" {
#endif

#ifdef __cplusplus
}
#endif

#endif  // OVRA_COLOR_H
