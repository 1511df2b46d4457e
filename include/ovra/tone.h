// SPDX-License-Identifier: MIT
// Tone processing: the release of its contexts, which is the one release that all families with
// plain context pointers share (see OvraYUsmDouble_Free).
#ifndef OVRA_TONE_H
#define OVRA_TONE_H

#include "ovra/platform.h"
#include "ovra/status.h"

#ifdef __cplusplus
extern "C" {
#endif

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
