// SPDX-License-Identifier: MIT
// Basic operations: image composition, and conversion between device-independent bitmaps and raw
// buffers.
#ifndef OVRA_BASIC_H
#define OVRA_BASIC_H

#include <stdint.h>

#include "ovra/pixel_format.h"
#include "ovra/platform.h"
#include "ovra/status.h"

#ifdef __cplusplus
extern "C" {
#endif

// Composition: OvraCompositeImage and OvraCompositeImageWithMaskBlending place a source image into
// a destination image, in place. Rows and pixels of the destination that the source does not cover,
// and all row padding, stay as they are.
//
// Sizes are in pixels, and rows follow each other at the distance that the format word and the
// width give (ovra/pixel_format.h). Formats: 8 bits a sample, 1 to 4 channels, any row alignment
// and row order, arrangement 0, and one of the colour models GREY, RGB, BGR, YCC, RGBA and BGRA,
// whatever the channel count; the model does not change the arithmetic.
//
// (x, y) is where the top left corner of the source comes to lie in the destination picture, x to
// the right and y down the picture, also where rows are stored bottom-up. What lies outside of the
// destination at any side is clipped, with one exception: in bottom-up images a source that reaches
// below the bottom of the destination (destination_height - source_height - y < 0) is refused with
// OVRA_ERROR_COMPOSITE_SIZE. A source that lies outside altogether, or a negative size, writes
// nothing and gives OVRA_OK (or, in bottom-up images, OVRA_ERROR_COMPOSITE_SIZE by that same rule).
//
// A blend of the sample p of the image that the weight w (0..255) belongs to with the sample q of
// the other image gives
//
//   ((w + 1) * p + (256 - w) * q) / 256
//
// rounded down: 255 gives p and 0 gives q, both exactly.
//
// The buffers belong to the caller and need not be aligned. The destination must not overlap source
// or mask; source and mask may be the same. Calls on different destinations may run in parallel.
//
// Checks are made in the order of these lists, before anything is written.

// Values of blend_mode. Any value but exactly 1 means the weight of the destination.
typedef enum OvraBlendMode {
  OVRA_BLEND_WEIGHT_OF_DESTINATION = 0,
  OVRA_BLEND_WEIGHT_OF_SOURCE = 1
} OvraBlendMode;

// Copies the source into the destination when both have the same number of channels (blend_mode is
// ignored then), or blends it when the source has one channel more: the last sample of each source
// pixel is its alpha, the weight for the other samples of the pixel. Both images need the same row
// alignment and row order; their colour models may differ.
//
// Returns, the first that applies:
//   OVRA_ERROR_COMPOSITE_NULL              destination or source is null
//   OVRA_ERROR_COMPOSITE_IN_PLACE          destination and source are the same
//   OVRA_ERROR_COMPOSITE_SIZE              a width or height is 0
//   the OVRA_ERROR_FORMAT_ codes           a field of a format word is not a known one; this and the
//                                          next three are checked for the destination's word first,
//                                          then for the source's
//   OVRA_ERROR_COMPOSITE_DEPTH             sample depth above 8 bits
//   OVRA_ERROR_COMPOSITE_COLOR_MODEL       colour model not accepted
//   OVRA_ERROR_COMPOSITE_ARRANGEMENT       arrangement not 0
//   OVRA_ERROR_COMPOSITE_FORMATS_DIFFER    row alignment or row order differ between the two
//   OVRA_ERROR_COMPOSITE_CHANNEL_RELATION  the source has neither as many channels as the
//                                          destination nor one more
//   OVRA_ERROR_COMPOSITE_SIZE              bottom-up rows, and the source reaches below the bottom
//   OVRA_OK                                the source is placed
OVRA_API OvraStatus OVRA_CALL OvraCompositeImage(uint8_t* destination, int32_t destination_width,
                                                 int32_t destination_height,
                                                 OvraPixelFormatCode destination_format,
                                                 const uint8_t* source, int32_t source_width,
                                                 int32_t source_height,
                                                 OvraPixelFormatCode source_format, int32_t x,
                                                 int32_t y, uint8_t blend_mode);

// Blends the source into the destination by a mask, which holds one weight for every sample of the
// source and is laid out like it: source_width, source_height and the one format are those of both.
//
// Returns the statuses of OvraCompositeImage in the same order, without
// OVRA_ERROR_COMPOSITE_FORMATS_DIFFER and OVRA_ERROR_COMPOSITE_CHANNEL_RELATION. The mask is not
// among these checks: where nothing is to be written it may be null; where its weights are needed,
// null gives OVRA_ERROR_COMPOSITE_NULL after all of them.
OVRA_API OvraStatus OVRA_CALL OvraCompositeImageWithMaskBlending(
    uint8_t* destination, int32_t destination_width, int32_t destination_height,
    const uint8_t* source, const uint8_t* mask, int32_t source_width, int32_t source_height,
    OvraPixelFormatCode format, int32_t x, int32_t y, uint8_t blend_mode);

// OvraDib2Raw and OvraRaw2Dib convert 24-bit pictures between the rows of a device-independent
// bitmap and a packed buffer:
//
//   DIB   blue, green, red; bottom row first; each row padded to a multiple of 4 bytes
//   raw   red, green, blue; top row first; no padding
//
// width and height are in pixels; 0, and values that are negative when read as signed, do nothing,
// and so does a null pointer. The buffers belong to the caller, must not overlap and need not be
// aligned. A DIB takes ((3 * width + 3) / 4 * 4) * height bytes, a raw buffer 3 * width * height.
// Calls on different destinations may run in parallel.

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
