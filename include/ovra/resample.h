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

#ifdef __cplusplus
}
#endif

#endif  // OVRA_RESAMPLE_H
