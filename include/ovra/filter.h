// SPDX-License-Identifier: MIT
// Sharpening and filtering.
#ifndef OVRA_FILTER_H
#define OVRA_FILTER_H

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

#endif  // OVRA_FILTER_H
