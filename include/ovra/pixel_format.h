// SPDX-License-Identifier: MIT
// The 32-bit word that describes the pixels of an image.
#ifndef OVRA_PIXEL_FORMAT_H
#define OVRA_PIXEL_FORMAT_H

#include <stddef.h>
#include <stdint.h>

#include "ovra/platform.h"
#include "ovra/status.h"

// Every image is handed over as a base pointer, a width and a height in pixels, and one word:
//
//   bits  0-3   sample depth code    0..8 for 8..16 bits, 9 for 32 bits
//   bits  4-7   channel count code   0..3 for 1..4 interleaved samples a pixel
//   bits  8-15  colour model         OvraColorModel
//   bits 16-19  arrangement          0 interleaved; 1 and 2 are refused by every operation
//   bits 20-23  row alignment code   0, 1, 2 for 1, 2, 4 bytes
//   bits 24-27  row order            0 top row first in memory, 1 bottom row first
//   bits 28-31  ignored
//
// A sample of 8 bits takes one byte, of 9 to 16 bits two (native byte order, value in the low bits,
// at an even address), of 32 bits four. The distance between rows is never passed: it is the bytes
// of a row rounded up to the row alignment. The base pointer names the first row in memory.
typedef uint32_t OvraPixelFormatCode;

// What the channels of a pixel are, in memory order, as the code stands in the format word.
typedef enum OvraColorModel {
  OVRA_MODEL_GREY = 0x0000,  // one channel
  OVRA_MODEL_RGB = 0x0100,
  OVRA_MODEL_BGR = 0x0200,
  OVRA_MODEL_YCC = 0x0300,       // luma first, then two colour differences
  OVRA_MODEL_TRIPLE_4 = 0x0400,  // other three-channel models, taken by
  OVRA_MODEL_TRIPLE_5 = 0x0500,  // rotation and resampling only
  OVRA_MODEL_TRIPLE_6 = 0x0600,
  OVRA_MODEL_TRIPLE_7 = 0x0700,
  OVRA_MODEL_RGBA = 0x1000,
  OVRA_MODEL_BGRA = 0x1100,
  OVRA_MODEL_CMYK = 0x1200
} OvraColorModel;

// Row order flag, as it stands in the format word.
typedef enum OvraRowOrder { OVRA_ROWS_TOP_DOWN = 0, OVRA_ROWS_BOTTOM_UP = 0x01000000 } OvraRowOrder;

// Builds a format word. depth_bits: 8..16 or 32; channels: 1..4; row_alignment: 1, 2 or 4 bytes.
// Other arguments give a word that every operation refuses.
static inline OVRA_CONSTEXPR OvraPixelFormatCode OvraMakePixelFormat(uint32_t depth_bits,
                                                                     uint32_t channels,
                                                                     OvraColorModel model,
                                                                     uint32_t row_alignment,
                                                                     OvraRowOrder row_order) {
  const uint32_t invalid_code = 15;
  const uint32_t depth_code = depth_bits == 32                      ? 9
                              : depth_bits >= 8 && depth_bits <= 16 ? depth_bits - 8
                                                                    : invalid_code;
  const uint32_t channel_code = channels >= 1 && channels <= 4 ? channels - 1 : invalid_code;
  const uint32_t alignment_code = row_alignment == 1   ? 0
                                  : row_alignment == 2 ? 1
                                  : row_alignment == 4 ? 2
                                                       : invalid_code;
  const uint32_t model_field = model;
  const uint32_t row_order_field = row_order;
  return depth_code | channel_code << 4 | model_field | alignment_code << 20 | row_order_field;
}

#ifdef __cplusplus
extern "C" {
#endif

// The same as an exported function, for languages that cannot use the inline one, and with a status
// for every argument that has no code:
//
//   depth_bits     8..16 or 32
//   channels       1..4
//   color_model    an OvraColorModel
//   row_alignment  1, 2 or 4 bytes
//   row_order      an OvraRowOrder
//   format         receives the word; not written on failure
//
// Answers OVRA_ERROR_NULL_DECODER_OUTPUT when format is null, then the first of
// OVRA_ERROR_FORMAT_COLOR_MODEL, _ROW_ORDER, _CHANNELS, _DEPTH, _ROW_ALIGNMENT, or OVRA_OK. Whether
// channel count and colour model fit each other is left to the operations. May be called from any
// thread.
OVRA_API OvraStatus OVRA_CALL OvraMakePixelFormatCode(uint32_t depth_bits, uint32_t channels,
                                                      uint32_t color_model, uint32_t row_alignment,
                                                      uint32_t row_order,
                                                      OvraPixelFormatCode* format);

// The bytes between the starts of two rows of an image of `width` pixels: what they take, rounded
// up to the row alignment. A width of 0 gives 0. An image occupies (height - 1) times the stride and
// the bytes of its last row; most operations take that row's padding for the caller's as well, so
// that a buffer of height times the stride is always enough (but see OvraExtrapolateImage).
//
//   stride  receives the bytes, or 0 on failure
//
// OVRA_ERROR_NULL_DECODER_OUTPUT when stride is null; the OVRA_ERROR_FORMAT_ codes, also of fields
// that do not take part; OVRA_ERROR_NO_MEMORY when there are more bytes than half the address space
// has. May be called from any thread.
OVRA_API OvraStatus OVRA_CALL OvraRowStride(uint32_t width, OvraPixelFormatCode format,
                                            size_t* stride);

#ifdef __cplusplus
}
#endif

#endif  // OVRA_PIXEL_FORMAT_H
