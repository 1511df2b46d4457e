// SPDX-License-Identifier: MIT
// Tone processing: automatic dodging and burning.
//
// The large-scale brightness of a picture, its base, goes through a tone curve that lifts shadows and
// holds highlights, while the detail on top of it keeps or gains contrast. Each pixel is multiplied by
// one gain, the same for its three channels. Four forms, which differ in what the base is:
//
//   HyperTone              a pyramid of blurs in which every level yields to edges within a limit. It
//                          keeps the separation at edges strong, as a darkroom mask does; near strong
//                          edges the base deviates by at most `edge`, less with the distance.
//   HyperToneLight         the same from means of 4 x 4 pixels
//   HybridHyperTone        a local mean over space and tone together: tones that lie half the range
//                          apart do not see each other. No halo at strong edges; no channel is driven
//                          into clipping, and the growth of colourfulness can be held back.
//   HybridHyperToneLight   the same with its statistics and its fine blur from means of 4 x 4 pixels
//
// Base and detail layers: F. Durand and J. Dorsey, Fast bilateral filtering for the display of
// high-dynamic-range images, 2002. The grid of space and tone: J. Chen, S. Paris and F. Durand,
// Real-time edge-aware image processing with the bilateral grid, 2007; without normalisation, hence
// without reversed gradients: M. Aubry, S. Paris, S. Hasinoff, J. Kautz and F. Durand, Fast local
// Laplacian filters, 2014. Colour: R. Mantiuk, R. Mantiuk, A. Tomaszewska and W. Heidrich, Color
// correction for tone mapping, 2009.
//
// Formats: three channels of 10 or 12 bits, OVRA_MODEL_RGB or OVRA_MODEL_BGR, any row alignment and
// row order. A sample above its depth counts as the depth's maximum.
#ifndef OVRA_TONE_H
#define OVRA_TONE_H

#include <stdint.h>

#include "ovra/pixel_format.h"
#include "ovra/platform.h"
#include "ovra/status.h"

#ifdef __cplusplus
extern "C" {
#endif

// Parameters of all four forms. 32 bytes on every platform. Ranges include their ends.
typedef struct OvraHyperToneParams {
  // 0..1, strength of the whole effect; 0 returns the source. Usually 1.
  float amount;
  // -0.5..1.5, lift of the shadows: black's neighbourhood gets the gain 1 + shadows. Usually 0.6.
  float shadows;
  // -0.5..1, hold of the highlights; white stays white. Usually 0.4.
  float highlights;
  // 0.5..1.5, factor on the detail; 1 keeps it as the gain carries it. Usually 1.2.
  float local_contrast;
  // 0.01..0.15, brightness difference, as a share of the range, beyond which a difference is an edge
  // and not detail. Usually 0.12.
  float edge;
  // 0..1: with 1 channels keep their ratios, with 0 their differences. The hybrid forms use it, the
  // others only check it. Usually 1.
  float colour;
  // 3..8: the blur of the base has a standard deviation of about 0.85 * 2^scale pixels. log2 of the
  // shorter side, rounded, less 4 suits most pictures; a preview at half size with scale - 1 looks
  // like the whole.
  int32_t scale;
  uint32_t reserved;  // not read
} OvraHyperToneParams;

// The contexts of the four forms. Each Init makes one; the plain names are for pictures of 10 bits a
// sample, those with _12 for 12 bits.
//
//   format   the format of the pictures to come
//   params   read only, may be released at once
//   curve    the tone curve, or null for that of the sliders, which is, for a brightness x of 0..1,
//              x + shadows * x * (1 - x)^3 - highlights * x^3 * (1 - x)
//            An array of 1024 (_12: 4096) entries, entry v for the grey v, in sample units; it must
//            not decrease nor exceed the greatest sample. With it shadows and highlights are checked
//            but not used. Brightening is limited to a factor just below 4, and black stays black. It
//            is copied.
//   context  receives the context, about 17 KB, or null on failure; release it with the form's _Free.
//            A run only reads it.
//
// Returns, the first that applies:
//   OVRA_ERROR_TONE_NULL        context is null (nothing is written then), or params is null
//   OVRA_ERROR_FORMAT_*         the format word is malformed
//   OVRA_ERROR_TONE_CHANNELS, _DEPTH, _COLOR_MODEL, _ARRANGEMENT   it is not an accepted one
//   OVRA_ERROR_TONE_PARAMETER   a parameter is out of its range or not a number; the curve decreases
//                               or exceeds the greatest sample
//   OVRA_ERROR_NO_MEMORY        no memory
//   OVRA_OK                     *context is a context
OVRA_API OvraStatus OVRA_CALL OvraHyperTone_Init(OvraPixelFormatCode format,
                                                 const OvraHyperToneParams* params,
                                                 const uint16_t* curve, void** context);
OVRA_API OvraStatus OVRA_CALL OvraHyperTone_Init_12(OvraPixelFormatCode format,
                                                    const OvraHyperToneParams* params,
                                                    const uint16_t* curve, void** context);
OVRA_API OvraStatus OVRA_CALL OvraHyperToneLight_Init(OvraPixelFormatCode format,
                                                      const OvraHyperToneParams* params,
                                                      const uint16_t* curve, void** context);
OVRA_API OvraStatus OVRA_CALL OvraHyperToneLight_Init_12(OvraPixelFormatCode format,
                                                         const OvraHyperToneParams* params,
                                                         const uint16_t* curve, void** context);
OVRA_API OvraStatus OVRA_CALL OvraHybridHyperTone_Init(OvraPixelFormatCode format,
                                                       const OvraHyperToneParams* params,
                                                       const uint16_t* curve, void** context);
OVRA_API OvraStatus OVRA_CALL OvraHybridHyperTone_Init_12(OvraPixelFormatCode format,
                                                          const OvraHyperToneParams* params,
                                                          const uint16_t* curve, void** context);
OVRA_API OvraStatus OVRA_CALL OvraHybridHyperToneLight_Init(OvraPixelFormatCode format,
                                                            const OvraHyperToneParams* params,
                                                            const uint16_t* curve, void** context);
OVRA_API OvraStatus OVRA_CALL OvraHybridHyperToneLight_Init_12(OvraPixelFormatCode format,
                                                               const OvraHyperToneParams* params,
                                                               const uint16_t* curve,
                                                               void** context);

// The runs.
//
//   source, destination  images of the same format and size; they belong to the caller, and may be the
//                        same buffer but must not overlap otherwise. Row padding is neither read nor
//                        written.
//   width, height        in pixels, any size
//   format               the same word that was given to _Init
//   context              made by an _Init of the same form; any number of runs may share it
//
// Work memory: HyperTone and its Light form a sixth of a byte a pixel (in pictures narrower or lower than
// 2^scale up to 2 bytes a pixel), the hybrid forms 64 bytes for each square of 2^scale pixels; all of
// them 64 bytes times the width and up to 50 KB.
//
// Returns, the first that applies:
//   OVRA_ERROR_TONE_NULL        source, destination or context is null
//   OVRA_ERROR_TONE_ZERO_SIZE   width or height is 0
//   OVRA_ERROR_FORMAT_*         the format word is malformed
//   OVRA_ERROR_TONE_CHANNELS, _DEPTH, _COLOR_MODEL, _ARRANGEMENT   it is not an accepted one
//   OVRA_ERROR_TONE_CONTEXT     format is another word than _Init's, or the context another form's
//   OVRA_ERROR_NO_MEMORY        no work memory, or a width, height or row of bytes above 2147483647
//   OVRA_OK                     the destination is written
//
// Calls on different destinations may run in parallel.
OVRA_API OvraStatus OVRA_CALL OvraHyperTone(const uint8_t* source, uint8_t* destination,
                                            uint32_t width, uint32_t height,
                                            OvraPixelFormatCode format, const void* context);
OVRA_API OvraStatus OVRA_CALL OvraHyperToneLight(const uint8_t* source, uint8_t* destination,
                                                 uint32_t width, uint32_t height,
                                                 OvraPixelFormatCode format, const void* context);
OVRA_API OvraStatus OVRA_CALL OvraHybridHyperTone(const uint8_t* source, uint8_t* destination,
                                                  uint32_t width, uint32_t height,
                                                  OvraPixelFormatCode format, const void* context);
OVRA_API OvraStatus OVRA_CALL OvraHybridHyperToneLight(const uint8_t* source, uint8_t* destination,
                                                       uint32_t width, uint32_t height,
                                                       OvraPixelFormatCode format,
                                                       const void* context);

// Each releases the context at *context and sets *context to null. Null, for the argument or for
// *context, does nothing. Always answers OVRA_OK. Not while a call uses the context.
OVRA_API OvraStatus OVRA_CALL OvraHyperTone_Free(void** context);
OVRA_API OvraStatus OVRA_CALL OvraHyperToneLight_Free(void** context);
OVRA_API OvraStatus OVRA_CALL OvraHybridHyperTone_Free(void** context);
OVRA_API OvraStatus OVRA_CALL OvraHybridHyperToneLight_Free(void** context);

#ifdef __cplusplus
}
#endif

#endif  // OVRA_TONE_H
