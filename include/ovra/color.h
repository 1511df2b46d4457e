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
//   OVRA_ERROR_CUBE_NULL             a pointer or handle is null (checked first for handle_out,
//                                    handle, the cube of SingleStep; last for the lattice)
//   OVRA_ERROR_FORMAT_*              a field of a format is unknown
//   OVRA_ERROR_CUBE_ZERO_SIZE        width or height is 0
//   OVRA_ERROR_CUBE_CHANNELS         input channels not 3; 8-bit input: output channels not 3 or 4
//   OVRA_ERROR_CUBE_INPUT_DEPTH      input depth 32 bits
//   OVRA_ERROR_CUBE_DEPTH            output depth above 12 bits
//   OVRA_ERROR_CUBE_COLOR_MODEL      a colour model not listed above; deeper input: output channels
//                                    not 3 or 4
//   OVRA_ERROR_CUBE_ARRANGEMENT      an arrangement is not 0
//   OVRA_ERROR_CUBE_GRID_COUNT       a grid count is below 2 or above 65536
//   OVRA_ERROR_CUBE_NULL_GRID        a grid pointer is null
//   OVRA_ERROR_CUBE_FORMAT_CHANGED   the formats are not those given to _Init
//   OVRA_ERROR_NO_MEMORY             the tables could not be allocated: 64 bytes a cell (128 where
//                                    coefficients of deep input need it) and 12 an input code; or
//                                    the lattice has 2^31 cells or more

// Prepares conversions through `cube` and stores a handle in *handle_out, which is 0 until then and
// after a failure. The handle belongs to the caller, who releases it with OvraConvColorCube_Free;
// it keeps nothing of the cube, which may be released at once. Takes at most a few milliseconds for
// a cube of 33 points an axis.
OVRA_API OvraStatus OVRA_CALL OvraConvColorCube_Init(OvraPixelFormatCode in_format,
                                                     OvraPixelFormatCode out_format,
                                                     const OvraColorCube* cube,
                                                     uintptr_t* handle_out);

// Converts an image of width x height pixels. Source and destination are separate buffers; the rows
// of both are aligned as in_format says, the alignment of out_format is not used. Rows go in memory
// order whatever the formats' row order. Negative sizes convert nothing and succeed. The formats
// are those given to _Init, compared as whole words. Calls may share a handle in parallel.
OVRA_API OvraStatus OVRA_CALL OvraConvColorCube(const uint8_t* src, uint8_t* dst, int32_t width,
                                                int32_t height, OvraPixelFormatCode in_format,
                                                OvraPixelFormatCode out_format, uintptr_t handle);

// Releases the handle and sets *handle to 0. A word that is 0 already is answered with
// OVRA_ERROR_CUBE_NULL, like every null handle, and does no harm.
OVRA_API OvraStatus OVRA_CALL OvraConvColorCube_Free(uintptr_t* handle);

// _Init, conversion and _Free in one call.
OVRA_API OvraStatus OVRA_CALL OvraConvColorCubeSingleStep(const uint8_t* src, uint8_t* dst,
                                                          int32_t width, int32_t height,
                                                          OvraPixelFormatCode in_format,
                                                          OvraPixelFormatCode out_format,
                                                          const OvraColorCube* cube);

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

#ifdef __cplusplus
}
#endif

#endif  // OVRA_COLOR_H
