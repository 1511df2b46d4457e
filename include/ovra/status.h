// SPDX-License-Identifier: MIT
// Results of the exported functions.
#ifndef OVRA_STATUS_H
#define OVRA_STATUS_H

#include <stdint.h>

#include "ovra/platform.h"

// What a function answers: OVRA_OK, or the code of the first check that failed. A call that fails a
// check has written nothing to its destination.
typedef int32_t OvraStatus;

// All codes of all families.
enum OvraStatusCode {
  // Every family.
  OVRA_OK = 0,                          // success
  OVRA_ERROR_NO_MEMORY = 40,            // work memory, a table or a context could not be allocated
  OVRA_ERROR_NULL_DECODER_OUTPUT = 41,  // an output pointer of a helper is null

  // Resampling.
  OVRA_ERROR_RESIZE_NULL_IMAGE = 101,         // source or destination is null
  OVRA_ERROR_RESIZE_ZERO_SIZE = 102,          // source width, region width or region height is 0
  OVRA_ERROR_RESIZE_NULL_TABLE = 103,         // kernel table is null
  OVRA_ERROR_RESIZE_STRETCH = 104,            // a stretch factor is not greater than 0
  OVRA_ERROR_RESIZE_TAP_COUNT = 105,          // a tap count is below 4
  OVRA_ERROR_RESIZE_CHANNELS = 106,           // channel count not 1..4
  OVRA_ERROR_RESIZE_DEPTH = 107,              // sample depth above 16 bits
  OVRA_ERROR_RESIZE_COLOR_MODEL = 108,        // colour model and channel count do not fit
  OVRA_ERROR_RESIZE_ARRANGEMENT = 109,        // arrangement not 0
  OVRA_ERROR_BAND_RESIZE_CHANGED = 110,       // bands: a width or the format differs from _Init
  OVRA_ERROR_RESIZE_SOURCE_SMALL = 111,       // source smaller than the tap count
  OVRA_ERROR_RESIZE_DESTINATION_SMALL = 112,  // destination smaller than the tap count or a pixel
  OVRA_ERROR_RESIZE_REGION_SIZE = 113,     // region below the tap count or beyond the source size
  OVRA_ERROR_RESIZE_REGION_OUTSIDE = 114,  // region reaches beyond the source
  OVRA_ERROR_BAND_RESIZE_POSITION = 115,   // bands: rows out of their order, or beyond the source

  // Luminance unsharp mask; 116..121 also multi-frequency processing.
  OVRA_ERROR_YUSM_NULL = 116,              // a pointer is null
  OVRA_ERROR_YUSM_SIZE = 117,              // width or height below the tap count, or 0
  OVRA_ERROR_YUSM_CHANNELS = 118,          // channel count not 1, 3 or 4
  OVRA_ERROR_YUSM_DEPTH = 119,             // sample depth above 14 bits (multi-frequency: 16)
  OVRA_ERROR_YUSM_COLOR_MODEL = 120,       // colour model not accepted with this channel count
  OVRA_ERROR_YUSM_ARRANGEMENT = 121,       // arrangement not 0
  OVRA_ERROR_YUSM_TAPS = 122,              // tap count not accepted, or weights null
  OVRA_ERROR_YUSM_NULL_TABLE = 123,        // level or difference table is null
  OVRA_ERROR_YUSM_POINT_COUNT = 124,       // a curve has no control point
  OVRA_ERROR_YUSM_LEVEL_CURVE = 125,       // level curve: x outside 0..1 or not increasing
  OVRA_ERROR_YUSM_DIFFERENCE_CURVE = 126,  // difference curve: x outside -1..1 or not increasing

  // Multi-frequency processing.
  OVRA_ERROR_MULTI_FREQUENCY_PARAMETER = 127,  // a parameter is out of its range or not a number

  // Pixel format word.
  OVRA_ERROR_FORMAT_DEPTH = 129,          // sample depth code is 10..15
  OVRA_ERROR_FORMAT_CHANNELS = 130,       // channel count code is 4..15
  OVRA_ERROR_FORMAT_COLOR_MODEL = 131,    // colour model is not a known one
  OVRA_ERROR_FORMAT_ARRANGEMENT = 132,    // arrangement code is 3..15
  OVRA_ERROR_FORMAT_ROW_ALIGNMENT = 133,  // row alignment code is 3..15
  OVRA_ERROR_FORMAT_ROW_ORDER = 134,      // row order flag is 2..15

  // Colour cube.
  OVRA_ERROR_CUBE_NULL = 140,            // a pointer or handle is null
  OVRA_ERROR_CUBE_ZERO_SIZE = 141,       // width or height is 0
  OVRA_ERROR_CUBE_GRID_COUNT = 142,      // a grid count is 0, or not supported
  OVRA_ERROR_CUBE_NULL_GRID = 143,       // a grid position pointer is null
  OVRA_ERROR_CUBE_CHANNELS = 145,        // channel count of input or output not accepted
  OVRA_ERROR_CUBE_INPUT_DEPTH = 146,     // input depth above 16 bits
  OVRA_ERROR_CUBE_DEPTH = 147,           // input or output depth above 12 bits
  OVRA_ERROR_CUBE_COLOR_MODEL = 148,     // colour model not accepted, or wrong output channel count
  OVRA_ERROR_CUBE_ARRANGEMENT = 149,     // arrangement not 0
  OVRA_ERROR_CUBE_FORMAT_CHANGED = 150,  // formats differ from those given to _Init

  // Per-channel tables and polynomials.
  OVRA_ERROR_TABLE_NULL = 152,             // a pointer or handle is null
  OVRA_ERROR_TABLE_ZERO_SIZE = 153,        // width or height is 0
  OVRA_ERROR_TABLE_NULL_TABLE = 154,       // a table is null
  OVRA_ERROR_TABLE_CHANNELS = 155,         // channel count of input or output not 3
  OVRA_ERROR_TABLE_DEPTH = 156,            // depth of input or output above 16 bits
  OVRA_ERROR_TABLE_COLOR_MODEL = 157,      // colour model not RGB, BGR or YCC
  OVRA_ERROR_TABLE_ARRANGEMENT = 158,      // arrangement not 0
  OVRA_ERROR_TABLE_FORMAT_CHANGED = 159,   // formats differ from those given to _Init
  OVRA_ERROR_COEFFICIENT_NULL = 161,       // a pointer or handle is null
  OVRA_ERROR_COEFFICIENT_ZERO_SIZE = 162,  // width or height is 0

  // Colour matrix (the first also serves the polynomials).
  OVRA_ERROR_FORMAT_CHANGED = 163,      // also for polynomials: formats differ from _Init
  OVRA_ERROR_MATRIX_NULL = 164,         // a pointer or handle is null
  OVRA_ERROR_MATRIX_ZERO_SIZE = 165,    // width or height is 0
  OVRA_ERROR_MATRIX_CHANNELS = 166,     // channel count of input or output not 3
  OVRA_ERROR_MATRIX_DEPTH = 167,        // depth of input or output above 16 bits
  OVRA_ERROR_MATRIX_COLOR_MODEL = 168,  // colour model not RGB, BGR or YCC
  OVRA_ERROR_MATRIX_ARRANGEMENT = 169,  // arrangement not 0

  // Rotation.
  OVRA_ERROR_ROTATION_NULL = 172,         // source or destination is null
  OVRA_ERROR_ROTATION_ZERO_SIZE = 173,    // width or height is 0
  OVRA_ERROR_ROTATION_MODE = 174,         // mode not 0..7
  OVRA_ERROR_ROTATION_CHANNELS = 175,     // channel count not 1..4
  OVRA_ERROR_ROTATION_DEPTH = 176,        // sample depth above 16 bits
  OVRA_ERROR_ROTATION_COLOR_MODEL = 177,  // colour model not allowed with the channel count
  OVRA_ERROR_ROTATION_ARRANGEMENT = 178,  // arrangement not 0

  // Trimming; it shares the other codes of rotation.
  OVRA_ERROR_TRIMMING_SIZE = 179,      // destination width or height not in 8..16383
  OVRA_ERROR_TRIMMING_IN_PLACE = 180,  // source and destination are the same

  // Cascaded colour cubes.
  OVRA_ERROR_CASCADE_NULL = 184,        // a cube or lattice is null
  OVRA_ERROR_CASCADE_GRID_COUNT = 185,  // a grid count is 0
  OVRA_ERROR_CASCADE_NULL_GRID = 186,   // a grid position pointer is null
  OVRA_ERROR_CASCADE_CONVERSION = 187,  // the conversion of the first lattice failed

  // Extrapolation.
  OVRA_ERROR_EXTRAPOLATION_NULL = 192,         // source or destination is null
  OVRA_ERROR_EXTRAPOLATION_IN_PLACE = 193,     // source and destination are the same
  OVRA_ERROR_EXTRAPOLATION_SIZE = 194,         // a size is 0, or the placed source does not fit
  OVRA_ERROR_EXTRAPOLATION_CHANNELS = 195,     // channel count not 1, 3 or 4
  OVRA_ERROR_EXTRAPOLATION_DEPTH = 196,        // sample depth above 16 bits
  OVRA_ERROR_EXTRAPOLATION_NULL_FILL = 197,    // fill is null
  OVRA_ERROR_EXTRAPOLATION_COLOR_MODEL = 198,  // colour model not accepted
  OVRA_ERROR_EXTRAPOLATION_ARRANGEMENT = 199,  // arrangement not 0

  // Double unsharp mask.
  OVRA_ERROR_YUSM_DOUBLE_FORMAT = 201,    // format word not one of the two accepted
  OVRA_ERROR_YUSM_DOUBLE_ARGUMENT = 202,  // a pointer is null, or a size is 0 or below a tap count
  OVRA_ERROR_YUSM_DOUBLE_TAPS = 203,      // a tap count is above 25

  // Composition.
  OVRA_ERROR_COMPOSITE_NULL = 220,         // destination, source or a needed mask is null
  OVRA_ERROR_COMPOSITE_IN_PLACE = 221,     // destination and source are the same
  OVRA_ERROR_COMPOSITE_SIZE = 222,         // a size is 0, or the source reaches below the picture
  OVRA_ERROR_COMPOSITE_CHANNELS = 223,     // channel count not 1..4
  OVRA_ERROR_COMPOSITE_DEPTH = 224,        // sample depth above 8 bits
  OVRA_ERROR_COMPOSITE_COLOR_MODEL = 225,  // colour model not accepted
  OVRA_ERROR_COMPOSITE_ARRANGEMENT = 226,  // arrangement not 0
  OVRA_ERROR_COMPOSITE_FORMATS_DIFFER = 227,    // depth, arrangement, alignment or row order differ
  OVRA_ERROR_COMPOSITE_CHANNEL_RELATION = 228,  // source has neither as many channels nor one more

  // Edge filter.
  OVRA_ERROR_EDGE_FILTER_NULL = 230,         // source or destination is null
  OVRA_ERROR_EDGE_FILTER_IN_PLACE = 231,     // source and destination are the same
  OVRA_ERROR_EDGE_FILTER_ZERO_SIZE = 232,    // width or height is 0
  OVRA_ERROR_EDGE_FILTER_CHANNELS = 233,     // channel count not 3
  OVRA_ERROR_EDGE_FILTER_DEPTH = 234,        // sample depth not 8 bits
  OVRA_ERROR_EDGE_FILTER_COLOR_MODEL = 235,  // colour model not RGB, BGR or YCC
  OVRA_ERROR_EDGE_FILTER_ARRANGEMENT = 236,  // arrangement not 0

  // Tone processing.
  OVRA_ERROR_TONE_NULL = 250,         // a pointer is null
  OVRA_ERROR_TONE_PARAMETER = 251,    // a parameter is out of its range, or a curve not acceptable
  OVRA_ERROR_TONE_ZERO_SIZE = 252,    // width or height is 0
  OVRA_ERROR_TONE_CHANNELS = 253,     // channel count not 3
  OVRA_ERROR_TONE_DEPTH = 254,        // sample depth not 10 or 12 bits
  OVRA_ERROR_TONE_COLOR_MODEL = 255,  // colour model not RGB or BGR
  OVRA_ERROR_TONE_ARRANGEMENT = 256,  // arrangement not 0
  OVRA_ERROR_TONE_CONTEXT = 257,      // another format than _Init's, or another form's context

  // Soft focus.
  OVRA_ERROR_SOFT_FOCUS_NULL = 267,  // source, destination or parameters are null

  // Resampling with explicit factors.
  OVRA_ERROR_RESIZE_FACTOR = 299  // a scale factor is below 0.33, zero or not a number
};

#ifdef __cplusplus
extern "C" {
#endif

// One line of English for a status, without a full stop; "unknown status" for any other number.
// The text is constant and belongs to the library. May be called from any thread.
OVRA_API const char* OVRA_CALL OvraStatusText(OvraStatus status);

#ifdef __cplusplus
}
#endif

#endif  // OVRA_STATUS_H
