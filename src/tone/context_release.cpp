// SPDX-License-Identifier: MIT
#include "core/work_memory.h"
#include "ovra/tone.h"

OVRA_API OvraStatus OVRA_CALL OvraHyperTone_Free(void** context) {
  return ovra::FreeAnyContext(context);
}

OVRA_API OvraStatus OVRA_CALL OvraHyperToneLight_Free(void** context) {
  return ovra::FreeAnyContext(context);
}

OVRA_API OvraStatus OVRA_CALL OvraHybridHyperTone_Free(void** context) {
  return ovra::FreeAnyContext(context);
}

OVRA_API OvraStatus OVRA_CALL OvraHybridHyperToneLight_Free(void** context) {
  return ovra::FreeAnyContext(context);
}
