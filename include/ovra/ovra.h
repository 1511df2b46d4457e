// SPDX-License-Identifier: MIT
// OvraBase: still-image processing on the caller's pixel buffers. Includes the whole interface.
//
// The floating-point environment: any precision may be in force on the x87. Rounding goes to the nearest, as
// programs find it at their start; in another rounding mode some results differ in their last
// bits, also from one processor to another, and nothing else happens.
#ifndef OVRA_OVRA_H
#define OVRA_OVRA_H

#include "ovra/basic.h"
#include "ovra/color.h"
#include "ovra/filter.h"
#include "ovra/geometry.h"
#include "ovra/pixel_format.h"
#include "ovra/platform.h"
#include "ovra/resample.h"
#include "ovra/status.h"
#include "ovra/tone.h"
#include "ovra/version.h"

#endif  // OVRA_OVRA_H
