// SPDX-License-Identifier: MIT
// Geometry: rotation by quarter turns, mirrors, and placement on a larger canvas.
#ifndef OVRA_GEOMETRY_H
#define OVRA_GEOMETRY_H

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

#endif  // OVRA_GEOMETRY_H
