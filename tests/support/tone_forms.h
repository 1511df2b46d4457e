// SPDX-License-Identifier: MIT
// The four forms of tone processing as data.
#pragma once

#include "ovra/tone.h"

namespace ovra_test {

struct ToneExports {
  using Init = OvraStatus(OVRA_CALL*)(OvraPixelFormatCode, const OvraHyperToneParams*,
                                      const uint16_t*, void**);
  using Run = OvraStatus(OVRA_CALL*)(const uint8_t*, uint8_t*, uint32_t, uint32_t,
                                     OvraPixelFormatCode, const void*);
  using Free = OvraStatus(OVRA_CALL*)(void**);

  const char* name;
  Init init;  // for 10 bits
  Init init_12;
  Run run;
  Free free;
  bool is_hybrid;
};

// Not constant where the exports are imported from a DLL.
inline const ToneExports kToneForms[] = {
    {"HyperTone", OvraHyperTone_Init, OvraHyperTone_Init_12, OvraHyperTone, OvraHyperTone_Free,
     false},
    {"HyperToneLight", OvraHyperToneLight_Init, OvraHyperToneLight_Init_12, OvraHyperToneLight,
     OvraHyperToneLight_Free, false},
    {"HybridHyperTone", OvraHybridHyperTone_Init, OvraHybridHyperTone_Init_12, OvraHybridHyperTone,
     OvraHybridHyperTone_Free, true},
    {"HybridHyperToneLight", OvraHybridHyperToneLight_Init, OvraHybridHyperToneLight_Init_12,
     OvraHybridHyperToneLight, OvraHybridHyperToneLight_Free, true},
};

inline constexpr OvraHyperToneParams kToneDefaults = {1.0F, 0.6F, 0.4F, 1.2F, 0.12F, 1.0F, 4, 0};

}  // namespace ovra_test
