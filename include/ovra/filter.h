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

// Luminance unsharp mask.
//
// Sharpens or softens an image by its luminance. Every pixel gets a luminance Y of 10 bits, whatever
// the depth of its samples; Y is blurred by a separable filter whose weights the caller gives; and
// the difference Y - blur(Y), shaped by two response tables, is added to the pixel:
//
//   (amount - 1) * level(Y) * difference(Y - blur) * (Y - blur), scaled to the depth of the samples
//
// Formats: 8 to 14 bits a sample, any row alignment and row order, and one of
//
//   colour model  channels  luminance of 64 parts  corrected      copied
//   GREY          1         the sample itself      the sample     -
//   RGB           3         19, 38, 7              all            -
//   BGR           3         7, 38, 19              all            -
//   YCC           3         the first sample       first sample   second, third
//   RGBA          4         19, 38, 7              first three    fourth
//   BGRA          4         7, 38, 19              first three    fourth
//
// A malformed format word is answered with OVRA_ERROR_FORMAT_*, a format that is not accepted with
// OVRA_ERROR_YUSM_CHANNELS, _DEPTH, _COLOR_MODEL or _ARRANGEMENT, in this order: "the format" in the
// lists of statuses. A sample above its declared depth counts as the depth's maximum when the
// luminance is formed.
//
// Calls may run in parallel, also with one context.

// A control point of a response curve.
typedef struct OvraResponsePoint {
  double x;
  double y;
} OvraResponsePoint;

// Entries of the response tables.
enum { OVRA_LEVEL_TABLE_SIZE = 1024, OVRA_DIFFERENCE_TABLE_SIZE = 2048 };

// The greatest tap count of the luminance unsharp mask.
enum { OVRA_YUSM_MAX_TAPS = 64 };

// What OvraYUsm_Init prepares. Read only while a run uses it.
typedef struct OvraYUsmContext OvraYUsmContext;

// Makes the response tables from curves, in units of 1/128 (128 stands for 1.0). Both masks use them.
//
//   level curve       x in 0..1 is the luminance of the pixel, y the relative strength there;
//                     entry i of level_table (1024 entries) stands at x = i / 1024
//   difference curve  x in -1..1 is Y - blur, y the relative strength for that difference;
//                     entry k of difference_table (2048 entries) stands at x = (k - 1024) / 1024
//
// Points are sorted by strictly increasing x and joined by straight lines; the first and the last
// line go on to the ends of the table. A single point leaves its table as it was. The x of a curve's
// last point may lie anywhere beyond its predecessor. format is checked and not used otherwise.
//
// Returns, the first that applies:
//   OVRA_ERROR_YUSM_NULL              a table is null
//   OVRA_ERROR_YUSM_POINT_COUNT       a count is not positive
//   OVRA_ERROR_YUSM_NULL              a points pointer is null
//   OVRA_ERROR_YUSM_LEVEL_CURVE       an x is out of range, not increasing or not a number
//   OVRA_ERROR_YUSM_DIFFERENCE_CURVE  likewise
//   the statuses of the format
//   OVRA_OK                           the tables are written
OVRA_API OvraStatus OVRA_CALL OvraYUsmMakeTable(OvraPixelFormatCode format,
                                                int32_t level_point_count,
                                                const OvraResponsePoint* level_points,
                                                int32_t difference_point_count,
                                                const OvraResponsePoint* difference_points,
                                                int16_t* level_table, int16_t* difference_table);

// Control points of the curves that OvraDefaultCurves gives.
enum { OVRA_DEFAULT_LEVEL_POINTS = 4, OVRA_DEFAULT_DIFFERENCE_POINTS = 10 };

// Curves that suit photographs, for OvraYUsmMakeTable with the counts above. The level curve takes
// the mask back in deep shadows, where noise is, and near white; the difference curve keeps it from
// the smallest differences, which are noise, and takes it back at large ones, which are edges that
// would get halos.
//
//   level_points       4 points: (0, 0.3) (0.12, 1) (0.85, 1) (1, 0.5)
//   difference_points  10 points, symmetrical about 0: (-1, 0.3) (-0.25, 0.6) (-0.06, 1)
//                      (-0.015, 1) (-0.003, 0) (0.003, 0) (0.015, 1) (0.06, 1) (0.25, 0.6) (1, 0.3)
//
// OVRA_ERROR_YUSM_NULL: a pointer is null; nothing is written then. May be called from any thread.
OVRA_API OvraStatus OVRA_CALL OvraDefaultCurves(OvraResponsePoint* level_points,
                                                OvraResponsePoint* difference_points);

// Weights of a Gaussian blur for the masks: integers that sum to exactly 128, symmetrical, falling
// from the middle to both ends, an odd number of them, and none at the ends 0.
//
//   radius     standard deviation in pixels. 0, negative numbers and what is not a number give the
//              single weight 128, which blurs nothing; the bell of a large radius is cut off where
//              the taps end
//   max_taps   room in `weights`, 1 to OVRA_YUSM_MAX_TAPS; contexts of the double mask take up to
//              OVRA_YUSM_DOUBLE_MAX_TAPS. An even number counts as the odd one below
//   tap_count  receives how many there are
//   weights    receives that many; entries behind them are not touched
//
// A radius of 1 gives 7, 31, 52, 31, 7 with room enough. The same on every platform.
//
// OVRA_ERROR_YUSM_NULL: tap_count or weights is null; OVRA_ERROR_YUSM_TAPS: max_taps is not 1..64.
// Nothing is written then. May be called from any thread.
OVRA_API OvraStatus OVRA_CALL OvraGaussianWeights(double radius, int32_t max_taps,
                                                  int32_t* tap_count, int32_t* weights);

// Makes a context for images of one format.
//
//   tap_count, weights  the blur: weights that sum to 128, along rows and columns alike. Output x
//                       takes columns x - (tap_count - 1 - tap_count / 2) .. x + tap_count / 2;
//                       columns beyond an edge are mirrored about the edge sample. Neither the sum
//                       nor the signs are checked; of each weight the low 16 bits are used, signed.
//                       0 taps are accepted, weights are not read then and may be null; but a
//                       context without taps cannot run
//   amount              1.0 leaves the image unchanged, more sharpens, less softens
//   level_table         1024 entries, difference_table 2048, as OvraYUsmMakeTable gives them; copied
//   context             receives the context, or null on failure; release it with OvraYUsm_Free
//
// Returns, the first that applies:
//   OVRA_ERROR_YUSM_NULL        context is null
//   the statuses of the format
//   OVRA_ERROR_YUSM_TAPS        tap_count is not 0..64, or weights is null and tap_count not 0
//   OVRA_ERROR_YUSM_NULL_TABLE  a table is null
//   OVRA_ERROR_NO_MEMORY        there is no memory for the context
//   OVRA_OK
OVRA_API OvraStatus OVRA_CALL OvraYUsm_Init(OvraPixelFormatCode format, int32_t tap_count,
                                            const int32_t* weights, float amount,
                                            const int16_t* level_table,
                                            const int16_t* difference_table,
                                            OvraYUsmContext** context);

// Runs the mask. width and height are in pixels. source and destination are images of the same
// format and size; they may be the same buffer and must not overlap otherwise. Row padding is not
// touched. Work memory: about 4 * tap_count * width bytes, until the call returns.
//
// Returns, the first that applies:
//   OVRA_ERROR_YUSM_NULL  a pointer is null
//   OVRA_ERROR_YUSM_SIZE  width or height is below the tap count
//   OVRA_ERROR_YUSM_TAPS  the context has no taps
//   the statuses of the format
//   OVRA_ERROR_NO_MEMORY  there is no work memory, or a size is about 2^31 or more
//   OVRA_OK               the destination is written
OVRA_API OvraStatus OVRA_CALL OvraYUsm(const uint8_t* source, uint8_t* destination, uint32_t width,
                                       uint32_t height, OvraPixelFormatCode format,
                                       const OvraYUsmContext* context);

// Releases *context and sets it to null; a null *context stays null. OVRA_ERROR_YUSM_NULL when
// context is null.
OVRA_API OvraStatus OVRA_CALL OvraYUsm_Free(OvraYUsmContext** context);

// OvraYUsm_Init, OvraYUsm and OvraYUsm_Free in one call, with their arguments.
//
// Returns, the first that applies:
//   OVRA_ERROR_YUSM_NULL        source or destination is null
//   OVRA_ERROR_YUSM_SIZE        width or height is below the tap count
//   OVRA_ERROR_YUSM_TAPS        tap_count is not 1..64, or weights is null
//   OVRA_ERROR_YUSM_NULL_TABLE  a table is null
//   the statuses of the format
//   OVRA_ERROR_NO_MEMORY        there is no memory, or a size is about 2^31 or more
//   OVRA_OK                     the destination is written
OVRA_API OvraStatus OVRA_CALL OvraYUsmSingleStep(const uint8_t* source, uint8_t* destination,
                                                 uint32_t width, uint32_t height,
                                                 OvraPixelFormatCode format, int32_t tap_count,
                                                 const int32_t* weights, float amount,
                                                 const int16_t* level_table,
                                                 const int16_t* difference_table);

// Double unsharp mask.
//
// Sharpens or softens two bands of detail at once. Two blurs of the 10-bit luminance Y, a coarse one
// (1) and a fine one (2), split it into a base, a middle band and a fine band; each band is scaled
// by its own amount and response tables, and the change of luminance is added to the pixel:
//
//   blur1 + amount1 * level1(Y) * difference1(blur2 - blur1) * (blur2 - blur1)
//         + amount2 * level2(Y) * difference2(Y - blur2) * (Y - blur2)  - Y
//
// Both amounts 1.0 with tables of 128 throughout leave the image as it is, but for the rounding of a
// few steps.
//
// Formats: exactly 0x120 (RGB: all samples change) and 0x320 (YCC: the first sample changes): 8-bit
// samples, packed rows, top row first; any other word is answered with
// OVRA_ERROR_YUSM_DOUBLE_FORMAT.
//
// source and destination hold 3 * width * height bytes and may be the same buffer; they must not
// overlap otherwise. width and height are in pixels. Work memory: about
// 4 * (tap_count1 + tap_count2) bytes times the width. Calls may run in parallel, also with one context.

// The greatest tap count that a context holds.
enum { OVRA_YUSM_DOUBLE_MAX_TAPS = 25 };

// What OvraYUsmDouble_Init copies. Read only while a run uses it.
typedef struct OvraYUsmDoubleContext OvraYUsmDoubleContext;

// Makes a context.
//
//   tap_count, weights  a blur, along rows and columns alike: output x takes columns
//                       x - (tap_count - 1) / 2 .. x + tap_count / 2; edge samples are repeated.
//                       Weighted sums are divided by the sum of the weights; a sum of zero or less
//                       gives a blur of 0. weights may be null when tap_count is 0.
//   amount              1.0 keeps the band, more enlarges it, less reduces it
//   level_table         1024 entries, difference_table 2048, as OvraYUsmMakeTable gives them
//   context             receives the context, or null on failure (but it is not touched when a tap
//                       count is refused); release it with OvraYUsmDouble_Free
//
// Returns, the first that applies:
//   OVRA_ERROR_YUSM_DOUBLE_TAPS      a tap count is above 25
//   OVRA_ERROR_YUSM_DOUBLE_FORMAT
//   OVRA_ERROR_YUSM_DOUBLE_ARGUMENT  a pointer is null
//   OVRA_ERROR_NO_MEMORY             there is no memory for the context
//   OVRA_OK
OVRA_API OvraStatus OVRA_CALL OvraYUsmDouble_Init(
    OvraPixelFormatCode format, uint32_t tap_count1, const int32_t* weights1, uint32_t tap_count2,
    const int32_t* weights2, float amount1, const int16_t* level_table1,
    const int16_t* difference_table1, float amount2, const int16_t* level_table2,
    const int16_t* difference_table2, OvraYUsmDoubleContext** context);

// Runs the mask.
//
// Returns, the first that applies:
//   OVRA_ERROR_YUSM_DOUBLE_FORMAT
//   OVRA_ERROR_YUSM_DOUBLE_ARGUMENT  a pointer is null, or width or height is 0 or below a tap count
//   OVRA_ERROR_NO_MEMORY             there is no work memory, or a size is above 2147483647
//   OVRA_OK                          the destination is written
OVRA_API OvraStatus OVRA_CALL OvraYUsmDouble(const uint8_t* source, uint8_t* destination,
                                             uint32_t width, uint32_t height,
                                             OvraPixelFormatCode format,
                                             const OvraYUsmDoubleContext* context);

// The same in one call and without a context, hence with tap counts up to the size of the image. No
// pixels and no taps are answered with 0.
//
// Returns, the first that applies:
//   OVRA_ERROR_YUSM_DOUBLE_ARGUMENT  width or height is below a tap count
//   OVRA_ERROR_YUSM_DOUBLE_FORMAT
//   OVRA_ERROR_YUSM_DOUBLE_ARGUMENT  a pointer is null
//   OVRA_ERROR_NO_MEMORY             there is no work memory, or a size is above 2147483647
//   OVRA_OK                          the destination is written
OVRA_API OvraStatus OVRA_CALL OvraYUsmDoubleSingleStep(
    const uint8_t* source, uint8_t* destination, uint32_t width, uint32_t height,
    OvraPixelFormatCode format, uint32_t tap_count1, const int32_t* weights1, uint32_t tap_count2,
    const int32_t* weights2, float amount1, const int16_t* level_table1,
    const int16_t* difference_table1, float amount2, const int16_t* level_table2,
    const int16_t* difference_table2);

// Releases *context and sets it to null; a null *context, or a null context, does nothing. Always 0.
OVRA_API OvraStatus OVRA_CALL OvraYUsmDouble_Free(OvraYUsmDoubleContext** context);

// Edge-preserving smoothing. Every pixel moves toward the mean of 49 neighbours (a 13 x 13 window,
// every second row and column, edge pixels repeated), each weighted by its likeness: the weight is
// full for colour differences (the sum over the channels) up to 19 and falls to none at 41, so
// that nothing beyond an edge pulls. Pictures in which more than a fifth of the pixels lie in
// colour detail of middling amplitude are smoothed more strongly: up to 33, and none at 69.
//
// source, destination  pixels of three 8-bit samples, rows of exactly 3 * width bytes: the row
//                      alignment in `format` is not applied, nor is the row order. The buffers
//                      belong to the caller and must not overlap.
// width, height        in pixels
// format               three channels of 8 bits; OVRA_MODEL_RGB, _BGR or _YCC
//
// Returns, the first that applies:
//   OVRA_ERROR_EDGE_FILTER_NULL         source or destination is null
//   OVRA_ERROR_EDGE_FILTER_IN_PLACE     source and destination are the same
//   OVRA_ERROR_EDGE_FILTER_ZERO_SIZE    width or height is 0
//   OVRA_ERROR_FORMAT_*                 the format word is malformed
//   OVRA_ERROR_EDGE_FILTER_CHANNELS, _DEPTH, _COLOR_MODEL, _ARRANGEMENT   it is not an accepted one
//   OVRA_ERROR_NO_MEMORY                there is no work memory (some hundred bytes times the
//                                       width), or the picture exceeds what can be addressed
//   OVRA_OK                             the destination is written
//
// When only the memory to judge the picture's detail is lacking, it is smoothed less strongly.
// Calls on different destinations may run in parallel.
OVRA_API OvraStatus OVRA_CALL OvraEFilterImage(const uint8_t* source, uint8_t* destination,
                                               uint32_t width, uint32_t height,
                                               OvraPixelFormatCode format);

// Parameters of OvraSoftFocus. 40 bytes on every platform.
//
// The blur is exponential: from its centre the response falls by the same factor from pixel to
// pixel, to decay_base ^ decay_exponent at the radius. A base of 0.1 and an exponent of 1 let a
// tenth be left there.
typedef struct OvraSoftFocusParams {
  // Length of the blur in pixels, for a picture whose shorter side has 2503 pixels; scaled with the
  // shorter side for others, and rounded. Where that gives 0 or less the picture is copied.
  int32_t radius;
  int32_t decay_exponent;
  // A decay that is not a number between 0 and 1, both excluded, copies the picture.
  double decay_base;
  uint8_t reserved[16];  // not read
  double mix;            // share of the blurred picture, limited to 0..1; not a number counts as 0
} OvraSoftFocusParams;

// Soft focus: a copy of the picture, blurred along rows and then along columns, is mixed with it.
// Beyond the right and the lower edge the blur sees the edge pixels repeated `radius` times, beyond
// the left and the upper edge a picture that goes on evenly. The gain of the blur is a rounded
// integer, so flat areas change: by a level or two for blurs of ten to a few hundred pixels, by several
// near the edges for shorter ones, and everywhere for very long ones.
//
// source, destination  pixels of three 8-bit samples, rows of exactly 3 * width bytes; they belong to
//                      the caller, and may be the same buffer but must not overlap otherwise
// width, height        in pixels; nothing is done when one of them is 0
//
// Work memory: 48 times the width plus 96 times the longer side with the radius (of which no more than
// 10400 pixels count), in bytes, and 3 bytes a pixel in place. The time depends on the size of the
// picture; a radius beyond it adds no more than a limited number of steps to each line. A blur that keeps 1 - 1/131072 or more from pixel to pixel is too long for
// the fixed point: its outcome is black.
//
// Returns, the first that applies:
//   OVRA_ERROR_SOFT_FOCUS_NULL  source, destination or params is null
//   OVRA_ERROR_NO_MEMORY        no work memory, or a picture that exceeds what can be addressed
//   OVRA_OK                     the destination is written
//
// Calls on different destinations may run in parallel.
OVRA_API OvraStatus OVRA_CALL OvraSoftFocus(const uint8_t* source, uint8_t* destination,
                                            uint32_t width, uint32_t height,
                                            const OvraSoftFocusParams* params);

// Multi-frequency processing: sharpening of fine texture, local contrast and clarity, softening of
// skin, damping of noise, and a gentler or steeper overall contrast, all at once.
//
// The 15-bit brightness of a picture is split into up to eight bands, each an octave of detail coarser
// than the last, and a base: a Laplacian pyramid (P. J. Burt and E. H. Adelson, The Laplacian pyramid
// as a compact image code, 1983). A coefficient d of a band becomes, with m and e what is left of d
// within the band's noise and limit (m is the soft threshold of D. L. Donoho, De-noising by
// soft-thresholding, 1995),
//
//   d + (gain - 1) * (e - m) - damping * m
//
// and the base becomes base + (base_gain - 1) * (base - pivot). What the brightness changes by in sum
// is added to each changed channel. Unit weights give the picture back, byte for byte.
//
// Band 1 holds nearly all of what repeats every 4 pixels and faster, half of what repeats every 8; a
// band k holds most of what repeats every 5.5 * 2^(k - 1) pixels, and next to nothing of what repeats
// four times as fast. A preview at half size uses bands 2, 3, ... of the full-size settings as its
// bands 1, 2, ...

// The greatest number of bands.
enum { OVRA_MULTI_FREQUENCY_MAX_BANDS = 8 };

// How one band is weighted. 16 bytes on every platform.
typedef struct OvraMultiFrequencyBand {
  float gain;   // 0..4, weight of the band; 1 keeps it
  float noise;  // 0..0.25 and at most `limit`: amplitudes up to this share of the range are noise,
                // and the gain does not act on them
  float damping;  // 0..1, share of the noise that is taken away
  float limit;    // 0..1: amplitudes beyond this share of the range are edges, and the gain acts on
                  // no more than this much of them
} OvraMultiFrequencyBand;

// Parameters of OvraMultiFrequency. 144 bytes on every platform.
typedef struct OvraMultiFrequencyParams {
  uint32_t band_count;  // 1..8, bands that are split off
  float base_gain;      // 0..2, weight of the base about the pivot; 1 keeps it
  float pivot;          // 0..1, the tone that the base gain leaves alone, as a share of the range
  uint32_t reserved;    // not read
  OvraMultiFrequencyBand band[OVRA_MULTI_FREQUENCY_MAX_BANDS];  // from band_count on not read
} OvraMultiFrequencyParams;

// source, destination  images of the same format and size; they belong to the caller, and may be the
//                      same buffer but must not overlap otherwise. Row padding is neither read nor
//                      written.
// width, height        in pixels
// format               8 to 16 bits a sample, any row alignment and row order, and one of the models
//                      of the luminance unsharp mask: grey, RGB, BGR, RGBA and BGRA change in all
//                      samples but the fourth, which is copied; of YCC the first sample is the
//                      brightness and changes. A sample above its depth counts as the depth's maximum
//                      in the brightness, and its sum with the change is limited to it.
// params               read only
//
// Work memory: at most 1.4 bytes a pixel (in pictures narrower or lower than 2^band_count 4 bytes a
// pixel), 64 bytes times the width and 50 KB; less a pixel in large pictures.
//
// Returns, the first that applies:
//   OVRA_ERROR_YUSM_NULL                  source, destination or params is null
//   OVRA_ERROR_YUSM_SIZE                  width or height is 0
//   OVRA_ERROR_MULTI_FREQUENCY_PARAMETER  a parameter is out of its range or not a number, or a band's
//                                         noise is above its limit
//   OVRA_ERROR_FORMAT_*                   the format word is malformed
//   OVRA_ERROR_YUSM_CHANNELS, _DEPTH, _COLOR_MODEL, _ARRANGEMENT   it is not an accepted one
//   OVRA_ERROR_NO_MEMORY                  no work memory, or a width, height or row of bytes above
//                                         2147483647
//   OVRA_OK                               the destination is written
//
// Calls on different destinations may run in parallel.
OVRA_API OvraStatus OVRA_CALL OvraMultiFrequency(const uint8_t* source, uint8_t* destination,
                                                 uint32_t width, uint32_t height,
                                                 OvraPixelFormatCode format,
                                                 const OvraMultiFrequencyParams* params);

#ifdef __cplusplus
}
#endif

#endif  // OVRA_FILTER_H
