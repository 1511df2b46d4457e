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

// --- Handles ----------------------------------------------------------------------------------
//
// Each family (cubes; tables and polynomials; matrices) hands out handle words of its own. An _Init
// function sets *handle_out to 0 and, on success, to a handle, which belongs to the caller, who
// releases it once with the family's _Free function. Conversions do not change what it stands for:
// any number may run on one handle at the same time, but none while it is released.
//
// A word that is 0, or a handle of another family, is answered with the family's null status, by
// conversions and by _Free, which leaves the foreign handle as it is. Words that cannot be an
// address (odd ones, small ones) are told in the same way. A copy of a handle that was released is
// usually told too, as long as its memory was not given out again; nothing can be promised, so do
// not use one.

// --- Colour cubes ---------------------------------------------------------------------------
//
// A colour cube maps three-channel pixels to three or four channels through a lattice of nodes, by
// trilinear interpolation in 12-bit fixed point:
//
//   input     3 channels, 8 to 16 bits; RGB, BGR or YCC
//   output    3 channels RGB, BGR or YCC, or 4 channels CMYK; 8 to 12 bits
//
// Axis 0 of the lattice belongs to the first channel of an RGB pixel, axis 2 to the third, and node
// component k is output channel k. The input's colour model may reverse this: BGR always, YCC with
// more than 8 bits of input or with four channels of output. Reversed, axis 0 belongs to the third
// channel; with three output channels the output is reversed as well. The output's colour model
// changes nothing.
typedef struct OvraColorCube {
  uint32_t count0;        // grid points along axis 0, 2 to 65536
  const uint16_t* grid0;  // their positions: input codes, strictly increasing
  uint32_t count1;
  const uint16_t* grid1;
  uint32_t count2;
  const uint16_t* grid2;
  // count0 * count1 * count2 nodes, axis 2 varying fastest, then axis 1. A node is one output code
  // (0 to 2^depth - 1) for each output channel. Only OvraCascade3D writes here.
  uint16_t* lattice;
} OvraColorCube;

// Codes below an axis's first grid position count as that position, codes beyond its last one as
// the last. Where positions do not increase, the interval between them is left out. Samples above
// the declared input depth count as its greatest code. With 8-bit input the interpolation
// coefficients of a cell (differences of up to eight nodes) are kept modulo 2^16; nodes of up to
// 8191 are always exact.
//
// Statuses of the colour cube functions:
//   OVRA_ERROR_CUBE_NULL             a pointer is null, or the handle is null or of another family
//                                    (checked first for handle_out, handle, the cube of SingleStep;
//                                    last for the lattice)
//   the OVRA_ERROR_FORMAT_ codes     a field of a format cannot be decoded
//   OVRA_ERROR_CUBE_ZERO_SIZE        width or height is 0
//   OVRA_ERROR_CUBE_CHANNELS         input channels not 3; 8-bit input: output channels not 3 or 4
//   OVRA_ERROR_CUBE_INPUT_DEPTH      input depth 32 bits
//   OVRA_ERROR_CUBE_DEPTH            output depth above 12 bits
//   OVRA_ERROR_CUBE_COLOR_MODEL      a colour model not listed above; deeper input: output channels
//                                    not 3 or 4
//   OVRA_ERROR_CUBE_ARRANGEMENT      an arrangement is not 0
//   OVRA_ERROR_CUBE_GRID_COUNT       a grid count is below 2 or above 65536
//   OVRA_ERROR_CUBE_NULL_GRID        a grid pointer is null
//   OVRA_ERROR_CUBE_FORMAT_CHANGED   the formats are not those given to _Init; a call whose formats
//                                    ask for another input depth class or channel count may get the
//                                    status by which that variant refuses the handle's formats
//   OVRA_ERROR_NO_MEMORY             the tables could not be allocated: 64 bytes a cell (128 where
//                                    coefficients of deep input need it) and up to 12 an input code; or
//                                    the lattice has 2^31 cells or more

// Prepares conversions through `cube` and stores a handle in *handle_out, which is 0 until then and
// after a failure. The handle keeps nothing of the cube, which may be released at once. Takes at most a few milliseconds for
// a cube of 33 points an axis.
OVRA_API OvraStatus OVRA_CALL OvraConvColorCube_Init(OvraPixelFormatCode in_format,
                                                     OvraPixelFormatCode out_format,
                                                     const OvraColorCube* cube,
                                                     uintptr_t* handle_out);

// Converts an image of width x height pixels. Source and destination are separate buffers; the rows
// of both are aligned as in_format says, the alignment of out_format is not used. Rows go in memory
// order whatever the formats' row order. Negative sizes convert nothing and succeed. The formats
// are those given to _Init, compared as whole words. Calls may share a handle in parallel.
OVRA_API OvraStatus OVRA_CALL OvraConvColorCube(const uint8_t* source, uint8_t* destination,
                                                int32_t width, int32_t height,
                                                OvraPixelFormatCode in_format,
                                                OvraPixelFormatCode out_format, uintptr_t handle);

// Releases the handle and sets *handle to 0. A word that is 0 already, or a handle of another
// family, is answered with OVRA_ERROR_CUBE_NULL and does no harm.
OVRA_API OvraStatus OVRA_CALL OvraConvColorCube_Free(uintptr_t* handle);

// _Init, conversion and _Free in one call.
OVRA_API OvraStatus OVRA_CALL OvraConvColorCubeSingleStep(
    const uint8_t* source, uint8_t* destination, int32_t width, int32_t height,
    OvraPixelFormatCode in_format, OvraPixelFormatCode out_format, const OvraColorCube* cube);

// Makes `first` do what both cubes did in sequence: passes each of its nodes through `second` and
// writes the result, 0..4095, back into first->lattice, whose nodes have three components, as have
// those of second. The grids of `second` are positions in node values of `first`; a node value
// above the last position maps to the last node. On failure the lattice is unchanged.
//
//   OVRA_ERROR_CASCADE_NULL        a cube or a lattice is null
//   OVRA_ERROR_CASCADE_GRID_COUNT  a grid count is 0
//   OVRA_ERROR_CASCADE_NULL_GRID   a grid pointer is null
//   OVRA_ERROR_CASCADE_CONVERSION  the nodes could not be converted: `second` is refused as by
//                                  OvraConvColorCube_Init, there is no memory, or `first` has 2^31
//                                  nodes or more
OVRA_API OvraStatus OVRA_CALL OvraCascade3D(const OvraColorCube* first,
                                            const OvraColorCube* second);

// --- Per-channel tables and polynomials ------------------------------------------------------
//
// Both families map every channel of a three-channel image through a table of its own. They share
// one kind of handle; the conversion and the release of either take the handles of both. Only the
// statuses of their first checks differ.
//
// Formats: channel count 3, depth 8 to 16 bits, colour model RGB, BGR or YCC, arrangement 0, each
// for input and output. What is given by channel is in the order of RGB: where the *input* is BGR,
// the entry of channel 2 serves the first sample of a pixel and that of channel 0 the third. The
// output's colour model has no influence, and samples keep their positions.
//
// Images: `height` rows of 3 * width samples at source and destination, in memory order. The rows of
// *both* start at multiples of the input's row alignment; the output's alignment field is not used.
// Row padding is neither read nor written. The buffers belong to the caller and must not overlap. A
// negative width or height converts nothing.
//
// Handles: where an argument of an _Init function is null, *handle_out is left as it is. Tables,
// polynomials and matrices are copied, or used, before the function that took them returns.
//
// Statuses of the formats, in all functions that take them; the input is judged first:
//   the OVRA_ERROR_FORMAT_ codes    a field of a format word cannot be decoded
//   OVRA_ERROR_TABLE_CHANNELS       channel count not 3
//   OVRA_ERROR_TABLE_DEPTH          depth above 16 bits
//   OVRA_ERROR_TABLE_COLOR_MODEL    colour model not RGB, BGR or YCC
//   OVRA_ERROR_TABLE_ARRANGEMENT    arrangement not 0

// Channels 0, 1, 2: each table holds the output value of every input value, 2^depth entries.
typedef struct OvraChannelTableSet {
  const uint16_t* table[3];
} OvraChannelTableSet;

// Output = c0 + c1 * v + c2 * v * v of the input value v, in output values. 32 bytes.
typedef struct OvraChannelPolynomial {
  double c0;
  double c1;
  double c2;
  double reserved;  // not read
} OvraChannelPolynomial;

// Makes a handle of three tables. Entries above the greatest value of the output depth count as
// that value.
//   OVRA_ERROR_TABLE_NULL        tables or handle_out is null
//   OVRA_ERROR_TABLE_NULL_TABLE  one of the three tables is null
//   statuses of the formats      see above
//   OVRA_ERROR_NO_MEMORY         no memory for the handle or a table
OVRA_API OvraStatus OVRA_CALL OvraConvColor1DTbl_Init(OvraPixelFormatCode in_format,
                                                      OvraPixelFormatCode out_format,
                                                      const OvraChannelTableSet* tables,
                                                      uintptr_t* handle_out);

// Makes a handle of three polynomials, coefficients[0..2]. Values are rounded half up and limited
// to the range of the output depth; a value that is not a number counts as 0.
//   OVRA_ERROR_TABLE_NULL    coefficients or handle_out is null
//   statuses of the formats  see above
//   OVRA_ERROR_NO_MEMORY     no memory for the handle or a table
OVRA_API OvraStatus OVRA_CALL OvraConvColorCoef_Init(OvraPixelFormatCode in_format,
                                                     OvraPixelFormatCode out_format,
                                                     const OvraChannelPolynomial* coefficients,
                                                     uintptr_t* handle_out);

// Converts an image. The formats must be those given to the _Init function, bit for bit. An input
// sample above the range of its depth counts as the greatest value of the range.
//   OVRA_ERROR_TABLE_NULL            source or destination is null, or the handle is null or of
//                                    another family
//   OVRA_ERROR_TABLE_ZERO_SIZE       width or height is 0
//   statuses of the formats          see above
//   OVRA_ERROR_TABLE_FORMAT_CHANGED  a format is not the one given to the _Init function
OVRA_API OvraStatus OVRA_CALL OvraConvColor1DTbl(const uint8_t* source, uint8_t* destination,
                                                 int32_t width, int32_t height,
                                                 OvraPixelFormatCode in_format,
                                                 OvraPixelFormatCode out_format, uintptr_t handle);

// The same with the statuses OVRA_ERROR_COEFFICIENT_NULL, OVRA_ERROR_COEFFICIENT_ZERO_SIZE and
// OVRA_ERROR_FORMAT_CHANGED.
OVRA_API OvraStatus OVRA_CALL OvraConvColorCoef(const uint8_t* source, uint8_t* destination,
                                                int32_t width, int32_t height,
                                                OvraPixelFormatCode in_format,
                                                OvraPixelFormatCode out_format, uintptr_t handle);

// _Init, conversion and release in one call. source, destination and tables (null:
// OVRA_ERROR_TABLE_NULL) and the sizes (0: OVRA_ERROR_TABLE_ZERO_SIZE) are judged first, then all as
// in _Init.
OVRA_API OvraStatus OVRA_CALL OvraConvColor1DTblSingleStep(const uint8_t* source,
                                                           uint8_t* destination, int32_t width,
                                                           int32_t height,
                                                           OvraPixelFormatCode in_format,
                                                           OvraPixelFormatCode out_format,
                                                           const OvraChannelTableSet* tables);

// The same with polynomials and the statuses OVRA_ERROR_COEFFICIENT_NULL and
// OVRA_ERROR_COEFFICIENT_ZERO_SIZE.
OVRA_API OvraStatus OVRA_CALL OvraConvColorCoefSingleStep(
    const uint8_t* source, uint8_t* destination, int32_t width, int32_t height,
    OvraPixelFormatCode in_format, OvraPixelFormatCode out_format,
    const OvraChannelPolynomial* coefficients);

// Releases *handle and sets it to 0; a handle of 0 is left alone. OVRA_ERROR_TABLE_NULL when
// `handle` is null, or *handle a handle of another family. The two are one and the same operation.
OVRA_API OvraStatus OVRA_CALL OvraConvColor1DTbl_Free(uintptr_t* handle);
OVRA_API OvraStatus OVRA_CALL OvraConvColorCoef_Free(uintptr_t* handle);

// --- Colour matrices -------------------------------------------------------------------------
//
// A second-order polynomial in the three samples of a pixel for each output channel. Formats,
// images and handles are as with the tables above, but samples are taken and written in memory
// order whatever the colour model. Statuses of the formats:
//   the OVRA_ERROR_FORMAT_ codes     a field of a format word cannot be decoded
//   OVRA_ERROR_MATRIX_CHANNELS       channel count not 3
//   OVRA_ERROR_MATRIX_DEPTH          depth above 16 bits
//   OVRA_ERROR_MATRIX_COLOR_MODEL    colour model not RGB, BGR or YCC
//   OVRA_ERROR_MATRIX_ARRANGEMENT    arrangement not 0

// The record is packed to 4 bytes, so that it has 244 of them on every platform.
#pragma pack(push, 4)
// rows[k][t] is the weight of term t in output channel k. With the input samples x0, x1, x2 the
// terms are
//   x0, x1, x2, 1, x0 * x0, x1 * x1, x2 * x2, x0 * x1, x1 * x2, x2 * x0
// where the constant is in output values.
typedef struct OvraColorMatrix {
  double rows[3][10];
  uint32_t reserved;  // not read
} OvraColorMatrix;
#pragma pack(pop)

// Makes a handle of a matrix.
//   OVRA_ERROR_MATRIX_NULL   matrix or handle_out is null
//   statuses of the formats  see above
//   OVRA_ERROR_NO_MEMORY     no memory for the handle
OVRA_API OvraStatus OVRA_CALL OvraConvColorMtx_Init(OvraPixelFormatCode in_format,
                                                    OvraPixelFormatCode out_format,
                                                    const OvraColorMatrix* matrix,
                                                    uintptr_t* handle_out);

// Converts an image. The formats must be those given to OvraConvColorMtx_Init, bit for bit.
//
// Where no second-order weight is other than 0, the sums are formed in 32-bit fixed point: weights
// are truncated to 1/512 (8 and 16 bits) .. 1/8192 (12 bits), the constant to an integer, and the
// sum is rounded half up. Sums beyond 32 bits wrap round; weights beyond them are limited and
// weights that are not numbers count as 0. With any second-order weight, however small, the sums
// are formed in double precision in the order of the terms and rounded half up; a sum that is not
// a number gives 0. Either way results are limited to the range of the output depth. Infinite
// second-order weights, and those that are not numbers, do not ask for double precision.
//   OVRA_ERROR_MATRIX_NULL       source or destination is null, or the handle is null or of another
//                                family
//   OVRA_ERROR_MATRIX_ZERO_SIZE  width or height is 0
//   statuses of the formats      see above
//   OVRA_ERROR_FORMAT_CHANGED    a format is not the one given to OvraConvColorMtx_Init
OVRA_API OvraStatus OVRA_CALL OvraConvColorMtx(const uint8_t* source, uint8_t* destination,
                                               int32_t width, int32_t height,
                                               OvraPixelFormatCode in_format,
                                               OvraPixelFormatCode out_format, uintptr_t handle);

// _Init, conversion and release in one call. source, destination and matrix (null:
// OVRA_ERROR_MATRIX_NULL) and the sizes (0: OVRA_ERROR_MATRIX_ZERO_SIZE) are judged first, then all
// as in _Init.
OVRA_API OvraStatus OVRA_CALL OvraConvColorMtxSingleStep(
    const uint8_t* source, uint8_t* destination, int32_t width, int32_t height,
    OvraPixelFormatCode in_format, OvraPixelFormatCode out_format, const OvraColorMatrix* matrix);

// Releases *handle and sets it to 0; a handle of 0 is left alone. OVRA_ERROR_MATRIX_NULL when
// `handle` is null, or *handle a handle of another family.
OVRA_API OvraStatus OVRA_CALL OvraConvColorMtx_Free(uintptr_t* handle);

#ifdef __cplusplus
}
#endif

#endif  // OVRA_COLOR_H
