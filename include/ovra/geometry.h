// SPDX-License-Identifier: MIT
// Geometry: rotation by quarter turns, mirrors, placement on a larger canvas, and trimming at any
// angle.
#ifndef OVRA_GEOMETRY_H
#define OVRA_GEOMETRY_H

#include <stdint.h>

#include "ovra/pixel_format.h"
#include "ovra/platform.h"
#include "ovra/status.h"

#ifdef __cplusplus
extern "C" {
#endif

// What OvraRotateImage does to the picture as it is seen.
typedef enum OvraRotation {
  OVRA_ROTATE_NONE = 0,
  OVRA_ROTATE_QUARTER_LEFT = 1,    // a quarter turn counter-clockwise
  OVRA_ROTATE_HALF = 2,            // a half turn
  OVRA_ROTATE_QUARTER_RIGHT = 3,   // a quarter turn clockwise
  OVRA_ROTATE_MIRROR = 4,          // left and right exchanged
  OVRA_ROTATE_ANTI_TRANSPOSE = 5,  // a quarter turn counter-clockwise, then mirrored: reflection in
                                   // the diagonal from bottom left to top right
  OVRA_ROTATE_FLIP = 6,            // top and bottom exchanged
  OVRA_ROTATE_TRANSPOSE = 7        // a quarter turn clockwise, then mirrored: reflection in the
                                   // diagonal from top left to bottom right
} OvraRotation;

// Turns an image by a multiple of a quarter turn, or mirrors it. Pixels are moved as they are.
//
// source       width x height pixels of `format`; row padding is not read
// destination  pixels of the same format: width x height for the modes 0, 2, 4 and 6; height pixels
//              wide and width rows high for the modes 1, 3, 5 and 7. Its row stride follows from
//              its own width. Row padding is set to 0.
// format       samples of 8 to 16 bits; 1 channel with the grey model, 3 with the models
//              0x01..0x07, 4 with 0x10..0x12; arrangement 0; every row alignment and row order
// mode         an OvraRotation
//
// The buffers belong to the caller and must not overlap, except that mode 0 with the destination
// equal to the source succeeds and changes nothing, not even padding. A negative width or height
// succeeds and writes nothing. Calls on different destinations may run in parallel.
//
// Answers, in the order of the checks:
//   OVRA_ERROR_ROTATION_NULL         source or destination is null
//   OVRA_ERROR_ROTATION_ZERO_SIZE    width or height is 0
//   OVRA_ERROR_ROTATION_MODE         mode is not an OvraRotation
//   the OVRA_ERROR_FORMAT_ codes     a field of `format` cannot be decoded
//   OVRA_ERROR_ROTATION_CHANNELS     not 1 to 4 channels, which no format has
//   OVRA_ERROR_ROTATION_DEPTH        samples of 32 bits
//   OVRA_ERROR_ROTATION_COLOR_MODEL  the model is not one of the channel count; also for 2 channels,
//                                    which no model has
//   OVRA_ERROR_ROTATION_ARRANGEMENT  the arrangement is not 0
//   OVRA_OK
OVRA_API OvraStatus OVRA_CALL OvraRotateImage(const uint8_t* source, uint8_t* destination,
                                              int32_t width, int32_t height,
                                              OvraPixelFormatCode format, int32_t mode);

// Places an image on a canvas of the same or a larger size, and sets all other pixels to one colour.
//
// source              source_width x source_height pixels of `format`; row padding is not read
// destination         destination_width x destination_height pixels of the same format. Row padding
//                     is set to 0. With samples of two bytes, a row alignment of 4 and an odd number
//                     of samples in a row, the clearing runs on: THE TWO BYTES BEHIND THE LAST ROW'S
//                     PADDING ARE SET TO 0 AS WELL, and must belong to the caller.
// format              1, 3 or 4 channels of 8 to 16 bits; models 0x00..0x03 and 0x10..0x12, with any
//                     of these channel counts; arrangement 0; every row alignment and row order
// offset_x, offset_y  columns left of the source and rows above it, in the picture as seen
// fill                one value a channel, in the order of the channels; greater values than the
//                     sample depth holds count as its greatest
//
// A source_height of 0 fills the whole canvas. The buffers belong to the caller and must not
// overlap. Calls on different destinations may run in parallel.
//
// Answers, in the order of the checks:
//   OVRA_ERROR_EXTRAPOLATION_NULL         source or destination is null
//   OVRA_ERROR_EXTRAPOLATION_IN_PLACE     source and destination are the same
//   OVRA_ERROR_EXTRAPOLATION_SIZE         source_width or destination_height is 0, an offset is
//                                         negative, or the placed source reaches beyond the canvas
//   OVRA_ERROR_EXTRAPOLATION_NULL_FILL    fill is null
//   the OVRA_ERROR_FORMAT_ codes          a field of `format` cannot be decoded
//   OVRA_ERROR_EXTRAPOLATION_CHANNELS     not 1, 3 or 4 channels
//   OVRA_ERROR_EXTRAPOLATION_DEPTH        samples of 32 bits
//   OVRA_ERROR_EXTRAPOLATION_COLOR_MODEL  another model than those above
//   OVRA_ERROR_EXTRAPOLATION_ARRANGEMENT  the arrangement is not 0
//   OVRA_ERROR_EXTRAPOLATION_SIZE         bottom-up rows, and more than 2^31 - 1 of them below the
//                                         source
//   OVRA_OK
OVRA_API OvraStatus OVRA_CALL OvraExtrapolateImage(const uint8_t* source, uint32_t source_width,
                                                   uint32_t source_height, uint8_t* destination,
                                                   uint32_t destination_width,
                                                   uint32_t destination_height,
                                                   OvraPixelFormatCode format, int32_t offset_x,
                                                   int32_t offset_y, const uint16_t* fill);

// Turns the picture by any tenth of a degree and cuts an upright rectangle out of it, at the scale of
// the source: straightens a horizon. The turn goes about the rectangle's own centre. Multiples of a
// quarter turn move pixels as they are; where the width and the height of the rectangle differ by an
// odd number, quarter turns take the centre half a pixel to the left and up. At other angles all
// channels are interpolated with the three-lobed Lanczos kernel (C. Lanczos, Applied Analysis,
// 1956), sinc(d) sinc(d / 3), in fixed point, at positions rounded to 1/256 pixel. Results are the
// same on every platform.
//
// source              source_width x source_height pixels of `format`, at least 1 x 1; row padding
//                     is not read
// destination         destination_width x destination_height pixels of the same format, 8 to 16383
//                     each. Row padding is set to 0.
// format              1 channel with the grey model, 3 with the models 0x01..0x07, 4 with
//                     0x10..0x12; samples of 8 to 16 bits; arrangement 0; every row alignment and row
//                     order. Both row orders of a picture give the same picture.
// x, y                upper left pixel of the rectangle before the turn, in source pixels as seen. It
//                     has the destination's size, and may reach outside the source or lie there
// angle               tenths of a degree, counter-clockwise as seen; any value, modulo 3600. A
//                     horizon whose right end hangs 2.3 degrees too low is straightened by 23
// fill                null: the source's edge pixels are repeated outwards without end. Else one
//                     value a channel, in channel order, limited to what the depth holds: the source
//                     fades into that colour over the pixel that its outline covers
//
// The buffers belong to the caller and must not overlap. A failed call leaves the destination as it
// was. Calls on different destinations may run in parallel.
//
// Answers, in the order of the checks:
//   OVRA_ERROR_ROTATION_NULL         source or destination is null
//   OVRA_ERROR_TRIMMING_IN_PLACE     source equals destination
//   OVRA_ERROR_ROTATION_ZERO_SIZE    source width or height is 0 or negative
//   OVRA_ERROR_TRIMMING_SIZE         destination width or height is not 8 to 16383
//   the OVRA_ERROR_FORMAT_ codes, OVRA_ERROR_ROTATION_CHANNELS, OVRA_ERROR_ROTATION_DEPTH,
//   OVRA_ERROR_ROTATION_COLOR_MODEL, OVRA_ERROR_ROTATION_ARRANGEMENT  as OvraRotateImage
//   OVRA_ERROR_NO_MEMORY             no work memory
//   OVRA_OK
OVRA_API OvraStatus OVRA_CALL OvraFreeTrimming(const uint8_t* source, int32_t source_width,
                                               int32_t source_height, uint8_t* destination,
                                               int32_t destination_width,
                                               int32_t destination_height,
                                               OvraPixelFormatCode format, int32_t x, int32_t y,
                                               int32_t angle, const uint16_t* fill);

#ifdef __cplusplus
}
#endif

#endif  // OVRA_GEOMETRY_H
