// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "core/pixel_format.h"
#include "core/status.h"
#include "core/work_memory.h"
#include "ovra/tone.h"
#include "tone/pyramid/kernels.h"

namespace ovra {

enum class ToneForm : uint32_t {
  kHyperTone = 1,
  kHyperToneLight,
  kHybridHyperTone,
  kHybridHyperToneLight,
};

// Entry i of the gain table stands for a base brightness of 8 * i, of 15 bits.
inline constexpr int kGainEntries = 4097;
// Limits of the levels of the base's pyramid, from the picture's own on.
inline constexpr int kToneLimits = 8;

struct HyperToneContext {
  ToneForm form;
  PixelFormatCode code;
  int32_t depth_bits;
  int32_t scale;
  SoftLimit limits[kToneLimits];
  SoftLimit fine_limit;
  int16_t keep;  // how much of a pixel's colour the gain leaves as it is, of 32767
  // In the low half of a word the gain, 8192 for 1; in the high half, signed, its slope: what the gain
  // gains for each 32768 of four times the detail.
  int32_t gains[kGainEntries];
};

// Whether the format is one of pictures with `depth_bits` bits a sample; with 0, of 10 or 12.
Status CheckToneFormat(PixelFormatCode code, uint32_t depth_bits, PixelFormat* format);

// A context, whose format has been checked. `curve` may be null.
Status MakeHyperToneContext(ToneForm form, PixelFormatCode code, int32_t depth_bits,
                            const OvraHyperToneParams& params, const uint16_t* curve,
                            ContextPtr<HyperToneContext>* context);

}  // namespace ovra
