// SPDX-License-Identifier: MIT
// Basic operations: conversion between device-independent bitmaps and raw buffers.
#ifndef OVRA_BASIC_H
#define OVRA_BASIC_H

#include <stdint.h>

#include "ovra/pixel_format.h"
#include "ovra/platform.h"
#include "ovra/status.h"

#ifdef __cplusplus
extern "C" {
#endif

// OvraDib2Raw and OvraRaw2Dib convert 24-bit pictures between the rows of a device-independent
// bitmap and a packed buffer:
//
//   DIB   blue, green, red; bottom row first; each row padded to a multiple of 4 bytes
//   raw   red, green, blue; top row first; no padding
//
// width and height are in pixels; 0, and values that are negative when read as signed, do nothing.
// The buffers belong to the caller, must not overlap and need not be aligned. A DIB takes
// ((3 * width + 3) / 4 * 4) * height bytes, a raw buffer 3 * width * height. Calls on different
// destinations may run in parallel.

// Bytes of DIB row padding are not read; the padding of the last row need not exist.
OVRA_API void OVRA_CALL OvraDib2Raw(const uint8_t* dib, uint8_t* raw, uint32_t width,
                                    uint32_t height);

// Bytes of DIB row padding are set to 0.
OVRA_API void OVRA_CALL OvraRaw2Dib(const uint8_t* raw, uint8_t* dib, uint32_t width,
                                    uint32_t height);

#ifdef __cplusplus
}
#endif

#endif  // OVRA_BASIC_H
