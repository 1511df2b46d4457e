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

// A kernel table holds an interpolation kernel at the distances i / 4096 from its centre, for
// i = 0 .. 16383. The kernel is symmetric, of support 2: entries from 8192 on are 0, so that a
// kernel stretched to twice its width is still inside the table. The caller owns the table.
enum { OVRA_KERNEL_TABLE_STEPS = 4096, OVRA_KERNEL_TABLE_ENTRIES = 16384 };

// OvraCalcCubicSpline and OvraCalcBSpline fill all OVRA_KERNEL_TABLE_ENTRIES of `table`. Any
// parameter is used as given. Values are computed in extended precision and rounded once; they are
// the same on every platform and whatever precision the host has set. Calls on different tables may
// run in parallel. OVRA_ERROR_RESIZE_NULL_TABLE: table is null, nothing is written.

// The cubic-convolution kernel (R. G. Keys, Cubic convolution interpolation for digital image
// processing, 1981) with its free parameter a, the slope at distance 1:
//
//   0 <= x < 1   (a + 2) x^3 - (a + 3) x^2 + 1
//   1 <= x < 2   a x^3 - 5a x^2 + 8a x - 4a
//
// a = -0.5 is the usual kernel; smaller values are sharper. The resize functions use -0.75.
OVRA_API OvraStatus OVRA_CALL OvraCalcCubicSpline(float a, float* table);

// A cubic B-spline kernel with a free parameter b; b = 0 is the B-spline itself, b = 1
// interpolates:
//
//   0 <= x < 1              ((6b + 3) x^3 - (9b + 6) x^2 + 2b + 4) / 6
//   1 <= x < 2, u = x - 1   -((2b + 1) u^3 - (3b + 3) u^2 + 3u + b - 1) / 6
//
// The weights at integer distances sum to 1 for every b. No function of the library uses this
// kernel; it is for callers of OvraResizeImageCore and OvraResizeImageCoreVAR.
OVRA_API OvraStatus OVRA_CALL OvraCalcBSpline(float b, float* table);

// The taps and the stretch that the resize functions choose for a size ratio (destination by
// source, below 1 reduces), for callers of OvraResizeImageCore and OvraResizeImageCoreVAR with a
// kernel table of their own:
//
//   ratio       from 0.917  from 0.771   from 0.648   from 0.545  below, or not a number
//   taps        4           5            6            7           8
//   stretch     1           1.1848341    1.4094433    1.676446    2
//
// The float is compared with these limits in double precision. Ratios below 0.33, which the resize
// functions leave to OvraSmallResizeImage, get the widest support. OVRA_ERROR_NULL_DECODER_OUTPUT:
// taps or stretch is null, nothing is written. May be called from any thread.
OVRA_API OvraStatus OVRA_CALL OvraSelectKernelSupport(float ratio, int32_t* taps, float* stretch);

// Resizing. A region of the source becomes the whole destination.
//
// Source and destination are separate buffers of the caller with one format: 1, 3 or 4
// interleaved channels of 8 to 16 bits, with a colour model that fits the channel count. Widths and
// heights are in pixels; rows stand as far apart as the format's alignment says
// (ovra/pixel_format.h). The region is given in source pixels, x and y from the picture's top left
// corner also where rows are stored bottom-up. It must not reach beyond the right or the bottom
// edge; x and y may be negative, except for ratios below 0.33, where OvraSmallResizeImage takes over
// and the region must lie inside the source.
//
// The picture is scaled about the middle of the region, which falls on the middle of the
// destination, with a separable kernel in fixed point. Around the region the kernel uses the
// source's own pixels, and beyond the source its edge pixels. Row padding of the destination is not
// written. At factors of exactly 1 between images of one size rows are copied instead, as described
// at OvraResizeImageCore. Results are the same on every platform.
//
// Calls on different destinations may run in parallel. Nothing is written unless OVRA_OK is
// returned. All statuses, in the order of the checks:
//
//   OVRA_ERROR_FORMAT_...                  a field of the format word is not accepted (functions
//                                          with a table: only after RESIZE_TAP_COUNT)
//   OVRA_ERROR_NO_MEMORY                   no work memory
//   OVRA_ERROR_RESIZE_ZERO_SIZE            without factors: source width or region is 0
//   OVRA_ERROR_RESIZE_FACTOR               an explicit factor is below 0.33
//   OVRA_ERROR_RESIZE_NULL_IMAGE           source or destination is null
//   OVRA_ERROR_RESIZE_NULL_TABLE           the table is null
//   OVRA_ERROR_RESIZE_STRETCH              a stretch is not greater than 0
//   OVRA_ERROR_RESIZE_TAP_COUNT            a tap count is below 4
//   OVRA_ERROR_RESIZE_CHANNELS, _DEPTH, _COLOR_MODEL, _ARRANGEMENT  the format cannot be resized
//   OVRA_ERROR_RESIZE_SOURCE_SMALL         source narrower or lower than the taps of the axis
//   OVRA_ERROR_RESIZE_DESTINATION_SMALL    destination likewise
//   OVRA_ERROR_RESIZE_REGION_SIZE          region likewise, or larger than the source
//   OVRA_ERROR_RESIZE_REGION_OUTSIDE       region beyond the right or bottom edge
//   OVRA_ERROR_RESIZE_FACTOR               an explicit factor is 0 or not a number
//   OVRA_ERROR_NO_MEMORY                   no work memory

// Resizes the whole source. The scale follows from the sizes: one serves both axes, the larger one
// of destination width by source width and of destination height by source height, so that
// proportions are kept and what does not fit is cut off symmetrically along the other axis. The
// kernel is cubic convolution with a = -0.75, of 4 taps, and of up to 8 for reductions; below a
// ratio of 0.33 OvraSmallResizeImage takes over, which accepts sources and destinations of any size
// from one pixel on.
OVRA_API OvraStatus OVRA_CALL OvraResizeImage(const uint8_t* source, int32_t source_width,
                                              int32_t source_height, uint8_t* destination,
                                              int32_t destination_width, int32_t destination_height,
                                              OvraPixelFormatCode format);

// The same for a region of the source.
OVRA_API OvraStatus OVRA_CALL OvraResizeImageROI(const uint8_t* source, int32_t source_width,
                                                 int32_t source_height, uint8_t* destination,
                                                 int32_t destination_width,
                                                 int32_t destination_height,
                                                 OvraPixelFormatCode format, int32_t x, int32_t y,
                                                 int32_t width, int32_t height);

// Resizes with explicit factors (destination by source; above 1 enlarges) of at least 0.33. They
// need not agree with the sizes: what the destination has room for is shown. The kernel is that of
// OvraResizeImage, of as many taps on each axis as its factor asks for.
OVRA_API OvraStatus OVRA_CALL OvraResizeImageVAR(const uint8_t* source, int32_t source_width,
                                                 int32_t source_height, uint8_t* destination,
                                                 int32_t destination_width,
                                                 int32_t destination_height,
                                                 OvraPixelFormatCode format,
                                                 double horizontal_factor, double vertical_factor);

// The same for a region of the source.
OVRA_API OvraStatus OVRA_CALL OvraResizeImageROIVAR(
    const uint8_t* source, int32_t source_width, int32_t source_height, uint8_t* destination,
    int32_t destination_width, int32_t destination_height, OvraPixelFormatCode format, int32_t x,
    int32_t y, int32_t width, int32_t height, double horizontal_factor, double vertical_factor);

// The engine with a kernel of the caller's: `kernel_table` has OVRA_KERNEL_TABLE_ENTRIES floats,
// `taps` source pixels an axis (at least 4, at most what fits source, destination and region)
// contribute to a destination pixel, and `stretch` widens the kernel (2 halves the step through the
// table; distances beyond the table weigh 0). Weights are normalised and truncated to 10 fractional
// bits; a set whose kernel values do not sum to a finite number other than 0 weighs 0 throughout.
//
// One scale serves both axes, the larger one of destination width by region width and of
// destination height by region height: proportions are kept and the region is cut symmetrically
// along the other axis. At a scale of exactly 1 between images of one size the first `height` rows
// in memory are copied as they are, row padding included, wherever the region lies.
//
// Tap counts other than 4 to 8 and 16 may take further memory row by row on processors without
// vector units; a row that gets none is left unwritten.
OVRA_API OvraStatus OVRA_CALL
OvraResizeImageCore(const uint8_t* source, int32_t source_width, int32_t source_height,
                    uint8_t* destination, int32_t destination_width, int32_t destination_height,
                    OvraPixelFormatCode format, int32_t x, int32_t y, int32_t width, int32_t height,
                    const float* kernel_table, float stretch, int32_t taps);

// The same with factors, stretches and tap counts of their own for the two axes. The copy takes
// place when both factors are 1. Any other factor but 0 is accepted, however small or large. A
// negative horizontal factor mirrors the picture; a negative vertical one does not: source rows are
// read in rising order only, and every destination row is made of the rows around the first one's
// centre.
OVRA_API OvraStatus OVRA_CALL OvraResizeImageCoreVAR(
    const uint8_t* source, int32_t source_width, int32_t source_height, uint8_t* destination,
    int32_t destination_width, int32_t destination_height, OvraPixelFormatCode format, int32_t x,
    int32_t y, int32_t width, int32_t height, double horizontal_factor, double vertical_factor,
    const float* kernel_table, float horizontal_stretch, float vertical_stretch,
    int32_t horizontal_taps, int32_t vertical_taps);

// Strong reduction, for ratios below about a third, where an engine of few taps would miss pixels.
// Resamples the region (x, y, width, height) of the source, in source pixels with y counted from
// the picture's top, to the whole destination. One scale serves both axes: the larger of
// destination_width / width and destination_height / height; the region is cut symmetrically along
// the other axis. The kernel of the table is stretched over all source samples that it covers, with
// weights of 22 fractional bits that sum to exactly 1, so that constant pictures stay constant;
// taps beyond the source repeat its edge, taps beyond the region but inside the source read the
// source. Time grows with the source pixels of the region, whatever the ratio. Ratios up to and
// above 1 are accepted. Rows and columns whose kernel values cannot be weights (their sum is 0 or
// not finite, or their absolute sum is above 1.9 times it) are black.
//
// source, destination: one format, 8 to 16 bits, grey, three-channel or four-channel; separate
// buffers of the caller. kernel_table: OVRA_KERNEL_TABLE_ENTRIES values. Calls may run in parallel
// on different destinations. Nothing is written unless OVRA_OK is returned. Statuses, in the order of
// the checks:
//
//   OVRA_ERROR_RESIZE_NULL_IMAGE         source or destination is null
//   OVRA_ERROR_RESIZE_NULL_TABLE         kernel_table is null
//   the OVRA_ERROR_FORMAT_ codes         a field of the format word is not accepted
//   OVRA_ERROR_RESIZE_CHANNELS, _DEPTH, _COLOR_MODEL, _ARRANGEMENT  the format cannot be resized
//   OVRA_ERROR_RESIZE_ZERO_SIZE          source width or region is 0
//   OVRA_ERROR_RESIZE_DESTINATION_SMALL  destination below 1 x 1
//   OVRA_ERROR_RESIZE_REGION_SIZE        region negative or larger than the source
//   OVRA_ERROR_RESIZE_REGION_OUTSIDE     region reaches beyond the source
//   OVRA_ERROR_NO_MEMORY                 no work memory
OVRA_API OvraStatus OVRA_CALL OvraSmallResizeImage(
    const uint8_t* source, int32_t source_width, int32_t source_height, uint8_t* destination,
    int32_t destination_width, int32_t destination_height, OvraPixelFormatCode format, int32_t x,
    int32_t y, int32_t width, int32_t height, const float* kernel_table);

// Resizing with a turn. The region of the source is resized as by the function of the same name
// without "Rotate", and the result turned or mirrored as by OvraRotateImage (ovra/geometry.h), in
// one call and without a picture in between: the bytes are those of the two calls.
//
// source, source_width, source_height, x, y, width, height
//                     as for the resize: source pixels, before the turn, as seen
// destination         destination_width x destination_height pixels as they lie in memory, after
//                     the turn; for the odd modes the resize is one to destination_height x
//                     destination_width pixels, and the scale follows from those. Row padding is
//                     set to 0.
// mode                an OvraRotation, 0 to 7, applied as seen
//
// Source and destination are separate buffers of the caller that must not overlap, in any mode. Work
// memory does not grow with the height; all of it is taken before the first byte is written, and a
// failed call leaves the destination as it was. Calls on different destinations may run in
// parallel.

// With a kernel of the caller's, as OvraResizeImageCore. Answers, in the order of the checks:
// OVRA_ERROR_RESIZE_NULL_IMAGE (source, destination), OVRA_ERROR_RESIZE_NULL_TABLE,
// OVRA_ERROR_RESIZE_STRETCH, OVRA_ERROR_RESIZE_TAP_COUNT, OVRA_ERROR_ROTATION_MODE, the
// OVRA_ERROR_FORMAT_ codes, OVRA_ERROR_RESIZE_CHANNELS, OVRA_ERROR_RESIZE_DEPTH,
// OVRA_ERROR_RESIZE_COLOR_MODEL, OVRA_ERROR_RESIZE_ARRANGEMENT, OVRA_ERROR_RESIZE_SOURCE_SMALL,
// OVRA_ERROR_RESIZE_DESTINATION_SMALL, OVRA_ERROR_RESIZE_REGION_SIZE,
// OVRA_ERROR_RESIZE_REGION_OUTSIDE, OVRA_ERROR_NO_MEMORY, or OVRA_OK.
OVRA_API OvraStatus OVRA_CALL OvraResizeRotateImageCore(
    const uint8_t* source, int32_t source_width, int32_t source_height, uint8_t* destination,
    int32_t destination_width, int32_t destination_height, OvraPixelFormatCode format, int32_t x,
    int32_t y, int32_t width, int32_t height, const float* kernel_table, float stretch,
    int32_t taps, int32_t mode);

// With the library's own kernel, as OvraResizeImageROI, at any ratio. The OVRA_ERROR_FORMAT_ codes,
// OVRA_ERROR_ROTATION_MODE, OVRA_ERROR_NO_MEMORY for the table and OVRA_ERROR_RESIZE_ZERO_SIZE come
// first, then the others in the order of OvraResizeRotateImageCore, or below a ratio of 0.33 of
// OvraSmallResizeRotateImage.
OVRA_API OvraStatus OVRA_CALL OvraResizeRotateImageROI(
    const uint8_t* source, int32_t source_width, int32_t source_height, uint8_t* destination,
    int32_t destination_width, int32_t destination_height, OvraPixelFormatCode format, int32_t x,
    int32_t y, int32_t width, int32_t height, int32_t mode);

// For strong reductions, as OvraSmallResizeImage. Answers, in the order of the checks:
// OVRA_ERROR_RESIZE_NULL_IMAGE, OVRA_ERROR_RESIZE_NULL_TABLE, OVRA_ERROR_ROTATION_MODE, the
// OVRA_ERROR_FORMAT_ codes, OVRA_ERROR_RESIZE_CHANNELS, OVRA_ERROR_RESIZE_DEPTH,
// OVRA_ERROR_RESIZE_COLOR_MODEL, OVRA_ERROR_RESIZE_ARRANGEMENT, OVRA_ERROR_RESIZE_ZERO_SIZE,
// OVRA_ERROR_RESIZE_DESTINATION_SMALL, OVRA_ERROR_RESIZE_REGION_SIZE,
// OVRA_ERROR_RESIZE_REGION_OUTSIDE, OVRA_ERROR_NO_MEMORY, or OVRA_OK.
OVRA_API OvraStatus OVRA_CALL OvraSmallResizeRotateImage(
    const uint8_t* source, int32_t source_width, int32_t source_height, uint8_t* destination,
    int32_t destination_width, int32_t destination_height, OvraPixelFormatCode format, int32_t x,
    int32_t y, int32_t width, int32_t height, const float* kernel_table, int32_t mode);

// Resizing in bands. The host hands over the source in bands of any number of rows, and gets
// destination rows as soon as they can be made: those of the resize of the whole picture, byte for
// byte. A context holds what lies between two calls; its size follows from the widths, not from the
// heights.
//
// Rows, both ways, go in memory order of the whole picture: row 0 is the first in memory. In
// bottom-up formats the first band holds the bottom rows of the picture, and the bottom rows of the
// destination come first. The region is measured as seen.
//
// A context belongs to one stream of bands: no two calls may use it at once, but it may pass from
// thread to thread between calls, and different contexts may be used in parallel. It serves any
// number of pictures, one after the other.
typedef struct OvraBandResizeContext OvraBandResizeContext;

// Makes a context for the resize that OvraResizeImageROI does for the same arguments with images;
// the whole source is the region 0, 0, source_width, source_height. The context is released by
// OvraBandResize_Free; where the call fails, *context is null.
//
// Answers, in the order of the checks: OVRA_ERROR_RESIZE_NULL_IMAGE (context is null), the
// OVRA_ERROR_FORMAT_ codes, OVRA_ERROR_NO_MEMORY for the table and the context,
// OVRA_ERROR_RESIZE_ZERO_SIZE, then by the ratio the statuses of OvraResizeImageCore or of
// OvraSmallResizeImage from OVRA_ERROR_RESIZE_CHANNELS on, OVRA_ERROR_NO_MEMORY, or OVRA_OK.
OVRA_API OvraStatus OVRA_CALL OvraBandResize_Init(int32_t source_width, int32_t source_height,
                                                  int32_t destination_width,
                                                  int32_t destination_height,
                                                  OvraPixelFormatCode format, int32_t x, int32_t y,
                                                  int32_t width, int32_t height,
                                                  OvraBandResizeContext** context);

// The same for the resize that OvraResizeImageCore does. The table is copied.
//
// Answers, in the order of the checks: OVRA_ERROR_RESIZE_NULL_IMAGE (context is null), then the
// statuses of OvraResizeImageCore from OVRA_ERROR_RESIZE_NULL_TABLE on, or OVRA_OK.
OVRA_API OvraStatus OVRA_CALL
OvraBandResizeCore_Init(int32_t source_width, int32_t source_height, int32_t destination_width,
                        int32_t destination_height, OvraPixelFormatCode format, int32_t x,
                        int32_t y, int32_t width, int32_t height, const float* kernel_table,
                        float stretch, int32_t taps, OvraBandResizeContext** context);

// Takes rows of a band and writes the destination rows that are ready, until the band is at its end
// or there is no room for a row that is ready. Nothing is allocated.
//
// source            the first row of the band; may be null when source_rows is 0
// source_width      as given to the _Init
// source_rows       rows in the band; with 0, and first_row the rows taken so far, rows that are
//                   ready are fetched
// destination       where destination rows go; may be null when destination_rows is 0
// destination_width as given to the _Init
// destination_rows  room at the destination, in rows
// format            as given to the _Init, all bits of it
// first_row         number of the band's first row in the source: the rows taken so far. 0 begins
//                   a new picture; whatever the last one had left is dropped
// rows_taken        out: rows of the band that were taken. The others are handed over again
// rows_written      out: destination rows written
//
// The band and the destination must not overlap, and the two counts are separate objects. A row
// comes out at most half the taps, or below a ratio of 0.33 two destination rows, after its centre;
// after the last source row all others are ready. The picture is complete when all source rows were
// taken and all destination rows written. Row padding of the destination is written only where rows
// are copied, at a scale of exactly 1; then that of source rows is read, too.
//
// A failed call changes nothing, except that both counts are 0 (not where one of them or the context
// is null). Answers, in the order of the checks: OVRA_ERROR_RESIZE_NULL_IMAGE (context, rows_taken
// or rows_written is null, then source with rows or destination with room),
// OVRA_ERROR_BAND_RESIZE_CHANGED (a width or the format differs), OVRA_ERROR_BAND_RESIZE_POSITION
// (a count or first_row is negative, first_row is neither 0 nor the rows taken, or the band reaches
// beyond the source), or OVRA_OK.
OVRA_API OvraStatus OVRA_CALL OvraBandResize(const uint8_t* source, int32_t source_width,
                                             int32_t source_rows, uint8_t* destination,
                                             int32_t destination_width, int32_t destination_rows,
                                             OvraPixelFormatCode format, int32_t first_row,
                                             int32_t* rows_taken, int32_t* rows_written,
                                             OvraBandResizeContext* context);

// Releases a context, at any point of a picture, and nulls the pointer. Does nothing where `context`
// or the pointer is null. Always OVRA_OK.
OVRA_API OvraStatus OVRA_CALL OvraBandResize_Free(OvraBandResizeContext** context);

#ifdef __cplusplus
}
#endif

#endif  // OVRA_RESAMPLE_H
