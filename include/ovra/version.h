// SPDX-License-Identifier: MIT
// The version of the library: the one place where it is written; the build reads it from here.
#ifndef OVRA_VERSION_H
#define OVRA_VERSION_H

#include <stdint.h>

#include "ovra/platform.h"

#define OVRA_VERSION_MAJOR 0
#define OVRA_VERSION_MINOR 1
#define OVRA_VERSION_PATCH 0

#ifdef __cplusplus
extern "C" {
#endif

// The version of the library that is loaded, which may differ from the headers compiled against:
// major * 65536 + minor * 256 + patch. Never fails; may be called from any thread.
OVRA_API uint32_t OVRA_CALL OvraGetVersion(void);

#ifdef __cplusplus
}
#endif

#endif  // OVRA_VERSION_H
